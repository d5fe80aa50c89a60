#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/switch/traffic/TrafficOptions.h"

namespace host {

/// A call of the traffic, decided before it begins. A plain value.
struct PlannedCall {
    /// Since the start of the traffic.
    std::chrono::microseconds begin{0};
    std::string caller;
    /// The devices that ring, or one number outside.
    std::vector<std::string> called;
    /// The group's number if the caller dialled a group; else empty.
    std::string group;
    /// The caller, and the called party, is a device of the traffic.
    bool callerIsHere = false;
    bool calledIsHere = false;
    std::chrono::microseconds ringing{0};
    /// Else the caller gives up.
    bool established = false;
    /// The one of `called` that takes the call.
    std::size_t taker = 0;
    std::chrono::microseconds talking{0};
};

/// Decides the calls of the traffic, in the order of their begin: half of them come from outside, of these
/// one in five for a group if there are groups, a quarter goes to numbers outside, and a quarter from device
/// to device. A device may have several calls at a time, but a party does not call a device again within
/// `kAgain`, as far as there are other devices. Deterministic; not thread-safe.
class TrafficPlan {
public:
    static constexpr std::chrono::seconds kAgain{5};

    /// Requires `options.devices` and a rate above 0.
    explicit TrafficPlan(TrafficOptions options);

    /// `std::nullopt` after the last call.
    [[nodiscard]] std::optional<PlannedCall> next();

private:
    [[nodiscard]] std::uint64_t count() const;
    [[nodiscard]] std::size_t below(std::size_t bound);
    [[nodiscard]] double share();
    [[nodiscard]] std::chrono::microseconds exponential(std::chrono::microseconds mean);
    [[nodiscard]] std::string outsideNumber();
    void chooseParties(PlannedCall& call);
    /// True if the caller has called one of the called devices within `kAgain`; remembers the call if not.
    [[nodiscard]] bool isAgain(const PlannedCall& call);
    void callGroup(PlannedCall& call);

    const TrafficOptions m_options;
    std::mt19937_64 m_random;
    std::uint64_t m_planned = 0;
    std::chrono::microseconds m_last{0};
    /// The calls within `kAgain`, as caller and called device, and their begin.
    std::set<std::pair<std::string, std::string>> m_recent;
    std::deque<std::pair<std::chrono::microseconds, std::pair<std::string, std::string>>> m_recentInOrder;
};

}  // namespace host
