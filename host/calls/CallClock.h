#pragma once

#include <chrono>

#include "host/calls/PhoneCall.h"

namespace host {

/// A moment in both clocks of the machine: the one that can be set, and the time since it was started. Any
/// thread may call the functions.
struct Moment {
    PhoneCall::Time system{};
    std::chrono::nanoseconds sinceBoot{};

    [[nodiscard]] static Moment now();
    /// The difference by which a later moment shows if the clock was set between the two.
    [[nodiscard]] std::chrono::nanoseconds offset() const { return system.time_since_epoch() - sinceBoot; }
};

/// The moment in the clock with which the call began: its events keep their order, and the call its duration,
/// if the clock is set while it is up. Small corrections of the clock are followed.
[[nodiscard]] PhoneCall::Time timeIn(const PhoneCall& call, const Moment& moment);

}  // namespace host
