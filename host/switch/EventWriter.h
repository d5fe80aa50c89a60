#pragma once

#include <string>
#include <string_view>

#include "host/switch/SimulatedCall.h"

namespace host {

/// The event as one monitor gets it, by the schema.
[[nodiscard]] std::string writeEvent(std::string_view nameSpace, const CallOccurrence& occurrence,
                                     std::string_view monitorCrossRefId, std::string_view localConnection);

}  // namespace host
