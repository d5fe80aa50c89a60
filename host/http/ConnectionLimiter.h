#pragma once

#include <cstddef>
#include <restinio/connection_count_limiter.hpp>

namespace host {

/// Accepts connections while fewer than `limit` clients are connected. Replaces the HTTP library's own
/// limiter, which leaks a slot when a client disconnects before it is accepted, and finally stops accepting.
///
///  1. The library calls `accept_next` at the start and after each accept, successful or not.
///  2. If a slot is free, the limiter starts an accept. If none is free, the next disconnect starts it.
///  3. The library does not report a failed accept (no file descriptors, for example). `renewal` restarts it.
///
/// Call from the server's loop thread only; one limiter for each such thread. The names with underscores are
/// the library's.
class ConnectionLimiter {
public:
    using Acceptor = restinio::connection_count_limits::impl::acceptor_callback_iface_t;

    ConnectionLimiter(restinio::not_null_pointer_t<Acceptor> acceptor,
                      restinio::connection_count_limits::max_parallel_connections_t limit,
                      restinio::connection_count_limits::max_active_accepts_t /*one*/)
        : m_acceptor(acceptor), m_limit(limit.value()) {
        ofThisThread() = this;
    }
    ConnectionLimiter(const ConnectionLimiter&) = delete;
    ConnectionLimiter& operator=(const ConnectionLimiter&) = delete;

    /// The limiter of the server that runs on this thread. The library creates it and gives no access to it.
    static ConnectionLimiter*& ofThisThread() noexcept {
        thread_local ConnectionLimiter* limiter = nullptr;
        return limiter;
    }

    void accept_next(std::size_t index) noexcept {
        ++m_accepts;
        m_index = index;
        m_accepting = m_connections < m_limit;
        if (m_accepting) {
            m_acceptor->call_accept_now(index);
        }
    }
    void increment_parallel_connections() noexcept { ++m_connections; }
    void decrement_parallel_connections() noexcept {
        --m_connections;
        if (!m_accepting) {
            m_accepting = true;
            m_acceptor->schedule_next_accept_attempt(m_index);
        }
    }

    /// Returns a function that accepts again after the pending accept was cancelled, unless that one had
    /// completed before. Post the function to the loop after the cancellation.
    [[nodiscard]] auto renewal() noexcept {
        return [this, wasAccepting = m_accepting, accepts = m_accepts] {
            if (wasAccepting && accepts == m_accepts) {
                accept_next(m_index);
            }
        };
    }

private:
    const restinio::not_null_pointer_t<Acceptor> m_acceptor;
    const std::size_t m_limit;
    std::size_t m_connections = 0;
    /// Number of calls of `accept_next`.
    std::size_t m_accepts = 0;
    /// The index of the listening socket.
    std::size_t m_index = 0;
    /// An accept is pending or scheduled.
    bool m_accepting = false;
};

}  // namespace host
