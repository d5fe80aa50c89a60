#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include <asio/ip/tcp.hpp>

#include "host/csta-wire/FrameReader.h"
#include "host/csta-wire/SendQueue.h"

namespace host {

/// The connection of one client to the switch. Server thread only. Stays alive while one of its
/// operations is in progress. No handler is called after `close`.
class SwitchClient : public std::enable_shared_from_this<SwitchClient> {
public:
    struct Handlers {
        std::function<void(SwitchClient&, const Frame&)> frame;
        std::function<void(SwitchClient&)> closed;
    };

    SwitchClient(asio::ip::tcp::socket socket, int number, Handlers handlers);

    /// Calls `ready` when messages can be sent: after the TLS handshake with that context, or at once without
    /// one (`nullptr`).
    void start(StreamSocket::Context tls, std::function<void()> ready);
    void send(int invokeId, const std::string& xml);
    void close();
    [[nodiscard]] int number() const noexcept { return m_number; }

private:
    // A client with more unread data is disconnected.
    static constexpr std::size_t kMaxQueuedBytes = 16U << 20U;

    void read();
    void fail();

    StreamSocket m_socket;
    const int m_number;
    const Handlers m_handlers;
    bool m_open = true;
    FrameReader m_reader;
    std::array<char, 16384> m_received{};
    SendQueue m_queue{m_socket};
};

}  // namespace host
