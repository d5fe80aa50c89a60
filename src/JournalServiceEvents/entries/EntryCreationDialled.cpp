#include <boost/bind/bind.hpp>

#include "src/JournalService/base/Log.h"
#include "src/JournalServiceEvents/entries/ContactMatching.h"
#include "src/JournalServiceEvents/entries/EntryCreation.h"
#include "src/JournalServiceEvents/entries/OccurrenceFiling.h"

namespace journal {

namespace {

constexpr const char* kLogName = "newDialledCallEntry";

struct DialledPolicy {
    using Item = DialledCallItem;
    using Info = DialledCallItem::DialledCallInfo;
    // `fileDialledCall` does it.
    static constexpr bool kLimitsItems = false;

    const PartyNames& names;
    const DialledEntryDetails& details;
    Contact& contact;
    const Info& info;

    static auto matcher(const Contact& contact) {
        return boost::bind(&contactMatchesDialledCall, boost::placeholders::_1, boost::cref(contact));
    }

    // An entry keeps the names that it was made with.
    void nameContact(const std::deque<Item>& items, const std::deque<Item>::const_iterator& found) const {
        names.populateRemoteContactSurname(contact, details.remotePartyName,
                                           dialledCallAlreadyInDialledCallList(items, found));
    }

    [[nodiscard]] bool isDuplicate(const Item& item, const Info& /*info*/) const {
        const Info& newest = item.getDialledCallInfoList().front();
        // An entry of the switch's log has no call of its own; its log, number and time name it.
        const bool isOfCall = !info.getCallId().empty() && newest.getCallId() == info.getCallId();
        const bool duplicate =
            (isOfCall || !details.timeText.empty()) && newest.getLogTarget() == info.getLogTarget() &&
            newest.getNumber() == info.getNumber() && newest.getTimeAndDate() == info.getTimeAndDate();
        if (duplicate) {
            LOG_EVENTS(5, "%s():Entry already exists, ignore", kLogName);
        }
        return duplicate;
    }

    void onMerge(Item& item) {
        LOG_EVENTS(5, "%s():Adding to existing Dialled Call identity", kLogName);
        m_merged = item.getDialledCallInfoList();
    }
    void onNew(Item& item) const {
        LOG_EVENTS(5, "%s():New Dialled call item", kLogName);
        item.setJournalSeviceGroupBy(contact.getSearchNumber());
    }
    // A rule of its own decides if the switch forgets the merged item's oldest call.
    void reportOverflow(const CallLogRequests& requests, const Info& /*oldest*/) const {
        requests.sendCSTACAllLogEntryDeleteRequest(m_merged, info);
    }

    static void announce(ObserverNotifierIfc& notifier, const FiledOccurrence<Item>& filed) {
        notifier.updateDialledCalls(filed.item, filed.mergedUniqueId, filed.action);
    }

    std::list<Info> m_merged{};
};

}  // namespace

bool EntryCreation::newDialledCallEntry(const DialledEntryDetails& details) {
    LOG_EVENTS(5,
               "%s():sDialledParty {%s}, Remote Party: %s, Remote Party Name: %s, sConnectedParty: %s, "
               "sConnectedPartyName: %s, timeSec: %ld, startSec: %ld, endSec: %ld, redirectingParty: %s, "
               "redirectingPartyName: %s",
               kLogName, details.dialledParty.c_str(), details.remoteParty.c_str(),
               details.remotePartyName.c_str(), details.connectedParty.c_str(),
               details.connectedPartyName.c_str(), details.timeSec, details.startSec, details.endSec,
               details.redirectingParty.c_str(), details.redirectingPartyName.c_str());
    if (details.bluetoothCall) {
        LOG_EVENTS(5, "%s():Bluetooth call %d, Bluetooth anonymous call %d", kLogName, 1,
                   details.remoteParty.empty() ? 1 : 0);
    }
    Contact contact;
    DialledCallItem::DialledCallInfo info;
    populateCallInfo(info, details, m_clock);
    populateRedirecting(info, details);
    info.setTimeFormat(details.timeFormat);
    info.setTransferNumberType(details.transferType);
    m_names.populateDialledCallInfo(contact, info, details.dialledParty, details.remoteParty);
    m_names.populateInfoConnectedNumber(info, details.connectedParty);
    m_names.populateDialledCallInfoTimeAndDate(info, timeTextOf(details, m_clock), details.startSec,
                                               details.timeSec, details.endSec);
    ListTransaction transaction(m_lists);
    OccurrenceFiling filing(transaction, m_settings, m_clock, m_names,
                            DialledPolicy{m_names, details, contact, info});
    return filing.file(contact, info, details.callId);
}

bool EntryCreation::fileDialledCall(const DialledEntryDetails& details) {
    ListTransaction transaction(m_lists);
    const bool filed = newDialledCallEntry(details);
    const std::vector<DialledCallItem> dropped = transaction.dropOldest<DialledCallItem>();
    const CallLogRequests& requests = transaction.requests();
    if (m_settings.values()->m_serverBasedCallLog) {
        for (const DialledCallItem& oldest : dropped) {
            requests.sendDialledCallLogEntryRequests(oldest.getDialledCallInfoList());
        }
    }
    return filed;
}

}  // namespace journal
