#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>

#include "host/csta-wire/FrameReader.h"
#include "host/csta/ExponentialBackoff.h"

namespace host {

/// The TCP connection to the switch, made again with growing pauses until `close`. The pause begins anew only after
/// the switch has said something: one that accepts and hangs up at once is not called every second for ever.
///
/// Belongs to the thread that runs the io_context, which it must outlive; handlers are called on that thread. A
/// handler may call any operation.
class SwitchConnection {
public:
    struct Handlers {
        std::function<void()> connected;
        std::function<void(const Frame&)> frame;
        /// An attempt failed, or the connection is gone; the next attempt is already planned.
        std::function<void(const std::string& why)> lost;
    };

    SwitchConnection(asio::io_context& io, std::string host, std::uint16_t port, ExponentialBackoff pause,
                     Handlers handlers);

    void open();
    /// Gives the connection up for good. No handler is called any more.
    void close();
    /// Gives up this connection only, as if it had been lost.
    void abandon(const std::string& why);

    [[nodiscard]] bool isConnected() const noexcept { return m_connected; }
    /// Queues one message. False without a connection or when it is too long for a frame.
    bool send(int invokeId, const std::string& xml);

private:
    // What waits to be written when the switch has stopped reading.
    static constexpr std::size_t kMaxQueuedBytes = 4U << 20U;

    void attempt();
    void connect(const asio::ip::tcp::resolver::results_type& endpoints);
    void becomeConnected();
    void limitAttempt();
    void read();
    void takeFrames(std::size_t received);
    void write();
    void endAttempt();

    const std::string m_host;
    const std::uint16_t m_port;
    const Handlers m_handlers;
    ExponentialBackoff m_pause;

    asio::ip::tcp::resolver m_resolver;
    asio::ip::tcp::socket m_socket;
    asio::steady_timer m_timer;
    // Tells the handlers of an attempt that is over from those of the present one.
    unsigned m_generation = 0;
    bool m_connected = false;
    bool m_open = false;

    FrameReader m_reader;
    std::array<char, 16384> m_received{};
    std::deque<std::string> m_queue;
    std::size_t m_queuedBytes = 0;
};

}  // namespace host
