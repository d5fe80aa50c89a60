#pragma once

#include "journal-items/CallBackItem.h"
#include "journal-items/Contact.h"
#include "src/JournalServiceEvents/handlers/CallControlContext.h"

class CSTACallBackEvent;

namespace journal {

class JournalClock;
class JournalLists;
class ListTransaction;
class PartyNames;

/// Keeps the callback list as the switch reports it, one item for each party:
///
///     event                   no item of the party in the list    an item in the list
///     set                     adds an item in front               updates the item and moves it to the front
///     cancelled, or "done"    no effect                           deletes the item
///
/// The party is the far end of the request: the party that the phone wants to reach, or that wants to reach
/// the phone. Each change is one `ListTransaction`; the observers are notified of the count too when it has
/// changed.
///
/// Call from the strand only.
class CallBackEvents {
public:
    /// All references are borrowed and outlive this object.
    CallBackEvents(const CallControlContext& callControl, const JournalClock& clock, const PartyNames& names,
                   JournalLists& lists)
        : m_callControl(callControl), m_clock(clock), m_names(names), m_lists(lists) {}

    void handleCSTACallBackEvent(CSTACallBackEvent* event);

private:
    void set(ListTransaction& transaction, CallBackItem item, const Contact& contact) const;
    static void remove(ListTransaction& transaction, const Contact& contact);

    const CallControlContext& m_callControl;
    const JournalClock& m_clock;
    const PartyNames& m_names;
    JournalLists& m_lists;
};

}  // namespace journal
