#pragma once

#include <string>
#include <string_view>

#include "host/config/Configuration.h"

namespace host {

/// Reads a configuration from TOML, section by section. What each key may hold is written here and nowhere else.
/// Throws `ConfigurationError`.
[[nodiscard]] Configuration readConfiguration(std::string_view toml, const std::string& fileName);

}  // namespace host
