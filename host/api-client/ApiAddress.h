#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "host/config/Endpoint.h"

namespace host {

/// The file DATA/api-address: the address of the HTTP API of the server that runs in a data directory, by
/// which its clients find it. One text line, "http://127.0.0.1:8080". Exists as long as this object, which
/// the server owns; a killed server leaves its file. One thread at a time.
class ApiAddressFile {
public:
    static constexpr const char* kName = "api-address";

    /// Writes the file, with mode 0600. `listening` is the address that the server listens on, with its port.
    /// Throws `std::runtime_error` with a text for the user.
    ApiAddressFile(const std::filesystem::path& dataDirectory, const Endpoint& listening);
    /// Removes the file.
    ~ApiAddressFile();
    ApiAddressFile(const ApiAddressFile&) = delete;
    ApiAddressFile& operator=(const ApiAddressFile&) = delete;

    /// Removes the file of a server that was killed. Requires: no server runs in the directory.
    static void removeStale(const std::filesystem::path& dataDirectory) noexcept;

    /// Returns the address in the file; std::nullopt if there is no file or no address in it.
    [[nodiscard]] static std::optional<std::string> read(const std::filesystem::path& dataDirectory);

private:
    const std::filesystem::path m_path;
};

/// The URL of a server for clients on the same machine: one that listens on all addresses is reached through
/// the loopback address. Pure.
[[nodiscard]] std::string localUrl(const Endpoint& listening);

}  // namespace host
