#pragma once

#include <string>
#include <vector>

#include "journalservice/ObserverNotifierIfc.h"
#include "platform/sync/Semaphore.h"

/// Fans every change of the journal out to the subscribed observers: local clients, and the proxies that stand for
/// remote ones.
///
/// Threads: any thread may call any operation except `init`, which comes first. One lock serialises everything, so
/// observers are called one at a time, on the caller's thread, with that lock held; it comes before the list locks,
/// which is why no caller may hold one. The lock cannot be taken twice: an observer that subscribes, unsubscribes or
/// changes the journal from inside a callback waits for itself.
///
/// Ownership: observers and the service are borrowed. Whoever subscribed must unsubscribe before the observer goes;
/// once `unsubscribe` has returned, no callback of that subscription runs or will come. Nobody is told when the
/// notifier itself goes.
///
/// Errors: an observer that throws is logged and loses the rest of the update it was being told; the observers
/// behind it are told as usual, and it stays subscribed.
class ObserverNotifier final : public ObserverNotifierIfc {
public:
    ObserverNotifier() = default;
    ~ObserverNotifier() override = default;

    void init(JournalServiceIfc* service, const std::string& softwareType) override;

    /// Adds the observer without looking for it, and tells it the unviewed missed calls, `lastDialled` and, when
    /// there are any, the callbacks. It is expected to read the lists themselves through the service.
    bool subscribe(JournalServiceObserverIfc* observer, const DialledCallItem& lastDialled) override;
    /// Removes the first subscription of the observer.
    bool unsubscribe(JournalServiceObserverIfc* observer) override;

    // Missed calls. The count is passed on as given, 0 where none is given: it is never counted here.
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
    /// The four call lists, forwarded calls on every phone.
    void updateAllExceptCallbacks(unsigned count) override;
    /// All five lists, but forwarded calls only on a SIP phone. Of the dialled calls the newest one is sent along.
    void updateAll(unsigned count) override;

    // Callbacks. Their number is counted afresh for each observer.
    void updateCallbacks(const CallBackItem& item, const std::string& entryId, ActionType action) override;
    void updateCallbackCount() override;
    void updateCallbacksAndCount() override;
    void updateCallbacksAndCount(const std::string& entryId) override;

private:
    /// Tells one observer one thing.
    using UpdateSingle = void (ObserverNotifier::*)(JournalServiceObserverIfc& observer,
                                                    const ObserverData& data);

    /// Takes the lock and calls `update` for every observer. `fill` completes the data; without observers it is not
    /// called, so that nothing is copied for nobody.
    template <typename Fill>
    void forEachObserver(UpdateSingle update, Fill fill);
    void tell(UpdateSingle update, JournalServiceObserverIfc& observer, const ObserverData& data);

    // All of these with the lock held.
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
    /// What a new observer is told; the data carries the newest dialled entry.
    void updateSingleSubscriber(JournalServiceObserverIfc& observer, const ObserverData& data);

    // Counted through the service, which takes one list lock for it.
    int getUnviewedMissedCallsCount();
    unsigned getCallBackListSize();

    // Written by init only, before any other thread may call.
    JournalServiceIfc* m_service = nullptr;
    bool m_isSipSoftware = false;

    Semaphore m_observerLock{1, 1};
    // Guarded by m_observerLock. In the order of subscription; an observer may stand here more than once.
    std::vector<JournalServiceObserverIfc*> m_observers;
};
