#pragma once

#include <filesystem>
#include <string>

namespace host {

/// The token that clients of the HTTP face show, kept in a file for its owner only (mode 0600). Makes a new one of 256
/// random bits when the file is not there. Throws a `std::runtime_error` with a text for the user: the file cannot be read
/// or made, or holds no token.
[[nodiscard]] std::string apiToken(const std::filesystem::path& path);

}  // namespace host
