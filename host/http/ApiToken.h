#pragma once

#include <filesystem>
#include <string>

namespace host {

/// Returns the token of the HTTP API, which is stored in a file that only its owner can read (mode 0600).
/// Creates the file with a new token of 256 random bits if it does not exist. Throws `std::runtime_error`
/// with a text for the user if the file cannot be read or created, or contains no token.
[[nodiscard]] std::string apiToken(const std::filesystem::path& path);

}  // namespace host
