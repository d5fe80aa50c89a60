#pragma once

#include <string_view>

namespace host {

/// The scenario of `calljournal demo`: a busy day at an extension, with many different kinds of calls.
[[nodiscard]] std::string_view demoScenarioText();

}  // namespace host
