#pragma once

#include <map>
#include <string>
#include <vector>

#include "host/switch/server/SwitchOptions.h"

namespace CLI {
class App;
}

namespace calljournal {

/// Adds `--answer REQUEST=HOW`, which may be repeated. `readResponseMode` accepts the values. Requires:
/// `values` outlives `app`.
void addResponseModeOption(CLI::App& app, std::vector<std::string>& values);

/// The response modes of the simulated switch, by request; the last text about a request wins.
[[nodiscard]] std::map<std::string, host::ResponseMode> readResponseMode(
    const std::vector<std::string>& values);

}  // namespace calljournal
