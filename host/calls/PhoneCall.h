#pragma once

#include <chrono>
#include <optional>
#include <set>
#include <string>

#include "host/calls/CallReason.h"
#include "platform/csta/CSTADevice.h"

namespace host {

/// The phone's own part in a call.
enum class PhoneRole {
    /// It rings here.
    eRinging,
    /// Placed here and not established yet.
    eCalling,
    /// Established: the phone takes part, or holds the call.
    eConnected,
};

/// One call in which the monitored phone takes part, as the events of the switch describe it. A plain value.
struct PhoneCall {
    using Time = std::chrono::system_clock::time_point;

    std::string callId;
    /// The device whose monitor reports the call: `CSTADevice::kLocalDevice`, a shared line, the Bluetooth
    /// telephone.
    std::string device;
    PhoneRole role = PhoneRole::eRinging;
    /// True if the call was placed here.
    bool outgoing = false;
    /// The phone's own connection of a conference, or a call whose id the conference has.
    bool conference = false;
    /// The call id of the conference that the call is in, and with which it ends; empty for none.
    std::string conferenceId;
    /// The call has been offered, but does not ring yet. Not noted in the database.
    bool offered = false;
    /// The switch has marked the call as missed.
    bool markedMissed = false;
    /// The phone has placed the call to pick another one up.
    bool pickUp = false;
    /// Another party has transferred the call, so its events may name a new partner.
    bool transferred = false;
    /// Events may have been lost since the last one, so the id may belong to another call now.
    bool unconfirmed = false;
    /// The phone holds the call. Not noted in the database.
    bool held = false;
    /// Another phone has established the call while it rang here.
    bool elsewhere = false;
    /// Why the call has another party than the one that was called: by the newest event that gives a reason,
    /// also by the one that ends the call.
    CallReason reason = CallReason::eNone;

    /// The phone's own number is `CSTADevice::kLocalDevice`.
    CSTADevice calling;
    CSTADevice called;
    CSTADevice redirecting;
    /// The party at the far end of an established call; empty if it is not known.
    CSTADevice partner;
    /// The numbers of all other devices that have rung or taken part and have not left.
    std::set<std::string> others;

    Time firstEvent{};
    /// The time since which the call is established here.
    std::optional<Time> established;
    Time lastEvent{};
    /// `Moment::offset` at the first event, or when the call was read from the database; `PhoneCalls` sets
    /// it.
    std::optional<std::chrono::nanoseconds> clockOffset{};
};

/// The party at the far end, as far as it is known.
[[nodiscard]] inline const CSTADevice& farEndOf(const PhoneCall& call) {
    if (!call.partner.number.empty()) {
        return call.partner;
    }
    return call.outgoing ? call.called : call.calling;
}

/// True for the mere connection of a conference, which the journal does not file: it files the calls in it.
[[nodiscard]] inline bool isOnlyConference(const PhoneCall& call) {
    return call.conference && !call.outgoing && call.calling.number.empty() && call.calling.name.empty();
}

}  // namespace host
