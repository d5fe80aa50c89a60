#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// Random calls of many devices. A plain value.
struct TrafficOptions {
    /// The devices that call and are called. Each must be monitored before the first call.
    std::vector<std::string> devices;
    /// Calls per second on average; above 0. The arrivals are a Poisson process.
    double rate = 1;
    /// The number of calls; 0: without end.
    std::uint64_t calls = 0;
    /// All calls ring at the same moment, the first at the first device and so on; `calls` is at most the
    /// number of devices, 0 stands for that, and there are no groups and no calls from these devices.
    bool together = false;
    /// The mean times that a call rings and that the parties talk; exponentially distributed.
    std::chrono::milliseconds ringTime{5000};
    std::chrono::milliseconds talkTime{60000};
    /// The share of the calls that are established, 0 to 1.
    double established = 0.7;
    /// Each so many devices in order are a hunt group, at all of which a call to the group rings; below 2:
    /// there are no groups.
    std::size_t groupSize = 0;
    /// The same options and seed have the same calls.
    std::uint64_t seed = 1;
};

/// The devices of a range, "2000..11999". `std::nullopt` if the text is none: both are numbers of one to nine
/// digits, the second is not below the first, and there are at most 100,000 of them.
[[nodiscard]] std::optional<std::vector<std::string>> readDeviceRange(std::string_view text);

}  // namespace host
