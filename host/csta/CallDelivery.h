#pragma once

#include <chrono>
#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/calls/LiveCallStoreIfc.h"
#include "host/calls/PhoneCallEvents.h"
#include "host/calls/PhoneCalls.h"
#include "host/csta/EventDelivery.h"
#include "host/csta/UnloggedCalls.h"

namespace host {

/// Delivers the events of calls with their contexts, and notes the live calls:
///  1. Each change of `PhoneCalls` goes to the store.
///  2. A call that an event has ended is marked as ended there, and becomes part of the event's context.
///  3. When the journal has handled the event, the store learns which calls were filed.
/// Calls that must not be kept (`UnloggedCalls`) reach neither the store nor the journal.
///
/// Reader thread only.
class CallDelivery {
public:
    /// `calls` and `store` are borrowed; `store` may be null. Becomes a listener of `calls`, which must not
    /// change after the end of the object.
    CallDelivery(EventDelivery::Post post, PhoneCalls& calls, LiveCallStoreIfc* store,
                 UnloggedCalls::IsUnlogged isUnlogged = {});
    CallDelivery(const CallDelivery&) = delete;
    CallDelivery& operator=(const CallDelivery&) = delete;

    /// Delivers the events in order. `device` is the one of their calls. Requires: `calls` has followed them
    /// since the last delivery.
    void deliver(const std::shared_ptr<EventSink>& sink, const std::string& device,
                 std::vector<PhoneEvent> given);
    /// True if the journal does not get the event.
    [[nodiscard]] bool isDropped(const std::string& device, const CSTAEvent& event) const {
        return m_unlogged.isDropped(device, event);
    }
    /// Marks the calls that have ended since the last delivery as ended, for a monitor that is gone.
    void dropEnded();

private:
    void note(const PhoneCall& call);
    [[nodiscard]] DeliveryContext contextOf(const PhoneEvent& event, bool last, bool isDiversion);
    /// Adds the calls of the held-back events that this one makes the journal handle.
    void addHeldBack(DeliveryContext& context, const CSTAEvent& event);

    PhoneCalls& m_calls;
    LiveCallStoreIfc* const m_store;
    const EventDelivery m_delivery;
    UnloggedCalls m_unlogged;
    /// The calls that have ended since the last delivery.
    std::vector<PhoneCallKey> m_ended;
    /// The id of the call that was last held for a transfer: the journal may hold its clearing back.
    std::string m_heldForTransfer;
    /// The calls whose clearings the journal may hold back, with the ends of that time.
    std::deque<std::pair<std::chrono::steady_clock::time_point, PhoneCallKey>> m_heldBack;
};

}  // namespace host
