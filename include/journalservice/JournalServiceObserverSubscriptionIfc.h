#pragma once

class JournalServiceObserverIfc;

/// How clients subscribe to the journal. Any thread may call, but not from inside an observer callback.
class JournalServiceObserverSubscriptionIfc {
public:
    JournalServiceObserverSubscriptionIfc() = default;
    JournalServiceObserverSubscriptionIfc(const JournalServiceObserverSubscriptionIfc&) = delete;
    JournalServiceObserverSubscriptionIfc& operator=(const JournalServiceObserverSubscriptionIfc&) = delete;
    virtual ~JournalServiceObserverSubscriptionIfc() = default;

    /// Adds `observer` and tells it at once the unviewed missed count, the newest dialled entry and, when there
    /// are any, the number of callbacks. The lists are loaded from the database first, at every
    /// subscription or, in `JournalService` itself, at the first.
    /// The observer is borrowed until it is unsubscribed. False for null. An observer that subscribes twice is
    /// told everything twice.
    virtual bool subscribeForJournalEvents(JournalServiceObserverIfc* observer) = 0;
    /// Removes one subscription of `observer`; when it returns, no callback for that subscription is running or
    /// will come. False when there was none.
    virtual bool unsubscribeForJournalEvents(JournalServiceObserverIfc* observer) = 0;
};
