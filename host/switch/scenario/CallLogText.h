#pragma once

#include <string>
#include <vector>

#include "host/switch/scenario/StatementReader.h"
#include "platform/csta/CallLogEntryEvent.h"

namespace host {

/// The names of the switch's logs in scenarios, with their numbers on the wire.
[[nodiscard]] const StatementReader::Words& callLogNames();
/// The log with one of these numbers.
[[nodiscard]] CallLogEntryEvent::_LogTarget callLogOf(const std::string& number);

/// One text line per entry: log, number, time, name, group.
[[nodiscard]] std::string callLogText(const std::vector<CallLogEntryEvent>& entries);

}  // namespace host
