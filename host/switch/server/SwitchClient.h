#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>

#include <asio/ip/tcp.hpp>

#include "host/csta-wire/FrameReader.h"

namespace host {

/// One client's connection at the simulated switch. Belongs to the simulator's thread; lives as long as an operation of it
/// is under way. After `close` no handler is called.
class SwitchClient : public std::enable_shared_from_this<SwitchClient> {
public:
    struct Handlers {
        std::function<void(SwitchClient&, const Frame&)> frame;
        std::function<void(SwitchClient&)> closed;
    };

    SwitchClient(asio::ip::tcp::socket socket, int number, Handlers handlers);

    void start();
    void send(int invokeId, const std::string& xml);
    void close();
    [[nodiscard]] int number() const noexcept { return m_number; }

private:
    // A client that does not read is dropped.
    static constexpr std::size_t kMaxQueuedBytes = 16U << 20U;

    void read();
    void write();
    void fail();

    asio::ip::tcp::socket m_socket;
    const int m_number;
    const Handlers m_handlers;
    bool m_open = true;
    FrameReader m_reader;
    std::array<char, 16384> m_received{};
    std::deque<std::string> m_queue;
    std::size_t m_queuedBytes = 0;
};

}  // namespace host
