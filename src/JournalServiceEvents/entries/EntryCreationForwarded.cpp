#include <algorithm>
#include <boost/bind/bind.hpp>

#include "journalservice/ObserverNotifierIfc.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalServiceEvents/entries/ContactMatching.h"
#include "src/JournalServiceEvents/entries/EntryCreation.h"
#include "src/JournalServiceEvents/entries/ForwardedMissedRule.h"
#include "src/JournalServiceEvents/entries/OccurrenceFiling.h"

namespace journal {

namespace {

constexpr const char* kLogName = "newForwardedCallEntry";

struct ForwardedPolicy {
    using Item = ForwardedCallItem;
    using Info = ForwardedCallItem::ForwardedCallInfo;
    static constexpr bool kLimitsItems = true;

    const EntryCreation::Parts& parts;

    static auto matcher(const Contact& contact) {
        return boost::bind(&contactMatchesForwardedCall, boost::placeholders::_1, boost::cref(contact));
    }
    static bool isDuplicate(const Item& /*item*/, const Info& /*info*/) { return false; }
    static void onMerge(Item& /*item*/) {}
    static void onNew(Item& /*item*/) {}
    // A switch keeps no log of forwarded calls.
    static void reportOverflow(const Info& /*oldest*/) {}
    static void reportDropped(const Item& /*item*/) {}

    void announce(const Item& item, unsigned /*unviewed*/, const std::string& uniqueId,
                  JournalServiceObserverIfc::ActionType action) const {
        parts.notifier.updateForwardedCalls(item, uniqueId, action);
    }
};

}  // namespace

bool EntryCreation::newForwardedCallEntry(const ForwardedEntryDetails& details) {
    const Contact contact =
        m_parts.names.contactOf(details.remoteParty, details.remotePartyName, details.remotePartyName);
    logParty(kLogName, details, contact);
    ForwardedCallItem::ForwardedCallInfo info;
    populateCallInfo(info, details, m_parts.clock);
    populateRedirecting(info, details);
    info.setConnectedNumber(details.connectedParty);
    info.setForwardedToNumber(details.connectedParty);
    info.setDuration(JournalClock::formatDuration(details.startSec, details.endSec));
    const JournalLists::Change change(m_parts.lists);
    if (m_parts.settings.values()->m_serverBasedFeatures) {
        m_parts.forwardedMissed.sscfw_checkNewForwardedCall(contact);
    }
    ForwardedPolicy policy{m_parts};
    return fileOccurrence(m_parts, policy, contact, info, details.callId);
}

}  // namespace journal
