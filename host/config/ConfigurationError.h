#pragma once

#include <stdexcept>

namespace host {

/// The configuration is not valid. `what()` is a message for the user with the file, the text line, the key,
/// the error and the valid values ("calljournal.toml:7: switch.port: must be a whole number from 1 to
/// 65535").
class ConfigurationError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace host
