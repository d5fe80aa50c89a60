#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/switch/calls/LiveCall.h"

namespace host {

/// The SnapshotDeviceResponse for `device`: those of the switch's live calls that it takes part in.
[[nodiscard]] std::string writeDeviceSnapshot(std::string_view nameSpace, const std::string& device,
                                              const std::vector<LiveCall>& calls);
/// The SnapshotCallResponse.
[[nodiscard]] std::string writeCallSnapshot(std::string_view nameSpace, const LiveCall& call);

}  // namespace host
