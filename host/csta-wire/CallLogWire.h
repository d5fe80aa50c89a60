#pragma once

#include <optional>
#include <string_view>

#include <pugixml.hpp>

#include "platform/csta/CallLogEntryEvent.h"
#include "platform/csta/CallLogEntryRequest.h"

namespace host {

class MessageWriter;

/// Entries of the switch's own call log, and a phone's requests about them, in the private data of a message
/// (docs/messages.md). Pure functions, thread-safe.

inline constexpr std::string_view kCallLogEntry = "callLogEntry";
inline constexpr std::string_view kCallLogEntryRequest = "callLogEntryRequest";

// Write into the message's open element, including `privateData`. Members that are zero or empty are omitted.
void writeCallLogEntry(MessageWriter& writer, const CallLogEntryEvent& entry);
void writeCallLogEntryRequest(MessageWriter& writer, const CallLogEntryRequest& request);

// Read from the message with this root element. Return `std::nullopt` if there is none, or if its action or
// log number is invalid.
[[nodiscard]] std::optional<CallLogEntryEvent> readCallLogEntry(pugi::xml_node root);
[[nodiscard]] std::optional<CallLogEntryRequest> readCallLogEntryRequest(pugi::xml_node root);

/// The private data element of a message, in either of its positions; a null node if there is none.
[[nodiscard]] pugi::xml_node privateDataOf(pugi::xml_node root);

}  // namespace host
