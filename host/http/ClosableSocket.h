#pragma once

#include <asio/ip/tcp.hpp>
#include <memory>
#include <system_error>
#include <utility>

#include "host/tls/StreamSocket.h"

namespace host {

/// A socket that can be shut down through a handle. The HTTP library owns its connections and gives no access
/// to them, but takes the type of the socket.
///
/// Call from the server's loop thread only.
class ClosableSocket : public StreamSocket {
public:
    /// Refers to the socket after it is moved, too; empty after it is destroyed.
    using Handle = std::weak_ptr<ClosableSocket*>;

    explicit ClosableSocket(asio::io_context& context) : StreamSocket(context) {}
    /// The library accepts into one socket again and again: the former one gets a new connection.
    ClosableSocket(ClosableSocket&& other) noexcept
        : StreamSocket(std::move(static_cast<StreamSocket&>(other).tcp())),
          m_self(std::exchange(other.m_self, nullptr)) {
        if (m_self == nullptr) {
            m_self = std::make_shared<ClosableSocket*>(this);
        }
        *m_self = this;
    }
    ClosableSocket(const ClosableSocket&) = delete;
    ClosableSocket& operator=(const ClosableSocket&) = delete;
    ClosableSocket& operator=(ClosableSocket&&) = delete;
    ~ClosableSocket() = default;

    [[nodiscard]] Handle handle() const noexcept { return m_self; }

    /// Sends each write at once: the next event of a stream would otherwise wait until the client has
    /// acknowledged the one before, which takes up to 40 ms.
    static void sendAtOnce(const Handle& handle) noexcept {
        if (const auto socket = handle.lock()) {
            std::error_code ignored;
            (*socket)->tcp().set_option(asio::ip::tcp::no_delay(true), ignored);
        }
    }

    /// Ends both directions, so that the pending operations of the connection fail and its owner closes it.
    static void shutDown(const Handle& handle) noexcept {
        if (const auto socket = handle.lock()) {
            std::error_code ignored;
            (*socket)->tcp().shutdown(asio::ip::tcp::socket::shutdown_both, ignored);
        }
    }

    // The operations that the library needs, by its names.

    [[nodiscard]] bool is_open() const noexcept { return tcp().is_open(); }
    [[nodiscard]] Tcp::endpoint_type remote_endpoint() const { return tcp().remote_endpoint(); }
    void cancel(std::error_code& error) { tcp().cancel(error); }
    void shutdown(Tcp::shutdown_type type, std::error_code& error) { tcp().shutdown(type, error); }
    void close(std::error_code& error) { tcp().close(error); }
    void close() { StreamSocket::close(); }

private:
    std::shared_ptr<ClosableSocket*> m_self;
};

}  // namespace host
