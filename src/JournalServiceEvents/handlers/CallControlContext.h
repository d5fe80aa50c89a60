#pragma once

#include <optional>
#include <string>
#include <utility>

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTADevice.h"
#include "src/JournalService/base/JournalPolicy.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalServiceEvents/calls/CallMap.h"
#include "src/JournalServiceEvents/calls/CallTracker.h"

namespace journal {

/// One event of a call in the terms of the state machine. See `EventParties` for the meaning of the two
/// parties.
struct CallUpdate {
    Call::states_t state = Call::eUnknown;
    /// `eDirectionUnknown` keeps the direction of the record.
    Call::directions_t direction = Call::eDirectionUnknown;
    std::string callId{};
    CSTADevice remote{};
    CSTADevice diverted{};
    bool treatAsIncoming = false;
};

/// The components that every handler of call events uses. All are borrowed and outlive the handlers.
struct CallControlContext {
    CallMap& calls;
    CallTracker& tracker;
    const PhoneSettings& settings;
    const JournalPolicy& policy;

    [[nodiscard]] bool acceptsEvents() const { return policy.acceptsEvents(); }

    /// Returns the record of the event's call, or null. Requires: the call-map lock is held.
    [[nodiscard]] Call* find(const CSTACallControlEvent& event) const {
        return calls.findCallFromId(event.getConnectionCallID());
    }

    /// Calls `CallTracker::onCallEvent`. Do not use `call`, which may be null, afterwards: the update may
    /// have removed the record. Requires: the call-map lock is held.
    bool track(Call* call, CallUpdate update) const {
        return tracker.onCallEvent(call, update.state, update.direction, std::move(update.callId),
                                   std::move(update.remote.number), std::move(update.remote.name),
                                   std::move(update.diverted.number), std::move(update.diverted.name),
                                   update.treatAsIncoming);
    }
};

/// Logs the calling and the called device of the event.
inline void logParties(const char* operation, const CSTACallControlEvent& event) {
    const CSTADevice& calling = event.getCallingDevice();
    const CSTADevice& called = event.getCalledDevice();
    LOG_EVENTS(5, "%s():{%s} Calling: %s, Name: %s, Called: %s, Name: %s", operation,
               event.getConnectionCallID().c_str(), calling.number.c_str(), calling.name.c_str(),
               called.number.c_str(), called.name.c_str());
}

/// Returns the device as the far end of a call: empty if it is the phone itself.
[[nodiscard]] inline CSTADevice farEnd(const CSTADevice& device) {
    return device.isLocal() ? CSTADevice{} : device;
}

/// True if the device has a number and is not the phone itself.
[[nodiscard]] inline bool isKnown(const CSTADevice& device) {
    return !device.number.empty() && !device.isLocal();
}

/// Returns the first known device, or an empty one.
[[nodiscard]] inline CSTADevice firstKnown(const CSTADevice& first, const CSTADevice& second) {
    return isKnown(first) ? first : farEnd(second);
}

/// True if the call was transferred to its current partner and the phone did not place it. The events of the
/// new partner then look as if the phone had placed the call.
[[nodiscard]] inline bool followsTransferHere(const Call& call) {
    return call.m_transferred && !call.isOutgoing();
}

/// True if the phone placed the call to pick up another phone's call, and it is now that call. `direction` is
/// the one of the Established event.
[[nodiscard]] inline bool isPickedUp(const Call* call, Call::directions_t direction) {
    return call != nullptr && call->isOutgoing() && direction == Call::eIncoming;
}

/// True if another phone has established a call that came in here.
[[nodiscard]] inline bool isEstablishedElsewhere(const Call& call, const CSTAEstablishedEvent& event) {
    return !call.isOutgoing() && isKnown(event.getAnsweringDevice());
}

/// Returns the direction of a call according to its event. `reached` is the answering or failing device;
/// `call` is the record, or null. The direction of the record wins in two cases:
///  - the switch writes the phone's own number on both sides;
///  - the call was transferred, because events of the new partner may look as if the phone had placed the
///    call. (A call that was first seen in its transfer has no direction yet; the event decides.)
[[nodiscard]] inline Call::directions_t directionOf(const CSTADevice& calling, const CSTADevice& called,
                                                    const CSTADevice& reached, const Call* call) {
    if (call != nullptr && call->m_transferred && call->m_Direction != Call::eDirectionUnknown) {
        return call->m_Direction;
    }
    const bool placedHere = calling.isLocal();
    const bool reachedHere = called.isLocal() || reached.isLocal();
    if (placedHere && reachedHere && call != nullptr) {
        return call->m_Direction;
    }
    if (placedHere) {
        return Call::eOutgoing;
    }
    return reachedHere ? Call::eIncoming : Call::eDirectionUnknown;
}

/// Returns the direction in which a call is established, and `std::nullopt`, with a log text, if the event
/// does not concern a call of this phone. `direction` is that of the event. An established call keeps its
/// direction; the record of a call placed to pick up another one is removed, and `call` becomes null.
[[nodiscard]] inline std::optional<Call::directions_t> establishedDirection(
    const CallControlContext& callControl, Call*& call, const CSTAEstablishedEvent& event,
    Call::directions_t direction) {
    const std::string& callId = event.getConnectionCallID();
    if (call != nullptr && call->m_State == Call::eEstablished) {
        return call->m_Direction;
    }
    if (isPickedUp(call, direction)) {
        callControl.calls.removeCall(callId);
        call = nullptr;
    }
    if (direction != Call::eDirectionUnknown) {
        return direction;
    }
    LOG_EVENTS(5, "%s():{%s} Unknown direction", "handleCSTAEstablishedEvent", callId.c_str());
    if (call == nullptr || isEstablishedElsewhere(*call, event)) {
        return std::nullopt;
    }
    return call->m_Direction;
}

}  // namespace journal
