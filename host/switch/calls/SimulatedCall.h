#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "host/switch/calls/SimulatedEvent.h"

namespace host {

/// A call between two parties inside the switch: says what the phones hear of each thing that happens to it. Knows
/// nothing of the wire. Not thread-safe.
class SimulatedCall {
public:
    enum class Side : std::size_t { eCaller = 0, eCalled = 1 };

    struct End {
        Party party;
        /// The standard's word; "null" when it is not in the call.
        std::string state = "null";
    };

    /// `redirectWord` is the cause that the called phone rings with when the call was redirected to it.
    SimulatedCall(std::string callId, Party caller, Party called, Party redirectedFrom,
                  std::string redirectWord);
    /// A call that a transfer has made. The caller has heard from the transfer who its partner is: it is not
    /// told how that one is reached, which would look as if it had dialled.
    [[nodiscard]] static SimulatedCall transferred(std::string callId, const End& caller, const End& called);

    /// The caller's phone has dialled. `initiated` is the cause with which it went off-hook, if it did.
    [[nodiscard]] CallOccurrences originate(const std::string& initiated);
    [[nodiscard]] SimulatedEvent ring();
    [[nodiscard]] SimulatedEvent answer();
    [[nodiscard]] SimulatedEvent hold(Side by, const std::string& cause);
    [[nodiscard]] SimulatedEvent retrieve(Side by);
    /// One side leaves a call that goes on as another one.
    [[nodiscard]] SimulatedEvent leave(Side by);
    /// Both sides leave, `first` of its own accord.
    [[nodiscard]] CallOccurrences hangUp(Side first, const std::string& cause);
    [[nodiscard]] CallOccurrences busy();
    /// The called phone loses the call to `to`, which rings (or, for a pick-up, has answered at once).
    [[nodiscard]] CallOccurrences divert(const Party& to, const std::string& word);
    /// Another phone of the called party has answered; for this one the call is over.
    [[nodiscard]] SimulatedEvent answerElsewhere();
    /// The switch counts the call as missed by the called phone.
    [[nodiscard]] SimulatedEvent markMissed() const;
    /// `learner` is told the name of the other side.
    [[nodiscard]] SimulatedEvent tellName(Side learner, const std::string& name);

    [[nodiscard]] static Side other(Side side) noexcept;
    [[nodiscard]] bool isRinging() const noexcept { return end(Side::eCalled).state == "alerting"; }
    [[nodiscard]] const std::string& id() const noexcept { return m_callId; }
    [[nodiscard]] const End& end(Side side) const noexcept { return m_ends[static_cast<std::size_t>(side)]; }
    [[nodiscard]] const Party& party(Side side) const noexcept { return end(side).party; }
    /// Whom the caller dialled, and the first one that the call was forwarded to from there, if it was.
    [[nodiscard]] const Party& firstCalled() const noexcept { return m_firstCalled; }
    [[nodiscard]] const Party& firstForwardedTo() const noexcept { return m_firstForwardedTo; }

private:
    [[nodiscard]] End& end(Side side) noexcept { return m_ends[static_cast<std::size_t>(side)]; }

    [[nodiscard]] SimulatedEvent occurrence(WireEvent event, const Party& subject,
                                            const std::string& cause) const;
    /// The called party is reached, or is not: the caller hears of it unless it was transferred here.
    [[nodiscard]] SimulatedEvent setUp(WireEvent event, const std::string& cause) const;
    /// What the switch says of the call to one side beside the events.
    [[nodiscard]] SimulatedEvent information(Side told) const;
    /// Takes the side out of the call; it still hears of it.
    [[nodiscard]] SimulatedEvent clear(Side side, const Party& releasing, const std::string& cause);

    std::string m_callId;
    std::array<End, 2> m_ends;
    Party m_firstCalled;
    Party m_firstForwardedTo;
    Party m_redirectedFrom;
    std::string m_redirectWord;
    bool m_transferred = false;
};

}  // namespace host
