#pragma once

#include <filesystem>
#include <string>

namespace host {

/// Replaces the file atomically by one with this text that only its owner can read and write (mode 0600): no
/// reader gets a part of it. Throws `std::runtime_error` with a text for the user. One writer at a time.
void replaceFile(const std::filesystem::path& path, const std::string& text);

}  // namespace host
