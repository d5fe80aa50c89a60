#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "host/framework/FileDescriptor.h"

namespace bench {

/// A connection to the HTTP API of a server on this machine, with the token of its data directory. Small, so
/// that the time of a request is that of the server. Not thread-safe. Operations throw `std::system_error`.
class HttpConnection {
public:
    /// Throws if the server does not listen.
    HttpConnection(std::uint16_t port, const std::filesystem::path& data);

    /// Returns the response to a GET with its header, which stays valid until the next request; nullptr if
    /// the server closes the connection.
    [[nodiscard]] const std::string* get(const std::string& path);

    /// The response to a JSON body, in the same way.
    [[nodiscard]] const std::string* post(const std::string& path, const std::string& json);

private:
    [[nodiscard]] const std::string* response(const std::string& request);

    host::FileDescriptor m_socket;
    /// The end of each request.
    std::string m_header;
    /// Kept, because the memory of a long response takes as much time as its transfer.
    std::string m_response;
};

/// A port that no server uses at the moment.
[[nodiscard]] std::uint16_t freePort();

}  // namespace bench
