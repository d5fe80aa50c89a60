#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>

#include "host/csta-wire/SendQueue.h"
#include "host/sip/Netstring.h"
#include "host/sip/PhoneMessage.h"

namespace host {

/// A connection to the control port of the SIP telephone, which accepts one client.
///
/// Stays alive while one of its operations is in progress. No handler is called after `close`. Call from the
/// thread of the io_context only.
class PhoneControl : public std::enable_shared_from_this<PhoneControl> {
public:
    struct Command {
        std::string name;
        std::string parameters{};
    };
    /// The responses in the order of the commands; empty if the telephone did not respond to all.
    using ResponseHandler = std::function<void(const std::vector<PhoneResponse>&)>;
    struct Handlers {
        std::function<void(const SipPhoneEvent&)> event;
        /// Called once. The connection is then closed, and each open command has had its handler called.
        /// `isSilent`: the telephone is connected, but did not respond.
        std::function<void(const std::string& reason, bool isSilent)> closed;
    };

    /// `socket` is connected.
    PhoneControl(asio::ip::tcp::socket socket, Handlers handlers);

    void start();
    /// Sends the commands in one segment, so that the telephone does nothing between them. It closes the
    /// connection if a response takes longer than `kPatience`.
    void send(const std::vector<Command>& commands, ResponseHandler handler);
    /// The handlers that wait for responses get none.
    void close();

    static constexpr std::chrono::milliseconds kPatience{4000};

private:
    struct Batch {
        std::uint64_t firstToken = 0;
        std::size_t size = 0;
        std::chrono::steady_clock::time_point deadline;
        std::vector<PhoneResponse> responses;
        ResponseHandler handler;
    };

    void read();
    void received();
    void process(const PhoneResponse& response);
    void awaitDeadline();
    void fail(const std::string& reason, bool isSilent = false);

    StreamSocket m_socket;
    asio::steady_timer m_timer;
    Handlers m_handlers;
    bool m_open = true;
    NetstringReader m_reader;
    std::array<char, 16384> m_bytes{};
    SendQueue m_queue{m_socket};
    std::deque<Batch> m_batches;
    std::uint64_t m_lastToken = 0;
};

}  // namespace host
