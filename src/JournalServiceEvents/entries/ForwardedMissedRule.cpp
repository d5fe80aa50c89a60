#include "src/JournalServiceEvents/entries/ForwardedMissedRule.h"

#include <utility>

#include "journal-items/Contact.h"
#include "journalservice/ObserverNotifierIfc.h"
#include "src/JournalService/base/JournalClock.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/lists/ListOrder.h"
#include "src/JournalService/lists/ListTransaction.h"
#include "src/JournalServiceEvents/entries/ContactMatching.h"

namespace journal {

namespace {

// Exactly this many seconds apart still counts as the same call.
constexpr long kSameCallSeconds = 5;

bool isSameCall(long now, long earlier) {
    return earlier != -1 && (earlier > now || now - earlier <= kSameCallSeconds);
}

}  // namespace

bool ForwardedMissedRule::sscfw_canAddMissedCall(const Contact& contact) {
    const long now = m_clock.getCurrentTimeSec();
    LOG_EVENTS(5, "%s():current time: %ld, m_lastForwardedTimeSec: %ld", "sscfw_canAddMissedCall", now,
               m_lastForwardedTimeSec);
    if (now == -1) {
        return true;
    }
    if (isSameCall(now, m_lastForwardedTimeSec)) {
        const auto forwarded = m_lists.read<ForwardedCallItem>();
        if (!forwarded->empty() && contactMatchesForwardedCall(forwarded->front(), contact)) {
            m_lastMissedTimeSec = -1;
            return false;
        }
    }
    m_lastMissedTimeSec = now;
    return true;
}

void ForwardedMissedRule::sscfw_checkNewForwardedCall(const Contact& contact) {
    const long now = m_clock.getCurrentTimeSec();
    LOG_EVENTS(5, "%s():current time: %ld, m_lastMissedTimeSec: %ld", "sscfw_checkNewForwardedCall", now,
               m_lastMissedTimeSec);
    if (now == -1) {
        return;
    }
    if (isSameCall(now, m_lastMissedTimeSec)) {
        removeMissedOccurrence(contact);
    }
    m_lastForwardedTimeSec = now;
}

void ForwardedMissedRule::removeMissedOccurrence(const Contact& contact) {
    ListTransaction transaction(m_lists);
    auto& missed = transaction.open<MissedCallItem>();
    if (missed.empty()) {
        return;
    }
    MissedCallItem& item = missed.front();
    const std::string& lineKey = item.getMissedCallInfoList().empty()
                                     ? std::string()
                                     : item.getMissedCallInfoList().front().getLineKey();
    if (!contactMatchesMissedCall(item, contact, lineKey)) {
        return;
    }
    auto infos = item.getMissedCallInfoList();
    infos.pop_front();
    if (infos.empty()) {
        LOG_EVENTS(5, "%s():removing whole entry", "sscfw_checkNewForwardedCall");
        transaction.remove(missed, missed.begin());
    } else {
        LOG_EVENTS(5, "%s():updating shortened info list", "sscfw_checkNewForwardedCall");
        item.setMissedCallInfoList(infos);
        item.setViewed(m_viewedBeforeMerge);
        transaction.write(item);
        MissedCallItem shortened = std::move(item);
        missed.pop_front();
        insertInOrder(missed, std::move(shortened));
    }
    const unsigned unviewed = JournalLists::getUnviewedMissedCallsCount(missed);
    transaction.commit(
        [unviewed](ObserverNotifierIfc& notifier) { notifier.updateMissedCallCountAndCalls(unviewed); });
}

}  // namespace journal
