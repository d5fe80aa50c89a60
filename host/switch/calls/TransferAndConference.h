#pragma once

#include <string>

#include "host/switch/calls/SimulatedCall.h"
#include "host/switch/calls/SimulatedConference.h"

namespace host {

/// The new call of a transfer, and the events for the phones.
struct TransferredCall {
    SimulatedCall call;
    SimulatedEvents events;
};

/// The conference of the three parties of two calls, and the events for the phones.
struct ConferencedCalls {
    SimulatedConference conference;
    SimulatedEvents events;
};

/// A held call and another call of the holder: the input of a transfer and a conference.
struct HeldPair {
    const SimulatedCall& held;
    SimulatedCall::Side holder;
    const SimulatedCall& other;

    [[nodiscard]] const SimulatedParty& owner() const { return held.party(holder); }
    [[nodiscard]] const SimulatedCall::End& heldEnd() const { return held.end(SimulatedCall::other(holder)); }
    [[nodiscard]] const SimulatedCall::End& otherEnd() const;
};

/// The owner connects the far ends of both calls and leaves. The other call may still ring.
[[nodiscard]] TransferredCall transferCalls(const HeldPair& calls, const std::string& newCallId);
/// `by` transfers the call to `to` without consultation. The phone of `to` rings.
[[nodiscard]] TransferredCall singleStepTransfer(SimulatedCall call, SimulatedCall::Side by,
                                                 const SimulatedParty& to, const std::string& newCallId);
/// The owner joins both calls. The switch then sends each member the far end of its call.
[[nodiscard]] ConferencedCalls joinCalls(const HeldPair& calls, const std::string& newCallId);

}  // namespace host
