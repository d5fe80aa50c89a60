#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>

#include "host/csta-wire/FrameReader.h"
#include "host/csta-wire/SendQueue.h"
#include "host/csta/association/ExponentialBackoff.h"
#include "host/tls/StreamSocket.h"
#include "host/tls/TlsFiles.h"

namespace host {

/// The TCP connection to the switch. Reconnects with exponential backoff until `close`. The backoff is reset
/// only after a message has been received, so a switch that accepts and disconnects at once is not retried
/// every second. A message that does not end, although no byte has come for a while, is read as it is if its
/// XML is complete; otherwise the connection counts as lost, so that the calls are asked for.
///
/// Call from the thread that runs the io_context only; the object must outlive that thread. Handlers run on
/// the same thread and may call any operation.
class SwitchConnection {
public:
    struct Handlers {
        std::function<void()> connected;
        std::function<void(const Frame&)> frame;
        /// An attempt failed or the connection was lost. The next attempt is already scheduled.
        std::function<void(const std::string& reason)> lost;
        /// After the frames of one read. Not called if a handler has thrown an exception.
        std::function<void()> framesEnd = [] {};
    };

    /// The times without a byte inside a message.
    struct Limits {
        std::chrono::milliseconds overdue{2000};
        /// After this the connection counts as lost. Longer than `overdue`.
        std::chrono::milliseconds tornOff{30000};
    };

    /// Where the switch is, and how it is reached.
    struct Peer {
        std::string host;
        std::uint16_t port;
        /// The check of the switch by TLS; std::nullopt without TLS. The files are read for each connection,
        /// so that renewed ones are used.
        std::optional<ServerTrust> tls{};
    };

    SwitchConnection(asio::io_context& io, Peer peer, ExponentialBackoff backoff, Handlers handlers,
                     Limits limits);

    void open();
    /// Closes the connection for good. No handler is called afterwards.
    void close();
    /// Closes the current connection as if it had been lost.
    void abandon(const std::string& reason);

    [[nodiscard]] bool isConnected() const noexcept { return m_connected; }
    /// Queues one message. Returns false without a connection or if the message is too long for a frame.
    bool send(int invokeId, const std::string& xml);

private:
    // Above this the switch is assumed to have stopped reading.
    static constexpr std::size_t kMaxQueuedBytes = 4U << 20U;

    void attempt();
    void connect(const asio::ip::tcp::resolver::results_type& endpoints);
    void encrypt();
    void becomeConnected();
    void limitAttempt();
    void read();
    void takeFrames(std::size_t received);
    /// Hands over the frames of `next`. Returns false if the connection has ended meanwhile.
    bool handOver(std::optional<Frame> (FrameReader::*next)());
    void awaitRest();
    void endAttempt();

    const Peer m_peer;
    const Handlers m_handlers;
    const Limits m_limits;
    ExponentialBackoff m_backoff;

    asio::ip::tcp::resolver m_resolver;
    asio::io_context& m_io;
    StreamSocket m_socket;
    asio::steady_timer m_timer;
    asio::steady_timer m_restTimer;
    // Distinguishes the handlers of the current connection from those of earlier ones.
    unsigned m_generation = 0;
    bool m_connected = false;
    bool m_open = false;

    FrameReader m_reader;
    std::array<char, 16384> m_received{};
    SendQueue m_queue{m_socket};
};

}  // namespace host
