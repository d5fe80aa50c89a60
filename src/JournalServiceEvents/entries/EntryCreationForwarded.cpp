#include <boost/bind/bind.hpp>

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

    static auto matcher(const Contact& contact) {
        return boost::bind(&contactMatchesForwardedCall, boost::placeholders::_1, boost::cref(contact));
    }
    static bool isDuplicate(const Item& /*item*/, const Info& /*info*/) { return false; }
    static void onMerge(Item& /*item*/) {}
    static void onNew(Item& /*item*/) {}
    // A switch keeps no log of forwarded calls.
    static void reportOverflow(const CallLogRequests& /*requests*/, const Info& /*oldest*/) {}
    static void reportDropped(const CallLogRequests& /*requests*/, const Item& /*item*/) {}

    static void announce(ObserverNotifierIfc& notifier, const FiledOccurrence<Item>& filed) {
        notifier.updateForwardedCalls(filed.item, filed.mergedUniqueId, filed.action);
    }
};

}  // namespace

bool EntryCreation::newForwardedCallEntry(const ForwardedEntryDetails& details) {
    const Contact contact = lookUpParty(kLogName, details);
    ForwardedCallItem::ForwardedCallInfo info;
    populateCallInfo(info, details, m_clock);
    populateRedirecting(info, details);
    info.setConnectedNumber(details.connectedParty);
    info.setForwardedToNumber(details.connectedParty);
    info.setDuration(JournalClock::formatDuration(details.startSec, details.endSec));
    ListTransaction transaction(m_lists);
    if (m_settings.values()->m_serverBasedFeatures) {
        m_forwardedMissed.sscfw_checkNewForwardedCall(contact);
    }
    OccurrenceFiling filing(transaction, m_settings, m_clock, m_names, ForwardedPolicy{});
    return filing.file(contact, info, details.callId);
}

}  // namespace journal
