#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <filesystem>

namespace host {

/// The file name of the server's socket in the data directory.
inline constexpr const char* kSocketName = "calljournal.sock";

/// The address of the socket in `dataDirectory`. Throws `RemoteError` when the path is longer than the system takes
/// for a socket. Any thread.
[[nodiscard]] sockaddr_un socketAddressIn(const std::filesystem::path& dataDirectory);

}  // namespace host
