#pragma once

#include <cstdint>
#include <string>

#include "journalservice/JournalServiceObserverIfc.h"

class JournalServiceIfc;

/// Notifies all subscribed observers of a change. Each `update...` calls every observer, in the order of
/// subscription, on the caller's thread, with the notifier's lock held.
///
/// The arguments of an `update...` select the change that is reported (an `unsigned` is the new count):
///
///     (action)                    that action, without an item
///     () or (count)               the whole list changed (`eListChanged`)
///     (item), dialled calls       the same, with the newest entry
///     (entryId)                   the entry with that unique id (callbacks: entry id) was deleted
///     (item, entryId), dialled    the same; `item` is the newest remaining entry
///     (item, entryId, action)     `item` is new or changed; `entryId` is the unique id that it replaces
///
/// Operations whose name has only a count report that count and no list. `updateAll` and
/// `updateAllExceptCallbacks` report `eListChanged` for each list.
///
/// Thread-safe, except `init`, which comes first. Requires: no list lock is held, because observers, and the
/// operations that count callbacks, read the lists. New operations are added at the end.
class ObserverNotifierIfc {
public:
    using ActionType = JournalServiceObserverIfc::ActionType;

    /// The data of one update. Fields that an update does not set keep these values.
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

    /// `service` is borrowed and outlives the last update; the lists are read through it.
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
