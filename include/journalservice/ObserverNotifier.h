#pragma once

#include <string>
#include <vector>

#include "journalservice/ObserverNotifierIfc.h"
#include "platform/sync/Semaphore.h"

/// Notifies the subscribed observers of every change of the journal: local clients, and the proxies of remote
/// ones.
///
/// Thread-safe, except `init`, which comes first. One lock serialises all operations: observers are called
/// one at a time, on the caller's thread, with the lock held. The lock comes before the list locks, so the
/// caller must not hold one. The lock is not recursive: an observer that subscribes, unsubscribes or changes
/// the journal inside a callback deadlocks.
///
/// Ownership: observers and the service are borrowed. A subscriber unsubscribes before the observer is
/// destroyed. After `unsubscribe` has returned, no callback of that subscription runs or will start.
/// Observers are not notified when the notifier is destroyed.
///
/// Errors: the exception of an observer is logged. The observer misses the rest of that update and stays
/// subscribed; the observers after it are notified as usual.
class ObserverNotifier final : public ObserverNotifierIfc {
public:
    ObserverNotifier() = default;
    ~ObserverNotifier() override = default;

    void init(JournalServiceIfc* service, const std::string& softwareType) override;

    /// Adds the observer, also if it is subscribed already, and reports the number of unviewed missed items,
    /// `lastDialled` and, if there are any, the number of callbacks to it. Returns false for null.
    bool subscribe(JournalServiceObserverIfc* observer, const DialledCallItem& lastDialled) override;
    /// Removes the first subscription of the observer. Returns false if there is none.
    bool unsubscribe(JournalServiceObserverIfc* observer) override;

    // Missed calls. The reported count is the argument, or 0 without one; it is not counted here.
    void updateMissedCallCountAndCalls(ActionType action) override;
    void updateMissedCallCountAndCalls() override;
    void updateMissedCallCountAndCalls(unsigned count) override;
    void updateMissedCallCountAndCalls(unsigned count, const std::string& entryId) override;
    void updateMissedCallCountAndCalls(const MissedCallItem& item, unsigned count, const std::string& entryId,
                                       ActionType action) override;
    void updateMissedCallCount(unsigned count) override;

    // Dialled calls.
    void updateDialledCalls(ActionType action) override;
    void updateDialledCalls(const DialledCallItem& item) override;
    void updateDialledCalls(const DialledCallItem& item, const std::string& entryId) override;
    void updateDialledCalls(const DialledCallItem& item, const std::string& entryId,
                            ActionType action) override;

    // Received calls.
    void updateReceivedCalls(ActionType action) override;
    void updateReceivedCalls() override;
    void updateReceivedCalls(const std::string& entryId) override;
    void updateReceivedCalls(const ReceivedCallItem& item, const std::string& entryId,
                             ActionType action) override;

    // Forwarded calls.
    void updateForwardedCalls() override;
    void updateForwardedCalls(const std::string& entryId) override;
    void updateForwardedCalls(const ForwardedCallItem& item, const std::string& entryId,
                              ActionType action) override;

    // Several lists at once.
    /// Reports the four call lists.
    void updateAllExceptCallbacks(unsigned count) override;
    /// Reports all five lists, the forwarded calls on a SIP phone only. The dialled update has the newest
    /// dialled entry.
    void updateAll(unsigned count) override;

    // Callbacks. Their number is counted again for each observer.
    void updateCallbacks(const CallBackItem& item, const std::string& entryId, ActionType action) override;
    void updateCallbackCount() override;
    void updateCallbacksAndCount() override;
    void updateCallbacksAndCount(const std::string& entryId) override;

private:
    /// Notifies one observer of one update.
    using UpdateSingle = void (ObserverNotifier::*)(JournalServiceObserverIfc& observer,
                                                    const ObserverData& data);

    /// Takes the lock and calls `update` for every observer. `fill` completes the data; it is not called
    /// without observers, which saves the copies.
    template <typename Fill>
    void forEachObserver(UpdateSingle update, Fill fill);
    void notify(UpdateSingle update, JournalServiceObserverIfc& observer, const ObserverData& data);

    // Require: the lock is held.
    void updateSingleMissedCallCount(JournalServiceObserverIfc& observer, const ObserverData& data);
    void updateSingleMissedCallCountAndCalls(JournalServiceObserverIfc& observer, const ObserverData& data);
    void updateSingleDialledCalls(JournalServiceObserverIfc& observer, const ObserverData& data);
    void updateSingleReceivedCalls(JournalServiceObserverIfc& observer, const ObserverData& data);
    void updateSingleForwardedCalls(JournalServiceObserverIfc& observer, const ObserverData& data);
    void updateSingleCallbacks(JournalServiceObserverIfc& observer, const ObserverData& data);
    void updateSingleCallbackCount(JournalServiceObserverIfc& observer, const ObserverData& data);
    void updateSingleCallbacksAndCount(JournalServiceObserverIfc& observer, const ObserverData& data);
    void updateSingleAllExceptCallbacks(JournalServiceObserverIfc& observer, const ObserverData& data);
    void updateSingleAll(JournalServiceObserverIfc& observer, const ObserverData& data);
    /// The update for a new observer; the data has the newest dialled entry.
    void updateSingleSubscriber(JournalServiceObserverIfc& observer, const ObserverData& data);

    // Count through the service, which takes one list lock.
    int getUnviewedMissedCallsCount();
    unsigned getCallBackListSize();

    // Written by init only, before any other thread may call.
    JournalServiceIfc* m_service = nullptr;
    bool m_isSipSoftware = false;

    Semaphore m_observerLock{1, 1};
    // Guarded by m_observerLock. In the order of subscription; an observer may occur more than once.
    std::vector<JournalServiceObserverIfc*> m_observers;
};
