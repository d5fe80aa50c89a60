#pragma once

#include <string>

#include "journal-items/CallBackItem.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"

/// What a client implements to be told of the changes of the journal. It is not told that the missed or the received list
/// was cleared as a whole, nor that lists were loaded for a subscriber or by `refreshCallLists`. Of missed items that
/// were marked as viewed only the count is told.
///
/// Threads: callbacks arrive one at a time, on whichever thread changed the journal, with the notifier's lock held
/// and no list lock. From inside a callback an observer may read the lists; it must not subscribe, unsubscribe or
/// change the journal there, and should not take long: the next call waits for it.
///
/// In every list callback, `entryId` is empty except where the action says otherwise, and the item is
/// default-constructed when the action carries none; but `dialledCallsUpdate` carries the newest entry that is left with
/// `eItemDeleted`, and with `eListChanged` where one is known.
/// Where an action says "unique id", a callback, which has none, is named by its entry id.
class JournalServiceObserverIfc {
public:
    /// What happened to a list.
    enum ActionType : int {
        /// `item` is new at the front; `entryId` is empty.
        eItemAdded = 0,
        /// `item` changed or took a new occurrence; `entryId` is the unique id of the item that it replaces.
        eItemUpdated = 1,
        /// One entry was deleted; `entryId` is its unique id.
        eItemDeleted = 2,
        /// The list as a whole changed, or is presented afresh.
        eListChanged = 3,
        /// The list was emptied.
        eListCleared = 4,
    };

    /// Missed items that nobody has looked at yet (items, not occurrences).
    virtual void missedCallsCountUpdate(int count) = 0;
    virtual void missedCallsUpdate(MissedCallItem item, std::string entryId, ActionType action) = 0;
    virtual void dialledCallsUpdate(DialledCallItem item, std::string entryId, ActionType action) = 0;
    virtual void receivedCallsUpdate(ReceivedCallItem item, std::string entryId, ActionType action) = 0;
    virtual void forwardedCallsUpdate(ForwardedCallItem item, std::string entryId, ActionType action) = 0;
    virtual void callBacksUpdate(CallBackItem item, std::string entryId, ActionType action) = 0;
    virtual void callBacksCountUpdate(int count) = 0;

protected:
    JournalServiceObserverIfc() = default;
    JournalServiceObserverIfc(const JournalServiceObserverIfc&) = default;
    JournalServiceObserverIfc& operator=(const JournalServiceObserverIfc&) = default;
    // Observers are never owned through this interface.
    ~JournalServiceObserverIfc() = default;
};
