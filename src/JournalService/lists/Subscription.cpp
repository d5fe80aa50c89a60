#include "src/JournalService/lists/Subscription.h"

#include <utility>

#include "journalservice/ObserverNotifierIfc.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/lists/ListLoader.h"
#include "src/JournalService/lists/ListTransaction.h"

namespace journal {

bool Subscription::subscribe(JournalServiceObserverIfc* observer) {
    LOG_EVENTS(5, "JournalService::subscribeForJournalEvents - subscribe");
    // One transaction: no change comes between the state that the observer is given and the first one that it
    // is notified of.
    ListTransaction transaction(m_lists);
    if (!std::exchange(m_hasSubscribed, true) && m_lists.isUnloaded()) {
        // The notifier reads the lists as they are.
        const ListTransaction::Load load(transaction);
        return m_notifier.subscribe(observer, DialledCallItem());
    }
    if (m_loader.subscriptionNeedsLoad()) {
        LOG_EVENTS(5, "JournalService::subscribeForJournalEvents - loadCallListsFromDb()");
        m_loader.load();
    }
    return m_notifier.subscribe(observer, m_lists.front<DialledCallItem>());
}

bool Subscription::unsubscribe(JournalServiceObserverIfc* observer) {
    return m_notifier.unsubscribe(observer);
}

}  // namespace journal
