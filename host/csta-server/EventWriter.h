#pragma once

#include <string>
#include <string_view>

#include "host/switch/calls/SwitchEvent.h"
#include "platform/csta/CallLogEntryEvent.h"

namespace host {

/// The event message for one monitor, by the schema.
[[nodiscard]] std::string writeEvent(std::string_view nameSpace, const SwitchEvent& event,
                                     std::string_view monitorCrossRefId, std::string_view localConnection);

/// The message for a change of the switch's call log.
[[nodiscard]] std::string writeCallLogEvent(std::string_view nameSpace, const CallLogEntryEvent& entry,
                                            std::string_view monitorCrossRefId);

}  // namespace host
