#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/journal-library/ManagementMessage.h"

/// Settings as the command line shows them. Pure functions; any thread may call.
namespace calljournal {

/// A line for each, with its kind, under titles; all of it printable, and cut to `width` columns.
[[nodiscard]] std::string settingsTable(const std::vector<journalxml::Setting>& settings, std::size_t width);

/// {"KEY":"VALUE",...}, without the keys that have no value.
[[nodiscard]] std::string settingsJson(const std::vector<journalxml::Setting>& settings);

/// {"rejected":{"KEY":{"code":10,"text":"..."}}}
[[nodiscard]] std::string refusalJson(const journalxml::RefusedKey& refused);

}  // namespace calljournal
