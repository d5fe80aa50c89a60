#pragma once

#include <string>
#include <string_view>

#include "host/switch/calls/SimulatedEvent.h"
#include "platform/csta/CallLogEntryEvent.h"

namespace host {

/// The event as one monitor gets it, by the schema.
[[nodiscard]] std::string writeEvent(std::string_view nameSpace, const SimulatedEvent& occurrence,
                                     std::string_view monitorCrossRefId, std::string_view localConnection);

/// What has changed in the switch's own call log.
[[nodiscard]] std::string writeCallLogEvent(std::string_view nameSpace, const CallLogEntryEvent& entry,
                                            std::string_view monitorCrossRefId);

}  // namespace host
