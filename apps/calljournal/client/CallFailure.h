#pragma once

#include <filesystem>
#include <string>

#include "platform/journal-library/ObserverMessage.h"

namespace calljournal {

/// ", busy" for the message of a dialled call that failed: the reason of the call in the history, which the
/// item of the message does not have. Empty for any other message, and if the server does not respond.
[[nodiscard]] std::string failureText(const std::filesystem::path& dataDirectory,
                                      const journalxml::ObserverMessage& message);

}  // namespace calljournal
