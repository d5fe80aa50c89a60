#include <algorithm>
#include <boost/bind/bind.hpp>

#include "journalservice/ObserverNotifierIfc.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/lists/CallLogRequests.h"
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

    const EntryCreation::Parts& parts;

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
    void reportOverflow(const Info& oldest) const { parts.requests.sendReceivedCallLogEntryRequest(&oldest); }
    void reportDropped(const Item& item) const {
        parts.requests.sendReceivedCallLogEntryRequests(item.getReceivedCallInfoList());
    }

    void announce(const Item& item, unsigned /*unviewed*/, const std::string& uniqueId,
                  JournalServiceObserverIfc::ActionType action) const {
        parts.notifier.updateReceivedCalls(item, uniqueId, action);
    }
};

}  // namespace

bool EntryCreation::newReceivedCallEntry(const ReceivedEntryDetails& details) {
    const Contact contact =
        m_parts.names.contactOf(details.remoteParty, details.remotePartyName, details.remotePartyName);
    logParty(kLogName, details, contact);
    ReceivedCallItem::ReceivedCallInfo info;
    populateCallInfo(info, details, m_parts.clock);
    populateRedirecting(info, details);
    info.setConnectedNumber(details.connectedParty);
    info.setTimeFormat(details.timeFormat);
    info.setTransferNumberType(details.transferType);
    info.setDuration(JournalClock::formatDuration(details.startSec, details.endSec));
    const JournalLists::Change change(m_parts.lists);
    ReceivedPolicy policy{m_parts};
    return fileOccurrence(m_parts, policy, contact, info, details.callId);
}

}  // namespace journal
