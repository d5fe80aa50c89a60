#pragma once

#include <functional>
#include <string>

#include "journal-items/CallBackItem.h"
#include "journal-items/Contact.h"
#include "src/JournalServiceEvents/handlers/CallControlContext.h"

class CSTACallBackEvent;
class ObserverNotifierIfc;

namespace journal {

class JournalClock;
class JournalLists;
class ListPersistence;
class PartyNames;

/// Keeps the callback list as the switch reports it, one item for each party:
///
///     the switch says           the list has no item of the party   it has one
///     set                       a new item at the front             the item takes what is new and goes to the front
///     cancelled, or "done"      nothing                             the item is removed
///
/// The party is the far end of the request: whom the phone wants to reach, or who wants to reach the phone. Every
/// change is written to the database and told to the observers, with the count where that has changed.
///
/// Threads: the line's strand. No list lock is held while observers are called.
class CallBackEvents {
public:
    /// Everything is borrowed and outlives this object.
    struct Parts {
        const CallControlContext& callControl;
        const JournalClock& clock;
        const PartyNames& names;
        JournalLists& lists;
        ListPersistence& persistence;
        ObserverNotifierIfc& notifier;
        /// Loads the lists when nobody has needed them before: a callback must find its item in the database.
        std::function<void()> loadAtFirstNeed{};
    };

    explicit CallBackEvents(Parts parts) : m_parts(std::move(parts)) {}

    void handleCSTACallBackEvent(CSTACallBackEvent* event);

private:
    void set(const CallBackItem& news, const Contact& contact);
    void remove(const Contact& contact);

    const Parts m_parts;
};

}  // namespace journal
