#pragma once

#include <string>

#include "journal-items/CallBackItem.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"

/// Receives the changes of the journal; implemented by clients. There is no callback when the missed or the
/// received list is cleared as a whole, when lists are loaded for a subscriber or by `refreshCallLists`, for
/// `updateMissedCall`, nor for an item that a full list drops. When missed items are marked as viewed, only
/// the count is reported.
///
/// Threads: callbacks arrive one at a time, on the thread that changed the journal, with the notifier's lock
/// held and no list lock. Inside a callback an observer may read the lists. It must not subscribe,
/// unsubscribe or change the journal: that deadlocks. It should return soon, because it delays every other
/// change.
///
/// In every list callback, `entryId` is empty unless the action documents it, and the item is
/// default-constructed unless the action has one. Exception: `dialledCallsUpdate` has the newest remaining
/// entry with `eItemDeleted`, and with `eListChanged` except after `refreshCallLog`. Callbacks have no unique
/// id; their entry id is used in its place.
class JournalServiceObserverIfc {
public:
    /// The kind of change.
    enum ActionType : int {
        /// `item` is new at the front; `entryId` is empty.
        eItemAdded = 0,
        /// `item` changed or has a new occurrence; `entryId` is the unique id of the item that it replaces.
        eItemUpdated = 1,
        /// One entry was deleted; `entryId` is its unique id.
        eItemDeleted = 2,
        /// The whole list changed.
        eListChanged = 3,
        /// The list was emptied.
        eListCleared = 4,
    };

    /// `count` is the number of unviewed missed items (not occurrences).
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
    // Protected: observers are never owned through this interface.
    ~JournalServiceObserverIfc() = default;
};
