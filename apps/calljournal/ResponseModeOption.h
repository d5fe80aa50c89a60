#pragma once

#include <map>
#include <string>
#include <vector>

#include "host/switch/server/SwitchOptions.h"

namespace CLI {
class App;
}

namespace calljournal {

/// Adds `--answer REQUEST=HOW`, which may stand several times. `values` outlives `app`; what stands in it after the
/// command line was read can be given to `readResponseMode`.
void addResponseModeOption(CLI::App& app, std::vector<std::string>& values);

/// The requests that are to be answered badly, and how. Of two texts about one request the last holds.
[[nodiscard]] std::map<std::string, host::ResponseMode> readResponseMode(
    const std::vector<std::string>& values);

}  // namespace calljournal
