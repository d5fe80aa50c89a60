#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "host/remote/RemoteBackend.h"

namespace host {

class ServerSocket;

struct RemoteLimits {
    /// The server rejects and logs any further client.
    std::size_t maxClients = 256;
    /// The bytes of queued notifications for one client, with their frames. A client that exceeds it is
    /// disconnected.
    std::size_t maxBacklogBytes = 4U * 1024U * 1024U;
};

/// Serves remote clients of the journal over the Unix socket (docs/messages.md, "Framing on the socket").
///
/// Every client has a unique name ("client-1", "client-2", ...) and an observer proxy that is registered
/// under this name before its first request. The server handles the requests of one client in order, and
/// those of different clients concurrently on a small pool, which grows while all of its threads are busy. So
/// neither slow requests nor a client that does not read delay other clients.
///
/// Threads: the owner calls `start` and `stop`. Lifetime: the backend lives until `stop` has returned.
class RemoteServer {
public:
    /// Takes the listener of `socket`. Requires: `socket` outlives the server.
    RemoteServer(ServerSocket& socket, RemoteBackend backend, RemoteLimits limits = {});
    /// Stops the server if it still runs.
    ~RemoteServer();
    RemoteServer(const RemoteServer&) = delete;
    RemoteServer& operator=(const RemoteServer&) = delete;

    /// Begins to accept clients. Call once only.
    void start();
    /// Stops accepting, disconnects every client, and waits until all are unsubscribed and their proxies are
    /// destroyed. Idempotent.
    void stop();

    /// Disconnects the clients that have named this line; does not wait. Any thread may call.
    void disconnectLine(const std::string& device);

    /// Returns the number of connected clients. Any thread may call.
    [[nodiscard]] std::size_t clientCount() const noexcept;

private:
    class Impl;
    const std::unique_ptr<Impl> m_impl;
};

}  // namespace host
