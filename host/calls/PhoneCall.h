#pragma once

#include <chrono>
#include <optional>
#include <set>
#include <string>

#include "platform/csta/CSTADevice.h"

namespace host {

/// The phone's own part in a call.
enum class PhoneRole {
    /// It rings here.
    eRinging,
    /// Placed here and not answered yet.
    eCalling,
    /// Answered; the phone takes part, or holds the call.
    eConnected,
};

/// One call in which the monitored phone takes part, as the events of the switch describe it. A plain value.
struct PhoneCall {
    using Time = std::chrono::system_clock::time_point;

    std::string callId;
    /// The device whose monitor reported the call: the own device, a shared line, the Bluetooth telephone.
    std::string device;
    PhoneRole role = PhoneRole::eRinging;
    /// True if the call was placed here.
    bool outgoing = false;
    bool conference = false;

    /// The phone's own number is `CSTADevice::kLocalDevice`.
    CSTADevice calling;
    CSTADevice called;
    CSTADevice redirecting;
    /// The party that answered, or that the phone was connected with by a transfer; empty if not known.
    CSTADevice partner;

    Time firstEvent{};
    std::optional<Time> answer;
    Time lastEvent{};
};

}  // namespace host
