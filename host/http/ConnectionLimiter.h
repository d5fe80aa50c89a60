#pragma once

#include <cstddef>
#include <restinio/connection_count_limiter.hpp>

namespace host {

/// Decides when the HTTP library accepts a further client: never while `limit` are connected. It stands in the place of the
/// library's own limiter, which loses a place for good whenever a client is gone before its turn comes, and so ends deaf.
///
/// The road: the library calls `accept_next` at the start and behind each accept, whatever became of that; with a place free the
/// gate has it accept, else the next client that goes does so. The library says nothing when an accept fails, for want of
/// descriptors say; for that there is `renewal`.
///
/// Threads: the server's loop thread only, one gate for each such thread. The names with underscores are the library's.
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

    /// The gate of the server that runs on this thread: the library makes it and shows it to nobody.
    static ConnectionLimiter*& ofThisThread() noexcept {
        thread_local ConnectionLimiter* gate = nullptr;
        return gate;
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

    /// For whoever cancels the accept that is under way now: accepts again, unless that one had come to its end before. To be
    /// run behind what is in the loop by then.
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
    /// How often the library asked; the one socket that it accepts with; whether an accept is under way or scheduled.
    std::size_t m_accepts = 0;
    std::size_t m_index = 0;
    bool m_accepting = false;
};

}  // namespace host
