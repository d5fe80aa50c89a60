#include <boost/bind/bind.hpp>

#include "src/JournalService/base/Log.h"
#include "src/JournalServiceEvents/entries/ContactMatching.h"
#include "src/JournalServiceEvents/entries/EntryCreation.h"
#include "src/JournalServiceEvents/entries/OccurrenceFiling.h"

namespace journal {

namespace {

constexpr const char* kLogName = "newReceivedCallEntry";

struct ReceivedPolicy {
    using Item = ReceivedCallItem;
    using Info = ReceivedCallItem::ReceivedCallInfo;
    static constexpr bool kLimitsItems = true;

    static auto matcher(const Contact& contact) {
        return boost::bind(&contactMatchesReceivedCall, boost::placeholders::_1, boost::cref(contact));
    }

    static bool isDuplicate(const Item& item, const Info& info) {
        const Info& newest = item.getReceivedCallInfoList().front();
        const bool duplicate = newest.getNumber() == info.getNumber() &&
                               newest.getTimeAndDate() == info.getTimeAndDate() &&
                               newest.getPresentationC() == info.getPresentationC();
        if (duplicate) {
            LOG_EVENTS(5, "%s():Entry already exists, ignore", kLogName);
        }
        return duplicate;
    }

    static void onMerge(Item& /*item*/) {}
    static void onNew(Item& /*item*/) {}
    static void reportOverflow(const CallLogRequests& requests, const Info& oldest) {
        requests.sendReceivedCallLogEntryRequest(&oldest);
    }
    static void reportDropped(const CallLogRequests& requests, const Item& item) {
        requests.sendReceivedCallLogEntryRequests(item.getReceivedCallInfoList());
    }

    static void announce(ObserverNotifierIfc& notifier, const FiledOccurrence<Item>& filed) {
        notifier.updateReceivedCalls(filed.item, filed.mergedUniqueId, filed.action);
    }
};

}  // namespace

Contact EntryCreation::lookUpParty(const char* logName, const EntryDetails& details) const {
    Contact contact = m_names.contactOf(details.remoteParty, details.remotePartyName);
    LOG_EVENTS(
        5,
        "%s():{%s} Remote Party: %s, Remote Party Name: %s, Surname: %s, Firstname: %s, sRedirectingNumber: "
        "%s, sRedirectingName: %s",
        logName, details.callId.c_str(), details.remoteParty.c_str(), details.remotePartyName.c_str(),
        contact.getSurname().c_str(), contact.getFirstname().c_str(), details.redirectingParty.c_str(),
        details.redirectingPartyName.c_str());
    return contact;
}

bool EntryCreation::newReceivedCallEntry(const ReceivedEntryDetails& details) {
    const Contact contact = lookUpParty(kLogName, details);
    ReceivedCallItem::ReceivedCallInfo info;
    populateCallInfo(info, details, m_clock);
    populateRedirecting(info, details);
    info.setConnectedNumber(details.connectedParty);
    info.setTimeFormat(details.timeFormat);
    info.setTransferNumberType(details.transferType);
    info.setDuration(JournalClock::formatDuration(details.startSec, details.endSec));
    ListTransaction transaction(m_lists);
    OccurrenceFiling filing(transaction, m_settings, m_clock, m_names, ReceivedPolicy{});
    return filing.file(contact, info, details.callId);
}

}  // namespace journal
