#pragma once

#include "apps/calljournal/command-line/Command.h"
#include "apps/calljournal/diagnosis/Finding.h"
#include "host/config/Configuration.h"

namespace calljournal {

/// Examines the server of the data directory and, as it says itself, its link to the switch. If none runs,
/// connects to the switch, and at once hangs up. Takes some seconds if the switch does not respond.
[[nodiscard]] Findings examineConnections(const CommonOptions& common,
                                          const host::Configuration& configuration);

}  // namespace calljournal
