#pragma once

#include <stdexcept>

namespace host {

/// The configuration cannot be used. `what()` is a sentence for the user: file, line, the key's name, what is wrong and
/// what would be right ("calljournal.toml:7: switch.port: must be a whole number from 1 to 65535").
class ConfigurationError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace host
