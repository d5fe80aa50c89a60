#pragma once

#include <cstdint>
#include <string>

#include "journalservice/JournalServiceObserverIfc.h"

class JournalServiceIfc;

/// Tells all subscribed observers of a change. Each `update...` calls every observer, in the order in which they
/// subscribed, on the caller's thread, with the notifier's lock held.
///
/// What an `update...` tells, by its arguments (an `unsigned` is the new count that goes with it):
///
///     (action)                    that action, without an item
///     () or (count)               the list changed as a whole (`eListChanged`)
///     (item), dialled calls       the same, with the newest entry
///     (entryId)                   the entry of that unique id was deleted (of callbacks the entry id)
///     (item, entryId), dialled    the same; the item is the newest that is left
///     (item, entryId, action)     the item is new or changed; `entryId` is the unique id of what it replaces
///
/// Operations named after a count alone tell that count and nothing of the list. `updateAll` and
/// `updateAllExceptCallbacks` say of each list that it changed as a whole.
///
/// Threads: any thread may call. Callers hold no list lock: observers read the lists back, and so do the operations
/// that count callbacks. `init` comes before everything else. New operations go to the end.
class ObserverNotifierIfc {
public:
    using ActionType = JournalServiceObserverIfc::ActionType;

    /// What one update carries to each observer. Fields that an update does not name keep these values.
    struct ObserverData {
        MissedCallItem missedCall{};
        DialledCallItem dialledCall{};
        ReceivedCallItem receivedCall{};
        ForwardedCallItem forwardedCall{};
        CallBackItem callBack{};
        std::uint32_t count = 0;
        std::string entryId{};
        ActionType action = ActionType::eListChanged;
    };

    ObserverNotifierIfc() = default;
    ObserverNotifierIfc(const ObserverNotifierIfc&) = delete;
    ObserverNotifierIfc& operator=(const ObserverNotifierIfc&) = delete;
    virtual ~ObserverNotifierIfc() = default;

    /// `service` is borrowed and outlives the notifier's use; the lists are read through it.
    virtual void init(JournalServiceIfc* service, const std::string& softwareType) = 0;
    virtual bool subscribe(JournalServiceObserverIfc* observer, const DialledCallItem& lastDialled) = 0;
    virtual bool unsubscribe(JournalServiceObserverIfc* observer) = 0;

    virtual void updateMissedCallCountAndCalls(ActionType action) = 0;
    virtual void updateMissedCallCountAndCalls() = 0;
    virtual void updateMissedCallCountAndCalls(unsigned count) = 0;
    virtual void updateMissedCallCountAndCalls(unsigned count, const std::string& entryId) = 0;
    virtual void updateMissedCallCountAndCalls(const MissedCallItem& item, unsigned count,
                                               const std::string& entryId, ActionType action) = 0;
    virtual void updateMissedCallCount(unsigned count) = 0;

    virtual void updateDialledCalls(ActionType action) = 0;
    virtual void updateDialledCalls(const DialledCallItem& item) = 0;
    virtual void updateDialledCalls(const DialledCallItem& item, const std::string& entryId) = 0;
    virtual void updateDialledCalls(const DialledCallItem& item, const std::string& entryId,
                                    ActionType action) = 0;

    virtual void updateReceivedCalls(ActionType action) = 0;
    virtual void updateReceivedCalls() = 0;
    virtual void updateReceivedCalls(const std::string& entryId) = 0;
    virtual void updateReceivedCalls(const ReceivedCallItem& item, const std::string& entryId,
                                     ActionType action) = 0;

    virtual void updateForwardedCalls() = 0;
    virtual void updateForwardedCalls(const std::string& entryId) = 0;
    virtual void updateForwardedCalls(const ForwardedCallItem& item, const std::string& entryId,
                                      ActionType action) = 0;

    virtual void updateAllExceptCallbacks(unsigned count) = 0;
    virtual void updateAll(unsigned count) = 0;

    virtual void updateCallbacks(const CallBackItem& item, const std::string& entryId, ActionType action) = 0;
    virtual void updateCallbackCount() = 0;
    virtual void updateCallbacksAndCount() = 0;
    virtual void updateCallbacksAndCount(const std::string& entryId) = 0;
};
