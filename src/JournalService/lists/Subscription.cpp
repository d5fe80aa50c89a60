#include "src/JournalService/lists/Subscription.h"

#include "journalservice/ObserverNotifierIfc.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/lists/JournalLists.h"
#include "src/JournalService/lists/ListLoader.h"

namespace journal {

bool Subscription::subscribe(JournalServiceObserverIfc* observer) {
    LOG_EVENTS(5, "JournalService::subscribeForJournalEvents - subscribe");
    // One change: what the observer is told at first is followed by every change after it, with none in
    // between.
    const JournalLists::Change change(m_lists);
    if (!m_loader.listsLoaded()) {
        LOG_EVENTS(5, "JournalService::subscribeForJournalEvents - loadCallListsFromDb()");
        m_loadLists();
    }
    return m_notifier.subscribe(observer, m_lists.getFrontDialledCall());
}

bool Subscription::unsubscribe(JournalServiceObserverIfc* observer) {
    return m_notifier.unsubscribe(observer);
}

}  // namespace journal
