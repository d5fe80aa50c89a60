#pragma once

#include <cstddef>
#include <memory>

#include "host/remote/RemoteBackend.h"

namespace host {

class ServerSocket;

struct RemoteLimits {
    /// A further client is turned away with a log line.
    std::size_t maxClients = 256;
    /// Bytes of notifications that may wait for one client, frames included; a client beyond it is cut off.
    std::size_t maxBacklogBytes = 4U * 1024U * 1024U;
};

/// Serves remote clients of the journal over the Unix socket (docs/messages.md, "Framing on the socket").
///
/// Every client has a name of its own ("client-1", "client-2", ...), never used again, and an observer proxy
/// that is registered under it before its first request is handled. Requests of one client are handled in order,
/// those of different clients side by side on a small pool, which grows while all of its threads are at work. So neither
/// slow requests, however many clients have one, nor a client that does not read holds up another.
///
/// Threads: `start` and `stop` belong to the owner. Lifetime: the backend stays until `stop` has returned.
class RemoteServer {
public:
    /// Takes the listener of `socket`, which stays the owner's and outlives the server.
    RemoteServer(ServerSocket& socket, RemoteBackend backend, RemoteLimits limits = {});
    /// Stops the server if it still runs.
    ~RemoteServer();
    RemoteServer(const RemoteServer&) = delete;
    RemoteServer& operator=(const RemoteServer&) = delete;

    /// Begins to accept. Once only.
    void start();
    /// Accepts nothing more, closes every client, and returns when all are unsubscribed and their proxies destroyed.
    /// Idempotent.
    void stop();

    /// How many clients are connected. Any thread.
    [[nodiscard]] std::size_t clientCount() const noexcept;

private:
    class Impl;
    const std::unique_ptr<Impl> m_impl;
};

}  // namespace host
