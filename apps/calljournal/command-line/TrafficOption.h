#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "host/switch/traffic/TrafficOptions.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace calljournal {

/// The options of `calljournal switch` for random calls of many devices, as they were given.
struct TrafficValues {
    /// Empty: no traffic.
    std::string lines;
    std::uint64_t calls = 0;
    bool together = false;
    double ringSeconds = 5;
    double talkSeconds = 60;
    double established = 0.7;
    std::size_t groupSize = 0;
    std::uint64_t seed = 1;
    /// Empty: no file.
    std::string callsFile;
};

/// Adds `--lines FIRST..LAST` and the options that require it. Returns that of `--lines`. Requires: `values`
/// outlives `app`.
CLI::Option* addTrafficOptions(CLI::App& app, TrafficValues& values);

/// `rate` is in calls per second; 0 stands for the default. Requires `values.lines`.
[[nodiscard]] host::TrafficOptions trafficOptions(const TrafficValues& values, double rate);

}  // namespace calljournal
