#pragma once

#include <string>
#include <vector>

#include "host/switch/scenario/StatementReader.h"
#include "platform/csta/CallLogEntryEvent.h"

namespace host {

/// What people call the logs of the switch, with the number that each has on the wire.
[[nodiscard]] const StatementReader::Words& callLogNames();
/// The log of one of those numbers.
[[nodiscard]] CallLogEntryEvent::_LogTarget callLogOf(const std::string& number);

/// One line an entry: log, number, time, name, group.
[[nodiscard]] std::string callLogText(const std::vector<CallLogEntryEvent>& entries);

}  // namespace host
