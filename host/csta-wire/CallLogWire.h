#pragma once

#include <optional>
#include <string_view>

#include <pugixml.hpp>

#include "platform/csta/CallLogEntryEvent.h"
#include "platform/csta/CallLogEntryRequest.h"

namespace host {

class MessageWriter;

/// How an entry of the switch's own call log, and what a phone wants done with one, stand in the private data of a
/// message (docs/messages.md). Pure functions; any thread.

inline constexpr std::string_view kCallLogEntry = "callLogEntry";
inline constexpr std::string_view kCallLogEntryRequest = "callLogEntryRequest";

// Into the message's open element, `privateData` included. Members that are zero or empty are left out.
void writeCallLogEntry(MessageWriter& writer, const CallLogEntryEvent& entry);
void writeCallLogEntryRequest(MessageWriter& writer, const CallLogEntryRequest& request);

// What stands in the message whose root this is; nothing where there is none, or one whose action or number of a log
// cannot be read.
[[nodiscard]] std::optional<CallLogEntryEvent> readCallLogEntry(pugi::xml_node root);
[[nodiscard]] std::optional<CallLogEntryRequest> readCallLogEntryRequest(pugi::xml_node root);

/// The element of a message's private data, wherever it stands; a null node when there is none.
[[nodiscard]] pugi::xml_node privateDataOf(pugi::xml_node root);

}  // namespace host
