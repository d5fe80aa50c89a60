#pragma once

#include <string>

#include "host/switch/calls/SwitchCall.h"
#include "host/switch/calls/SwitchConference.h"

namespace host {

/// The new call of a transfer, and the events for the phones.
struct TransferredCall {
    SwitchCall call;
    SwitchEvents events;
};

/// The conference of the three parties of two calls, and the events for the phones.
struct ConferencedCalls {
    SwitchConference conference;
    SwitchEvents events;
};

/// A held call and another call of the holder: the input of a transfer and a conference.
struct HeldPair {
    const SwitchCall& held;
    SwitchCall::Side holder;
    const SwitchCall& other;

    [[nodiscard]] const SwitchParty& owner() const { return held.party(holder); }
    [[nodiscard]] const SwitchCall::End& heldEnd() const { return held.end(SwitchCall::other(holder)); }
    [[nodiscard]] const SwitchCall::End& otherEnd() const;
};

/// The owner connects the far ends of both calls and leaves. The other call may still ring.
[[nodiscard]] TransferredCall transferCalls(const HeldPair& calls, const std::string& newCallId);
/// `by` transfers the call to `to` without consultation. The phone of `to` rings.
[[nodiscard]] TransferredCall singleStepTransfer(SwitchCall call, SwitchCall::Side by, const SwitchParty& to,
                                                 const std::string& newCallId);
/// The owner joins both calls. The switch then sends each member the far end of its call.
[[nodiscard]] ConferencedCalls joinCalls(const HeldPair& calls, const std::string& newCallId);

}  // namespace host
