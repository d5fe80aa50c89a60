#pragma once

#include <array>
#include <asio/any_io_executor.hpp>
#include <asio/buffer.hpp>
#include <asio/local/stream_protocol.hpp>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "host/framework/Strand.h"
#include "host/remote/ClientBacklog.h"
#include "host/remote/PendingWrites.h"
#include "host/remote/RemoteBackend.h"
#include "host/remote/RemoteFrame.h"
#include "platform/framework/ProxyRequest.h"

namespace host {

/// The parts of a server that its clients share. Everything is borrowed and outlives them.
struct ClientSurroundings {
    RemoteBackend& backend;
    WorkerPool& workers;
    PendingWrites& writes;
    std::size_t maxBacklogBytes;
};

/// One connected client of the remote server.
///
/// Its line is the one that its first frame names, else the first one.
///
/// The sequence of a request:
///  1. The server's reader thread reads one frame, posts it to the client's strand, and stops reading from
///     this client.
///  2. The strand, on a thread of the server's pool, calls the invoker.
///  3. The reader thread writes the response, and then reads the next frame.
///
/// The sequence of a notification:
///  1. The journal calls the client's proxy on the thread that changed a list.
///  2. The proxy sends through `ProxyRequest`, which adds the frame that all clients share to the backlog,
///     and the client to those that the reader thread writes to.
///  3. The reader thread writes all frames that wait. With few clients, the thread of the notification writes
///     itself what the client takes at once, and leaves the rest to the reader thread.
///
/// The sequence of the end:
///  1. The reader thread closes the socket: the client has disconnected, sent a malformed frame, or its
///     backlog is full.
///  2. After a request that may still be in progress, the strand unsubscribes the proxy, removes it from the
///     framework and destroys it.
///  3. The server removes the session.
///
/// Call from the reader thread only, except where an operation states otherwise.
class ClientSession final : public ProxyRequest,
                            public PendingWrites::Client,
                            public std::enable_shared_from_this<ClientSession> {
public:
    using Socket = asio::local::stream_protocol::socket;

    /// The session calls `gone` once, on the reader thread, when it has no work left.
    ClientSession(Socket socket, std::string name, const ClientSurroundings& surroundings,
                  std::function<void()> gone);
    ~ClientSession() override;
    ClientSession(const ClientSession&) = delete;
    ClientSession& operator=(const ClientSession&) = delete;

    /// Creates the client's proxy and begins to read.
    void start();
    /// Disconnects the client and logs `reason` unless it is empty. Idempotent.
    void close(const std::string& reason);
    /// Disconnects the client if it has named this line.
    void closeIfOf(const std::string& device);
    /// Writes what waits, as far as the client takes it now, and the rest when it does.
    void writeNext() override;

    // ProxyRequest. Any thread may call.
    void selectProtocol(const std::string& protocolName) override;
    void send(const std::string& request) override;

private:
    // Call from the reader thread only.
    void readLength();
    void readBody(std::size_t length);
    void take(RemoteFrame frame);
    void respond(std::uint32_t id, const std::string& text);
    /// Any thread may call.
    void handleQueued(ClientBacklog::Added added);
    /// Writes the part of the batch that the client has not taken yet, when it takes it.
    void writeRest();

    // Call from the writer only: the thread whose frame found it idle, or the reader thread after it.
    /// Writes what waits while the client takes it. Returns false if a part of the batch is left.
    [[nodiscard]] bool writeNow();
    /// Returns true if the client has taken the whole batch.
    [[nodiscard]] bool writeBatch();
    void batchWritten();

    // Call from the client's strand only.
    void attach();
    /// False if there is no such line.
    [[nodiscard]] bool setLine(const std::string& device);
    void handle(const RemoteFrame& request);
    void detach();

    // Constant after construction.
    const std::string m_name;
    RemoteBackend& m_backend;
    PendingWrites& m_writes;
    const std::function<void()> m_gone;
    const asio::any_io_executor m_reader;

    // Has its own lock.
    ClientBacklog m_backlog;

    /// Held while the socket is closed or written to.
    std::mutex m_socketMutex;

    // Used by the reader thread only.
    /// The line that its first frame names; std::nullopt before that frame.
    std::optional<std::string> m_device;
    Socket m_socket;
    std::array<char, RemoteFrame::kLengthBytes> m_length{};
    std::string m_body;
    bool m_closing = false;

    // Used by the writer only.
    ClientBacklog::Batch m_writing;
    /// The part of `m_writing` that is not written.
    std::vector<asio::const_buffer> m_rest;

    // Used by the strand only. The strand itself is the last member, so that it is closed first.
    std::unique_ptr<Proxy> m_proxy;
    /// Set with the first frame.
    std::shared_ptr<RemoteLine> m_line;
    Strand m_strand;
};

}  // namespace host
