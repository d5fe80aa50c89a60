#pragma once

#include <string>

#include "platform/csta/CSTACallControlEvent.h"
#include "platform/csta/CSTADevice.h"
#include "src/JournalService/base/JournalPolicy.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalServiceEvents/calls/CallMap.h"
#include "src/JournalServiceEvents/calls/CallTracker.h"

namespace journal {

/// What every handler of call events works with. All parts are borrowed and outlive the handlers.
struct CallControlContext {
    CallMap& calls;
    CallTracker& tracker;
    const PhoneSettings& settings;
    const JournalPolicy& gate;

    /// Whether the journal wants call events now: not while another journal owns the call log, and not on a SIP phone
    /// whose call log is switched off.
    [[nodiscard]] bool acceptsEvents() const {
        const auto values = settings.values();
        return (!values->isSip() || values->m_callLogEnabled) && gate.handleCSTAEvent();
    }

    /// The record of the event's call, or null.
    [[nodiscard]] Call* find(const CSTACallControlEvent& event) const {
        return calls.findCallFromId(event.getConnectionCallID());
    }

    /// `CallTracker::onCallEvent` with the parties as devices. `call` may be gone afterwards.
    bool pass(Call* call, Call::states_t state, Call::directions_t direction, const std::string& callId,
              const CSTADevice& remote, const CSTADevice& diverted = {}, bool treatAsIncoming = false) const {
        return tracker.onCallEvent(call, state, direction, callId, remote.number, remote.name,
                                   diverted.number, diverted.name, treatAsIncoming);
    }
};

/// Who calls whom, as the event says it.
inline void logParties(const char* operation, const CSTACallControlEvent& event) {
    const CSTADevice& calling = event.getCallingDevice();
    const CSTADevice& called = event.getCalledDevice();
    LOG_EVENTS(5, "%s():{%s} Calling: %s, Name: %s, Called: %s, Name: %s", operation,
               event.getConnectionCallID().c_str(), calling.number.c_str(), calling.name.c_str(),
               called.number.c_str(), called.name.c_str());
}

/// The device as the far end of a call: empty when it is the phone itself.
[[nodiscard]] inline CSTADevice farEnd(const CSTADevice& device) {
    return device.isLocal() ? CSTADevice{} : device;
}

[[nodiscard]] inline bool isKnown(const CSTADevice& device) {
    return !device.number.empty() && !device.isLocal();
}

/// The first of the devices that has a number and is not the phone itself; empty when none does.
[[nodiscard]] inline CSTADevice firstKnown(const CSTADevice& first, const CSTADevice& second) {
    return isKnown(first) ? first : farEnd(second);
}

/// The call was transferred, and the phone has not placed it: events of its new partner read as if it had.
[[nodiscard]] inline bool followsTransferHere(const Call& call) {
    return call.m_transferred && !call.isOutgoing();
}

/// The direction of a call as its event tells it. `reached` is the device that answered, or that failed. A switch may
/// write the phone's own number on both sides: `call`, the record or null, then decides. It also decides for a call that
/// was transferred, because the switch may tell of its new partner as of a call that the phone has placed; not for one
/// that was seen first in its transfer, of which nothing else tells.
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

}  // namespace journal
