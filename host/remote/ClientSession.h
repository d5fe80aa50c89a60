#pragma once

#include <array>
#include <asio/any_io_executor.hpp>
#include <asio/local/stream_protocol.hpp>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "host/framework/Strand.h"
#include "host/remote/ClientBacklog.h"
#include "host/remote/RemoteBackend.h"
#include "host/remote/RemoteFrame.h"
#include "platform/framework/ProxyRequest.h"

namespace host {

/// One connected client of the remote server.
///
/// The road of a request:
///  1. The server's reader thread reads one frame and hands it to the client's strand; it reads nothing more of this
///     client for now.
///  2. The strand, on a thread of the server's pool, lets the invoker handle the request.
///  3. The reader thread writes the answer, and then reads the next frame.
///
/// The road of a notification: the journal calls the client's proxy on whatever thread changed a list; the proxy sends
/// through `ProxyRequest`, which only puts the frame into the backlog and wakes the reader thread to write it.
///
/// The end: whatever is wrong with the client (gone, malformed frame, backlog full) closes its socket. Behind the
/// request that may still be at work, the strand unsubscribes the proxy, takes it out of the framework and destroys
/// it; then the server forgets the session.
///
/// Threads: the reader thread, except where an operation says otherwise.
class ClientSession final : public ProxyRequest, public std::enable_shared_from_this<ClientSession> {
public:
    using Socket = asio::local::stream_protocol::socket;

    /// `gone` is called once, on the reader thread, when nothing of the session is at work any more.
    ClientSession(Socket socket, std::string name, RemoteBackend& backend, WorkerPool& workers,
                  std::size_t maxBacklogBytes, std::function<void()> gone);

    /// Makes the client's proxy and begins to read.
    void start();
    /// Begins the end; `reason` is logged unless it is empty. Idempotent.
    void close(const std::string& reason);

    // ProxyRequest; any thread
    void selectProtocol(const std::string& protocolName) override;
    void send(const std::string& request) override;

private:
    // The reader thread.
    void readLength();
    void readBody(std::size_t length);
    void take(RemoteFrame frame);
    void respond(std::uint32_t id, const std::string& text);
    void handleQueued(ClientBacklog::Added added);
    void writeNext();

    // The client's strand.
    void attach();
    void handle(const RemoteFrame& request);
    void detach();

    // Constant after construction.
    const std::string m_name;
    RemoteBackend& m_backend;
    const std::function<void()> m_gone;
    const asio::any_io_executor m_reader;

    // Has its own lock.
    ClientBacklog m_backlog;

    // The reader thread's.
    Socket m_socket;
    std::array<char, RemoteFrame::kLengthBytes> m_length{};
    std::string m_body;
    std::string m_writing;
    bool m_closing = false;

    // The strand's; the strand itself comes last, so that it is closed first.
    std::unique_ptr<Proxy> m_proxy;
    Strand m_strand;
};

}  // namespace host
