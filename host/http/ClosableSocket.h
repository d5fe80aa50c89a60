#pragma once

#include <asio/ip/tcp.hpp>
#include <memory>
#include <utility>

namespace host {

/// A socket that can be shut down through a handle. The HTTP library owns its connections and gives no access
/// to them, but takes the type of the socket.
///
/// Call from the server's loop thread only.
class ClosableSocket : public asio::ip::tcp::socket {
public:
    /// Refers to the socket after it is moved, too; empty after it is destroyed.
    using Handle = std::weak_ptr<ClosableSocket*>;

    explicit ClosableSocket(asio::io_context& context) : asio::ip::tcp::socket(context) {}
    ClosableSocket(ClosableSocket&& other) noexcept
        : asio::ip::tcp::socket(std::move(other)), m_self(std::exchange(other.m_self, nullptr)) {
        if (m_self == nullptr) {
            m_self = std::make_shared<ClosableSocket*>(this);
        }
        *m_self = this;
        lastMoved() = m_self;
    }
    ClosableSocket(const ClosableSocket&) = delete;
    ClosableSocket& operator=(const ClosableSocket&) = delete;
    ClosableSocket& operator=(ClosableSocket&&) = delete;
    ~ClosableSocket() = default;

    /// The socket that was moved last on this thread: while the library reports a new connection, its socket.
    static Handle& lastMoved() noexcept {
        thread_local Handle handle;
        return handle;
    }

    /// Sends each write at once: the next event of a stream would otherwise wait until the client has
    /// acknowledged the one before, which takes up to 40 ms.
    static void sendAtOnce(const Handle& handle) noexcept {
        if (const auto socket = handle.lock()) {
            asio::error_code ignored;
            (*socket)->set_option(asio::ip::tcp::no_delay(true), ignored);
        }
    }

    /// Ends both directions, so that the pending operations of the connection fail and its owner closes it.
    static void shutDown(const Handle& handle) noexcept {
        if (const auto socket = handle.lock()) {
            asio::error_code ignored;
            (*socket)->shutdown(asio::ip::tcp::socket::shutdown_both, ignored);
        }
    }

private:
    std::shared_ptr<ClosableSocket*> m_self;
};

}  // namespace host
