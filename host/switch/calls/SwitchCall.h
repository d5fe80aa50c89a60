#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "host/switch/calls/LiveCall.h"
#include "host/switch/calls/SwitchEvent.h"

namespace host {

/// A call between two parties inside the switch. Each operation returns the events for the phones,
/// independent of their XML. Not thread-safe.
class SwitchCall {
public:
    enum class Side : std::size_t { eCaller = 0, eCalled = 1 };

    struct End {
        SwitchParty party;
        /// The ECMA-323 value; "null" if the party is not in the call.
        std::string state = "null";
    };

    /// `redirectWord` is the cause of the Delivered event of a redirected call.
    SwitchCall(std::string callId, SwitchParty caller, SwitchParty called, SwitchParty redirectedFrom,
               std::string redirectWord);
    /// A call that a transfer has created. The caller knows its partner from the transfer, so it receives no
    /// events of the call set-up; these would look as if it had dialled.
    [[nodiscard]] static SwitchCall transferred(std::string callId, const End& caller, const End& called);

    /// The caller's phone dials. `initiated` is the cause of its ServiceInitiated event; empty for none.
    [[nodiscard]] SwitchEvents originate(const std::string& initiated);
    [[nodiscard]] SwitchEvent ring();
    [[nodiscard]] SwitchEvent answerCall();
    [[nodiscard]] SwitchEvent hold(Side by, const std::string& cause);
    [[nodiscard]] SwitchEvent retrieve(Side by);
    /// One side leaves a call that continues as another call.
    [[nodiscard]] SwitchEvent leave(Side by);
    /// Both sides leave; `first` hangs up.
    [[nodiscard]] SwitchEvents hangUp(Side first, const std::string& cause);
    /// The called party is busy, for example: the caller's phone gives up.
    [[nodiscard]] SwitchEvents fail(const std::string& cause);
    /// The call is diverted from the called phone to `to`, which rings or, for a pick-up, has answered.
    [[nodiscard]] SwitchEvents divert(const SwitchParty& to, const std::string& word);
    /// Another phone of the called party has answered; the call ends for this one.
    [[nodiscard]] SwitchEvent answerElsewhere();
    /// The switch marks the call as missed by the called phone.
    [[nodiscard]] SwitchEvent markMissed() const;
    /// Sends `learner` the name of the other side.
    [[nodiscard]] SwitchEvent setName(Side learner, const std::string& name);

    /// The side of the device in the live call; `std::nullopt` if it has none.
    [[nodiscard]] std::optional<Side> sideOf(std::string_view device) const;
    /// True if no party is in the call, after its begin.
    [[nodiscard]] bool isOver() const noexcept {
        return m_ends[0].state == "null" && m_ends[1].state == "null";
    }

    [[nodiscard]] LiveCall live() const;
    [[nodiscard]] static Side other(Side side) noexcept;
    /// True if the called party has taken the call, whether it is still in the call or not.
    [[nodiscard]] bool wasEstablished() const noexcept { return m_established; }
    [[nodiscard]] bool isRinging() const noexcept { return end(Side::eCalled).state == "alerting"; }
    [[nodiscard]] const std::string& id() const noexcept { return m_callId; }
    [[nodiscard]] const End& end(Side side) const noexcept { return m_ends[static_cast<std::size_t>(side)]; }
    [[nodiscard]] const SwitchParty& party(Side side) const noexcept { return end(side).party; }
    /// The dialled party, and the first party that the call was forwarded to from there, if any.
    [[nodiscard]] const SwitchParty& firstCalled() const noexcept { return m_firstCalled; }
    [[nodiscard]] const SwitchParty& firstForwardedTo() const noexcept { return m_firstForwardedTo; }

private:
    [[nodiscard]] End& end(Side side) noexcept { return m_ends[static_cast<std::size_t>(side)]; }

    [[nodiscard]] SwitchEvent makeEvent(WireEvent type, const SwitchParty& subject,
                                        const std::string& cause) const;
    /// An event of the call set-up. The caller receives it unless the call was created by a transfer.
    [[nodiscard]] SwitchEvent setUp(WireEvent type, const std::string& cause) const;
    /// A CallInformation event for one side.
    [[nodiscard]] SwitchEvent makeInformation(Side informed) const;
    /// Removes the side from the call. It still receives the event.
    [[nodiscard]] SwitchEvent clear(Side side, const SwitchParty& releasing, const std::string& cause);

    std::string m_callId;
    std::array<End, 2> m_ends;
    SwitchParty m_firstCalled;
    SwitchParty m_firstForwardedTo;
    SwitchParty m_redirectedFrom;
    std::string m_redirectWord;
    bool m_established = false;
    bool m_transferred = false;
};

}  // namespace host
