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

constexpr const char* kLogName = "newDialledCallEntry";

struct DialledPolicy {
    using Item = DialledCallItem;
    using Info = DialledCallItem::DialledCallInfo;
    // `fileDialledCall` does it.
    static constexpr bool kLimitsItems = false;

    const EntryCreation::Parts& parts;
    const DialledEntryDetails& details;
    Contact& contact;
    const Info& info;

    static auto matcher(const Contact& contact) {
        return boost::bind(&contactMatchesDialledCall, boost::placeholders::_1, boost::cref(contact));
    }

    // An entry keeps the names that it was made with.
    void nameContact(const std::deque<Item>& items, const std::deque<Item>::const_iterator& found) const {
        parts.names.populateRemoteContactSurname(contact, details.remotePartyName,
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
    // The merged item's oldest call leaves the switch by a rule of its own.
    void reportOverflow(const Info& /*oldest*/) const {
        parts.requests.sendCSTACAllLogEntryDeleteRequest(m_merged, info);
    }
    // None is dropped on this road.
    static void reportDropped(const Item& /*item*/) {}

    void announce(const Item& item, unsigned /*unviewed*/, const std::string& uniqueId,
                  JournalServiceObserverIfc::ActionType action) const {
        parts.notifier.updateDialledCalls(item, uniqueId, action);
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
    const PartyNames& names = m_parts.names;
    Contact contact;
    DialledCallItem::DialledCallInfo info;
    populateCallInfo(info, details, m_parts.clock);
    populateRedirecting(info, details);
    info.setTimeFormat(details.timeFormat);
    info.setTransferNumberType(details.transferType);
    names.populateDialledCallInfo(contact, info, details.dialledParty, details.remoteParty);
    names.populateInfoConnectedNumber(info, details.connectedParty);
    names.populateDialledCallInfoTimeAndDate(info, timeTextOf(details, m_parts.clock), details.startSec,
                                             details.timeSec, details.endSec);
    const JournalLists::Change change(m_parts.lists);
    DialledPolicy policy{m_parts, details, contact, info};
    return fileOccurrence(m_parts, policy, contact, info, details.callId);
}

bool EntryCreation::fileDialledCall(const DialledEntryDetails& details) {
    const JournalLists::Change change(m_parts.lists);
    const bool filed = newDialledCallEntry(details);
    const std::vector<DialledCallItem> dropped =
        dropOldest(m_parts, *m_parts.lists.list<DialledCallItem>().access());
    if (m_parts.settings.values()->m_serverBasedCallLog) {
        for (const DialledCallItem& oldest : dropped) {
            m_parts.requests.sendDialledCallLogEntryRequests(oldest.getDialledCallInfoList());
        }
    }
    return filed;
}

}  // namespace journal
