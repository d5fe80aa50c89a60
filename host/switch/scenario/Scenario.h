#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "host/switch/scenario/ScenarioStep.h"

namespace host {

/// A scenario for the simulated switch, as read from a text (docs/scenarios.md). `repeat` is unrolled, the
/// names of calls and phones are checked. A plain value.
struct Scenario {
    /// The phone of a scenario without a `device` statement, unless the simulator has another default.
    static constexpr const char* kDefaultDevice = "2001";

    std::vector<ScenarioStep> steps;
    /// The number of calls that one pass makes, and the sum of its waits.
    std::size_t callCount = 0;
    std::chrono::milliseconds waitTime{0};
    /// The scenario's phone, from the `device` statement; empty without one.
    std::string device;
    /// The other telephone lines of the phone, from the `line` statements.
    std::vector<std::string> lines;
};

}  // namespace host
