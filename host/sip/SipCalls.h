#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/sip/PhoneMessage.h"
#include "host/sip/PhoneTexts.h"
#include "host/switch/calls/LiveCall.h"
#include "host/switch/calls/SwitchCall.h"
#include "host/switch/calls/SwitchEvent.h"

namespace host {

/// The calls of a SIP telephone as calls of a switch: each event of the telephone results in the events of
/// one monitored device. A call begins and ends exactly once, in any order of the telephone's messages.
///
///     telephone                        events of the device
///     dial, or the first sign of it    ServiceInitiated (only by `dialled`), Originated
///     CALL_RINGING, CALL_PROGRESS      Delivered
///     CALL_INCOMING                    Delivered
///     CALL_ESTABLISHED                 Established; Held for the others if it is incoming
///     CALL_CLOSED                      ConnectionCleared of both ends, or Failed and that of the own end;
///                                      Retrieved for the call that the telephone takes back
///
/// A party whose name the telephone does not report has the name with which it called last.
///
/// Not thread-safe.
class SipCalls {
public:
    /// A call that a client of the CSTA link names.
    struct Found {
        std::string sipId;
        bool outgoing = false;
        bool isRinging = false;
    };

    /// `own` is the monitored device.
    explicit SipCalls(SwitchParty own) : m_own(std::move(own)) {}

    [[nodiscard]] SwitchEvents process(const SipPhoneEvent& event);
    /// The client has dialled a call, which now has an id. Has no effect if the call is known.
    [[nodiscard]] SwitchEvents dialled(const std::string& sipId, const std::string& uri);
    /// Adds a call that the telephone had already.
    [[nodiscard]] SwitchEvents introduce(const SipCallState& call);
    /// The telephone is not connected any more: its calls may end meanwhile.
    void doubtAll();
    /// Removes, without events, the calls that were neither introduced nor had an event since `doubtAll`.
    /// Returns true if there were any.
    [[nodiscard]] bool dropDoubtful();
    /// Ends all calls: the telephone has gone.
    [[nodiscard]] SwitchEvents endAll();

    [[nodiscard]] std::optional<Found> find(const std::string& cstaId) const;
    /// The call that the telephone should put on hold when it accepts `accepted`: a conversation, or else
    /// another call that rings.
    [[nodiscard]] std::optional<Found> heldFor(const Found& accepted) const;
    [[nodiscard]] std::vector<LiveCall> live() const;
    [[nodiscard]] bool isKnown(const std::string& sipId, bool outgoing) const {
        return m_calls.contains({sipId, outgoing});
    }
    [[nodiscard]] const SwitchParty& own() const noexcept { return m_own; }

private:
    struct Call {
        SwitchCall call;
        SipCallState::State state = SipCallState::State::eDialling;
        bool held = false;
        bool doubtful = false;
    };
    /// The Call-ID, and true for an outgoing call.
    using Key = std::pair<std::string, bool>;
    using Side = SwitchCall::Side;

    [[nodiscard]] static Found foundAs(const Key& key, const Call& call);
    [[nodiscard]] static Side ownSide(const Key& key) noexcept;
    /// The call, which is created with its first events if it is new.
    Call& callOf(const SipPhoneEvent& event, const std::string& initiated, SwitchEvents& events);
    [[nodiscard]] SwitchParty named(SwitchParty peer);
    void ring(const Key& key, Call& call, SwitchEvents& events) const;
    void establish(const Key& key, Call& call, SwitchEvents& events);
    void close(const Key& key, const std::string& reason, SwitchEvents& events);
    void holdOthers(const Key& key, SwitchEvents& events);
    void retrieveLast(SwitchEvents& events);
    /// Adds the events for the own device only.
    void append(SwitchEvents& events, SwitchEvents added) const;

    static constexpr std::size_t kMostNames = 1000;

    const SwitchParty m_own;
    std::map<Key, Call> m_calls;
    /// The names of the parties, by their numbers.
    std::map<std::string, std::string> m_names;
};

}  // namespace host
