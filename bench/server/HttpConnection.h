#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "host/framework/FileDescriptor.h"

namespace bench {

/// A connection to the HTTP API of a server on this machine, with the token of its data directory. Small, so
/// that the time of a request is that of the server. Not thread-safe. Operations throw `std::system_error`.
class HttpConnection {
public:
    /// Throws if the server does not listen.
    HttpConnection(std::uint16_t port, const std::filesystem::path& data);

    /// Returns the response to a GET with its header; std::nullopt if the server closes the connection.
    [[nodiscard]] std::optional<std::string> get(const std::string& path);

private:
    host::FileDescriptor m_socket;
    /// The end of each request.
    std::string m_header;
};

/// A port that no server uses at the moment.
[[nodiscard]] std::uint16_t freePort();

}  // namespace bench
