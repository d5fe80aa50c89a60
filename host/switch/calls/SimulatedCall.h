#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "host/switch/calls/LiveCall.h"
#include "host/switch/calls/SimulatedEvent.h"

namespace host {

/// A call between two parties inside the switch. Each operation returns the events for the phones,
/// independent of their XML. Not thread-safe.
class SimulatedCall {
public:
    enum class Side : std::size_t { eCaller = 0, eCalled = 1 };

    struct End {
        SimulatedParty party;
        /// The ECMA-323 value; "null" if the party is not in the call.
        std::string state = "null";
    };

    /// `redirectWord` is the cause of the Delivered event of a redirected call.
    SimulatedCall(std::string callId, SimulatedParty caller, SimulatedParty called,
                  SimulatedParty redirectedFrom, std::string redirectWord);
    /// A call that a transfer has created. The caller knows its partner from the transfer, so it receives no
    /// events of the call set-up; these would look as if it had dialled.
    [[nodiscard]] static SimulatedCall transferred(std::string callId, const End& caller, const End& called);

    /// The caller's phone dials. `initiated` is the cause of its ServiceInitiated event; empty for none.
    [[nodiscard]] SimulatedEvents originate(const std::string& initiated);
    [[nodiscard]] SimulatedEvent ring();
    [[nodiscard]] SimulatedEvent answerCall();
    [[nodiscard]] SimulatedEvent hold(Side by, const std::string& cause);
    [[nodiscard]] SimulatedEvent retrieve(Side by);
    /// One side leaves a call that continues as another call.
    [[nodiscard]] SimulatedEvent leave(Side by);
    /// Both sides leave; `first` hangs up.
    [[nodiscard]] SimulatedEvents hangUp(Side first, const std::string& cause);
    [[nodiscard]] SimulatedEvents busy();
    /// The call is diverted from the called phone to `to`, which rings or, for a pick-up, has answered.
    [[nodiscard]] SimulatedEvents divert(const SimulatedParty& to, const std::string& word);
    /// Another phone of the called party has answered; the call ends for this one.
    [[nodiscard]] SimulatedEvent answerElsewhere();
    /// The switch marks the call as missed by the called phone.
    [[nodiscard]] SimulatedEvent markMissed() const;
    /// Sends `learner` the name of the other side.
    [[nodiscard]] SimulatedEvent setName(Side learner, const std::string& name);

    [[nodiscard]] LiveCall live() const;
    [[nodiscard]] static Side other(Side side) noexcept;
    [[nodiscard]] bool isRinging() const noexcept { return end(Side::eCalled).state == "alerting"; }
    [[nodiscard]] const std::string& id() const noexcept { return m_callId; }
    [[nodiscard]] const End& end(Side side) const noexcept { return m_ends[static_cast<std::size_t>(side)]; }
    [[nodiscard]] const SimulatedParty& party(Side side) const noexcept { return end(side).party; }
    /// The dialled party, and the first party that the call was forwarded to from there, if any.
    [[nodiscard]] const SimulatedParty& firstCalled() const noexcept { return m_firstCalled; }
    [[nodiscard]] const SimulatedParty& firstForwardedTo() const noexcept { return m_firstForwardedTo; }

private:
    [[nodiscard]] End& end(Side side) noexcept { return m_ends[static_cast<std::size_t>(side)]; }

    [[nodiscard]] SimulatedEvent makeEvent(WireEvent type, const SimulatedParty& subject,
                                           const std::string& cause) const;
    /// An event of the call set-up. The caller receives it unless the call was created by a transfer.
    [[nodiscard]] SimulatedEvent setUp(WireEvent type, const std::string& cause) const;
    /// A CallInformation event for one side.
    [[nodiscard]] SimulatedEvent makeInformation(Side informed) const;
    /// Removes the side from the call. It still receives the event.
    [[nodiscard]] SimulatedEvent clear(Side side, const SimulatedParty& releasing, const std::string& cause);

    std::string m_callId;
    std::array<End, 2> m_ends;
    SimulatedParty m_firstCalled;
    SimulatedParty m_firstForwardedTo;
    SimulatedParty m_redirectedFrom;
    std::string m_redirectWord;
    bool m_transferred = false;
};

}  // namespace host
