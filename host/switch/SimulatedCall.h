#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "host/csta-wire/EventShapes.h"
#include "host/switch/ScenarioStep.h"

namespace host {

/// One event of a call, as every monitor of it would see it but for the state of the monitored phone.
struct CallOccurrence {
    /// A phone that hears of it, and the standard's word for the state of its own connection.
    struct Listener {
        std::string device;
        std::string localConnection;
    };

    WireEvent event = WireEvent::eOriginated;
    std::string callId;
    /// Whose connection it is about.
    Party subject;
    /// The device that only this event names (alerting, answering, holding, releasing, ...).
    Party device;
    Party calling;
    Party called;
    Party redirectedFrom;
    Party newDestination;
    std::string cause;
    std::vector<Listener> listeners;
};

/// A call between two parties inside the switch: says what the phones hear of each thing that happens to it. Knows
/// nothing of the wire. Not thread-safe.
class SimulatedCall {
public:
    enum class Side : std::size_t { eCaller = 0, eCalled = 1 };
    using Occurrences = std::vector<CallOccurrence>;

    /// `redirectWord` is the cause that the called phone rings with when the call was redirected to it.
    SimulatedCall(std::string callId, Party caller, Party called, Party redirectedFrom,
                  std::string redirectWord);

    /// The caller's phone has dialled; `byHand` when it went off-hook for it.
    [[nodiscard]] Occurrences originate(bool byHand);
    [[nodiscard]] Occurrences ring();
    [[nodiscard]] Occurrences answer();
    [[nodiscard]] Occurrences hold(Side by);
    [[nodiscard]] Occurrences retrieve(Side by);
    /// Both sides leave, `first` of its own accord.
    [[nodiscard]] Occurrences hangUp(Side first, const std::string& cause);
    [[nodiscard]] Occurrences busy();
    /// The called phone loses the call to `to`, which rings (or, for a pick-up, has answered at once).
    [[nodiscard]] Occurrences divert(const Party& to, const std::string& word);
    /// Another phone of the called party has answered; for this one the call is over.
    [[nodiscard]] Occurrences answerElsewhere();

    [[nodiscard]] bool isRinging() const noexcept { return end(Side::eCalled).state == "alerting"; }
    [[nodiscard]] const Party& party(Side side) const noexcept { return end(side).party; }

private:
    struct End {
        Party party;
        /// The standard's word; "null" when it is not in the call.
        std::string state = "null";
    };

    [[nodiscard]] End& end(Side side) noexcept { return m_ends[static_cast<std::size_t>(side)]; }
    [[nodiscard]] const End& end(Side side) const noexcept { return m_ends[static_cast<std::size_t>(side)]; }
    [[nodiscard]] static Side other(Side side) noexcept;

    [[nodiscard]] CallOccurrence occurrence(WireEvent event, const Party& subject,
                                            const std::string& cause) const;
    /// Takes the side out of the call; it still hears of it.
    [[nodiscard]] CallOccurrence clear(Side side, const Party& releasing, const std::string& cause);

    const std::string m_callId;
    std::array<End, 2> m_ends;
    const Party m_firstCalled;
    Party m_redirectedFrom;
    std::string m_redirectWord;
};

}  // namespace host
