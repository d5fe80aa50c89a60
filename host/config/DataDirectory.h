#pragma once

#include <filesystem>

namespace host {

/// Where the program keeps its files when nobody says otherwise: $XDG_STATE_HOME/calljournal, or
/// ~/.local/state/calljournal where that is not set (or not absolute). Throws `ConfigurationError` when there is no
/// home directory either. Nothing is made. Reads the environment: before other threads change that.
[[nodiscard]] std::filesystem::path defaultDataDirectory();

/// Makes the directory with all above it, for its owner only (mode 0700), unless it is there. Throws
/// `ConfigurationError` when that cannot be done.
void makeDataDirectory(const std::filesystem::path& directory);

}  // namespace host
