#pragma once

class JournalServiceObserverIfc;

/// Subscription of observers to the journal. Thread-safe. Do not call from inside an observer callback: it
/// deadlocks.
class JournalServiceObserverSubscriptionIfc {
public:
    JournalServiceObserverSubscriptionIfc() = default;
    JournalServiceObserverSubscriptionIfc(const JournalServiceObserverSubscriptionIfc&) = delete;
    JournalServiceObserverSubscriptionIfc& operator=(const JournalServiceObserverSubscriptionIfc&) = delete;
    virtual ~JournalServiceObserverSubscriptionIfc() = default;

    /// Loads the lists (`JournalService` at the first subscription, a variant at every one), adds `observer`,
    /// and reports the number of unviewed missed items, the newest dialled entry and, if there are any, the
    /// number of callbacks to it. The observer is borrowed until it is unsubscribed. Returns false for null.
    /// An observer that subscribes twice gets every callback twice.
    virtual bool subscribeForJournalEvents(JournalServiceObserverIfc* observer) = 0;
    /// Removes one subscription of `observer`. After the return, no callback of that subscription runs or
    /// will start. Returns false if there is none.
    virtual bool unsubscribeForJournalEvents(JournalServiceObserverIfc* observer) = 0;
};
