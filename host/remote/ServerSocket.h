#pragma once

#include <filesystem>

#include "host/framework/FileDescriptor.h"

namespace host {

/// A server's claim to a data directory, and the listening socket in it (`calljournal.sock`, mode 0600).
///
/// The claim is a lock on the directory itself: the system drops it with the process, however that ends, so the socket
/// file of a dead server is known to be stale and replaced, and two servers never share a database. Clients may
/// connect as soon as the object exists; they wait until somebody accepts.
///
/// Threads: one, the owner's. Destroying it removes the socket file and gives the directory free.
class ServerSocket {
public:
    /// `dataDirectory` exists. Throws `RemoteError` when a living server has it, or the socket cannot be made.
    explicit ServerSocket(const std::filesystem::path& dataDirectory);
    ~ServerSocket();
    ServerSocket(const ServerSocket&) = delete;
    ServerSocket& operator=(const ServerSocket&) = delete;

    /// The listening socket, for whoever accepts and closes it from then on. Once only.
    [[nodiscard]] int takeListener() noexcept { return m_listener.release(); }

    [[nodiscard]] const std::filesystem::path& path() const noexcept { return m_path; }

private:
    void claimDirectory(const std::filesystem::path& directory);
    void removeStaleSocket() const;
    void listen(const std::filesystem::path& directory);

    const std::filesystem::path m_path;
    FileDescriptor m_directory;
    FileDescriptor m_listener;
};

}  // namespace host
