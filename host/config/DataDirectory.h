#pragma once

#include <filesystem>

namespace host {

/// Returns the default directory of the program's files: $XDG_STATE_HOME/calljournal, or
/// ~/.local/state/calljournal if the variable is not set or not absolute. Throws `ConfigurationError` if
/// there is no home directory either. Does not create the directory. Reads the environment, so no other
/// thread may change that meanwhile.
[[nodiscard]] std::filesystem::path defaultDataDirectory();

/// Returns the user's configuration file: $XDG_CONFIG_HOME/calljournal/calljournal.toml, or
/// ~/.config/calljournal/calljournal.toml if the variable is not set or not absolute. Empty if there is no
/// such file. Reads the environment, as above.
[[nodiscard]] std::filesystem::path userConfigurationFile();

/// Creates the directory and its parents if they do not exist, with mode 0700. Throws `ConfigurationError` if
/// this fails, and for a directory in which every user may write.
void makeDataDirectory(const std::filesystem::path& directory);

}  // namespace host
