#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace host {

/// A fault in a scenario text. `what()` is "file:line: fault", ready for display.
class ScenarioError : public std::runtime_error {
public:
    /// `line` is 0 for a fault of the whole file.
    ScenarioError(const std::string& source, std::size_t line, const std::string& fault)
        : std::runtime_error(source + (line == 0 ? "" : ":" + std::to_string(line)) + ": " + fault) {}
};

}  // namespace host
