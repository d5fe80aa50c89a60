#pragma once

#include <filesystem>

#include "host/framework/FileDescriptor.h"

namespace host {

/// A server's lock of a data directory, and the listening socket in it (`calljournal.sock`, mode 0600).
///
/// The lock is on the directory itself. The system releases it when the process ends in any way, so the next
/// server can replace a stale socket file, and two servers never share a database. Clients may connect as
/// soon as the object exists; they wait until the server accepts.
///
/// Not thread-safe. The destructor removes the socket file and releases the lock.
class ServerSocket {
public:
    /// Throws `RemoteError` if a running server has the lock or the socket cannot be created. Requires: the
    /// directory exists.
    explicit ServerSocket(const std::filesystem::path& dataDirectory);
    ~ServerSocket();
    ServerSocket(const ServerSocket&) = delete;
    ServerSocket& operator=(const ServerSocket&) = delete;

    /// Passes ownership of the listening socket to the caller. Call once only.
    [[nodiscard]] int takeListener() noexcept { return m_listener.release(); }

    [[nodiscard]] const std::filesystem::path& path() const noexcept { return m_path; }

private:
    void lockDirectory(const std::filesystem::path& directory);
    void removeStaleSocket() const;
    void listen(const std::filesystem::path& directory);

    const std::filesystem::path m_path;
    FileDescriptor m_directory;
    FileDescriptor m_listener;
};

}  // namespace host
