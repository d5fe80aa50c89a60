#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace host {

/// The signature of a message, "sha256=" and the HMAC-SHA-256 of "TIMESTAMP.BODY" in hexadecimal digits. The
/// timestamp is in seconds since 1970. Pure; any thread may call.
[[nodiscard]] std::string signatureOf(const std::string& secret, std::int64_t timestamp,
                                      const std::string& body);

/// The text of the file without line breaks at its end. Throws `ConfigurationError` with a message for the
/// user if it cannot be read, has more than 4 KiB, or is empty.
[[nodiscard]] std::string readSecret(const std::filesystem::path& file);

}  // namespace host
