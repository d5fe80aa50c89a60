#pragma once

#include <string>

#include "apps/calljournal/reference/CommandText.h"

namespace calljournal {

/// The overview of the program: `overview` is its manual page in mdoc, in which the line `.\" COMMANDS` is
/// replaced by the list of the commands.
[[nodiscard]] std::string overviewPage(const CommandText& program, const std::string& overview);

/// The manual page of a command and of the commands below it, in mdoc. `notes` is text in mdoc for its
/// description, or empty. `date` is the line ".Dd DATE".
[[nodiscard]] std::string commandPage(const CommandText& command, const std::string& notes,
                                      const std::string& date);

}  // namespace calljournal
