#pragma once

#include <chrono>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/switch/scenario/ScenarioStep.h"

namespace host {

/// A scenario text has a fault. `what()` is "file:line: what is wrong", ready to be shown.
class ScenarioError : public std::runtime_error {
public:
    ScenarioError(const std::string& source, std::size_t line, const std::string& fault);

    [[nodiscard]] std::size_t line() const noexcept { return m_line; }

private:
    std::size_t m_line;
};

/// What the simulated switch is to do, read from a text (docs/scenarios.md): calls, who, when, how they end. A plain
/// value; `repeat` is already unrolled, names of calls and phones are already checked.
class Scenario {
public:
    /// The phone of a scenario without a `device` line, unless the simulator is told another.
    static constexpr const char* kUsualDevice = "2001";

    /// `source` names the text in errors. Throws `ScenarioError` at the first fault.
    [[nodiscard]] static Scenario parse(std::string_view text, const std::string& source = "scenario");
    /// As `parse`; a file that cannot be read is a `ScenarioError` at line 0.
    [[nodiscard]] static Scenario load(const std::string& path);

    [[nodiscard]] const std::vector<ScenarioStep>& steps() const noexcept { return m_steps; }
    /// How many calls one pass makes, and how long its waits are together.
    [[nodiscard]] std::size_t callCount() const noexcept { return m_calls; }
    [[nodiscard]] std::chrono::milliseconds waitTime() const noexcept { return m_waits; }
    /// The phone that the scenario is about, from its `device` line; empty when it has none.
    [[nodiscard]] const std::string& device() const noexcept { return m_device; }
    /// The other lines that the phone serves, from the `line` lines.
    [[nodiscard]] const std::vector<std::string>& lines() const noexcept { return m_lines; }

private:
    friend class ScenarioParser;

    std::vector<ScenarioStep> m_steps;
    std::size_t m_calls = 0;
    std::chrono::milliseconds m_waits{0};
    std::string m_device;
    std::vector<std::string> m_lines;
};

/// The scenario that `calljournal demo` plays: a lively day at an extension, never quite the same two calls in a row.
[[nodiscard]] std::string_view demoScenarioText();

}  // namespace host
