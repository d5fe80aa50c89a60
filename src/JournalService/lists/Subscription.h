#pragma once

#include <functional>
#include <utility>

class JournalServiceObserverIfc;
class ObserverNotifierIfc;

namespace journal {

class JournalLists;
class ListLoader;

/// Lets observers in and out. The first one to come in makes the lists load; where the variant's load does
/// not count as done for good, every one does. Any thread may call, but not from inside an observer callback.
class Subscription {
public:
    /// The parts are borrowed and outlive this one. `loadLists` loads all lists in the way of the service
    /// variant.
    Subscription(JournalLists& lists, const ListLoader& loader, ObserverNotifierIfc& notifier,
                 std::function<void()> loadLists)
        : m_lists(lists), m_loader(loader), m_notifier(notifier), m_loadLists(std::move(loadLists)) {}

    bool subscribe(JournalServiceObserverIfc* observer);
    bool unsubscribe(JournalServiceObserverIfc* observer);

private:
    JournalLists& m_lists;
    const ListLoader& m_loader;
    ObserverNotifierIfc& m_notifier;
    std::function<void()> m_loadLists;
};

}  // namespace journal
