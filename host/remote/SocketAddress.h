#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <filesystem>

namespace host {

/// The file name of the server's socket in the data directory.
inline constexpr const char* kSocketName = "calljournal.sock";

/// Returns the address of the socket in `dataDirectory`. Throws `RemoteError` if the path is too long for a
/// socket. Any thread may call.
[[nodiscard]] sockaddr_un socketAddressIn(const std::filesystem::path& dataDirectory);

}  // namespace host
