#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "host/config/Configuration.h"
#include "host/config/ConfigurationError.h"

namespace host {

// Both functions check the whole file. They throw a `ConfigurationError` with file, line and key for an
// unknown key, a wrong type or a value that is out of bounds. The source of this unit is the only place that
// defines the valid values of each key.

/// Reads a configuration from TOML text over the default values of `configuration`. `fileName` appears in
/// error messages only.
[[nodiscard]] Configuration readConfiguration(std::string_view toml, const std::string& fileName,
                                              Configuration configuration = {});

/// Reads a configuration file. Also throws `ConfigurationError` if the file is absent or cannot be read.
[[nodiscard]] Configuration loadConfiguration(const std::filesystem::path& file, Configuration defaults = {});

}  // namespace host
