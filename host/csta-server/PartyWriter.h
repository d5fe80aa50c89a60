#pragma once

#include <string>
#include <string_view>

#include "host/csta-wire/MessageWriter.h"
#include "host/csta-wire/SwitchParty.h"

namespace host {

/// Writes one alternative of the schema's device choice. `identifier` is the name of the element for its
/// text.
void writeDevice(MessageWriter& writer, std::string_view member, std::string_view identifier,
                 const SwitchParty& party);
/// The same with the name that most members use.
void writeParty(MessageWriter& writer, std::string_view member, const SwitchParty& party);

/// The connection of a party with a restricted number has a generated device id.
[[nodiscard]] std::string connectionDevice(const SwitchParty& party, const std::string& callId);
void writeConnection(MessageWriter& writer, std::string_view member, const std::string& callId,
                     const SwitchParty& party);

}  // namespace host
