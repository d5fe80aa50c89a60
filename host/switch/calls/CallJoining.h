#pragma once

#include <string>

#include "host/switch/calls/SimulatedCall.h"
#include "host/switch/calls/SimulatedConference.h"

namespace host {

/// Two parties out of two calls in a new one, and what the phones hear of it.
struct TransferredCall {
    SimulatedCall call;
    CallOccurrences heard;
};

/// Three parties out of two calls in a new one, and what the phones hear of it.
struct ConferencedCalls {
    SimulatedConference conference;
    CallOccurrences heard;
};

/// A call that one of its ends holds, and another call of the same party: what a transfer and a conference begin with.
struct HeldPair {
    const SimulatedCall& held;
    SimulatedCall::Side holder;
    const SimulatedCall& other;

    [[nodiscard]] const Party& owner() const { return held.party(holder); }
    [[nodiscard]] const SimulatedCall::End& heldEnd() const { return held.end(SimulatedCall::other(holder)); }
    [[nodiscard]] const SimulatedCall::End& otherEnd() const;
};

/// The owner of both calls connects their far ends and is out. The other call may still ring.
[[nodiscard]] TransferredCall transferCalls(const HeldPair& calls, const std::string& newCallId);
/// `by` hands the call on without asking `to`, who rings.
[[nodiscard]] TransferredCall handOn(SimulatedCall call, SimulatedCall::Side by, const Party& to,
                                     const std::string& newCallId);
/// The owner of both calls joins them. Each member is then told by the switch who the far end of its call was.
[[nodiscard]] ConferencedCalls joinCalls(const HeldPair& calls, const std::string& newCallId);

}  // namespace host
