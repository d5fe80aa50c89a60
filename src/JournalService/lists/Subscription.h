#pragma once

class JournalServiceObserverIfc;
class ObserverNotifierIfc;

namespace journal {

class JournalLists;
class ListLoader;

/// Subscribes and unsubscribes observers. The first subscription loads the lists; in a variant with its own
/// load method, every subscription does. If the lists are loaded at first need, the first one
/// leaves them unloaded. Any thread may call, but not from inside an observer callback.
class Subscription {
public:
    /// All references are borrowed and outlive this object.
    Subscription(JournalLists& lists, ListLoader& loader, ObserverNotifierIfc& notifier)
        : m_lists(lists), m_loader(loader), m_notifier(notifier) {}

    bool subscribe(JournalServiceObserverIfc* observer);
    bool unsubscribe(JournalServiceObserverIfc* observer);

private:
    JournalLists& m_lists;
    ListLoader& m_loader;
    ObserverNotifierIfc& m_notifier;

    // Guarded by the change lock of the lists.
    bool m_hasSubscribed = false;
};

}  // namespace journal
