#pragma once

#include <string>
#include <vector>

#include "host/config/Configuration.h"

namespace host {

/// The keys, as the file names them, whose values differ and that take effect only at a start. Those of
/// `[log]` are not among them.
[[nodiscard]] std::vector<std::string> changesThatNeedRestart(const Configuration& before,
                                                              const Configuration& after);

}  // namespace host
