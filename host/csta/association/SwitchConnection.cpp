#include "host/csta/association/SwitchConnection.h"

#include <netinet/tcp.h>
#include <sys/socket.h>

#include <string_view>
#include <system_error>
#include <utility>

#include <asio/connect.hpp>

#include "host/csta/requests/LinkLog.h"
#include "host/tls/ClientContext.h"
#include "host/tls/TlsError.h"

namespace host {

namespace {

using asio::ip::tcp;

constexpr std::chrono::seconds kConnectLimit{10};

/// Detects a dead connection after about a minute without traffic.
void enableKeepAlive(tcp::socket& socket) {
    std::error_code ignored;
    socket.set_option(asio::socket_base::keep_alive(true), ignored);
    socket.set_option(tcp::no_delay(true), ignored);
    const int descriptor = socket.native_handle();
    const auto set = [descriptor](int option, int value) {
        static_cast<void>(::setsockopt(descriptor, IPPROTO_TCP, option, &value, sizeof value));
    };
    set(TCP_KEEPIDLE, 30);
    set(TCP_KEEPINTVL, 10);
    set(TCP_KEEPCNT, 3);
    set(TCP_USER_TIMEOUT, 60000);
}

}  // namespace

SwitchConnection::SwitchConnection(asio::io_context& io, Peer peer, ExponentialBackoff backoff,
                                   Handlers handlers, Limits limits)
    : m_peer(std::move(peer)),
      m_handlers(std::move(handlers)),
      m_limits(limits),
      m_backoff(backoff),
      m_resolver(io),
      m_io(io),
      m_socket(io),
      m_timer(io),
      m_restTimer(io) {}

void SwitchConnection::open() {
    m_open = true;
    attempt();
}

void SwitchConnection::close() {
    m_open = false;
    endAttempt();
}

void SwitchConnection::abandon(const std::string& reason) {
    if (!m_open) {
        return;
    }
    endAttempt();
    m_timer.expires_after(m_backoff.next());
    m_timer.async_wait([this, generation = m_generation](std::error_code error) {
        if (!error && generation == m_generation) {
            attempt();
        }
    });
    m_handlers.lost(reason);
}

bool SwitchConnection::send(int invokeId, const std::string& xml) {
    std::optional<std::string> bytes = encodeFrame(invokeId, xml);
    if (!m_connected || !bytes) {
        return false;
    }
    m_queue.push(std::move(*bytes), [this](const std::error_code& error) {
        if (error) {
            abandon(error.message());
        } else if (m_queue.bytes() > kMaxQueuedBytes) {
            abandon("the switch does not read its messages");
        }
    });
    return true;
}

void SwitchConnection::attempt() {
    limitAttempt();
    m_resolver.async_resolve(m_peer.host, std::to_string(m_peer.port),
                             [this, generation = m_generation](std::error_code error,
                                                               const tcp::resolver::results_type& endpoints) {
                                 if (generation != m_generation) {
                                     return;
                                 }
                                 if (error) {
                                     abandon(error.message());
                                     return;
                                 }
                                 connect(endpoints);
                             });
}

void SwitchConnection::connect(const tcp::resolver::results_type& endpoints) {
    asio::async_connect(
        m_socket.tcp(), endpoints,
        [this, generation = m_generation](std::error_code error, const tcp::endpoint& /*endpoint*/) {
            if (generation != m_generation) {
                return;
            }
            if (error) {
                abandon(error.message());
                return;
            }
            enableKeepAlive(m_socket.tcp());
            if (m_peer.tls) {
                encrypt();
            } else {
                becomeConnected();
            }
        });
}

void SwitchConnection::encrypt() {
    const auto done = [this, generation = m_generation](const std::error_code& error) {
        if (generation != m_generation) {
            return;
        }
        if (error) {
            abandon(m_socket.reasonOf(error));
            return;
        }
        becomeConnected();
    };
    try {
        const std::string& name = m_peer.tls->name;
        m_socket.beClient(clientContext(*m_peer.tls), name.empty() ? m_peer.host : name, done);
    } catch (const TlsError& error) {
        abandon(error.what());
    }
}

void SwitchConnection::becomeConnected() {
    m_timer.cancel();
    m_connected = true;
    read();
    m_handlers.connected();
}

void SwitchConnection::limitAttempt() {
    m_timer.expires_after(kConnectLimit);
    m_timer.async_wait([this, generation = m_generation](std::error_code error) {
        if (!error && generation == m_generation && !m_connected) {
            abandon("no response");
        }
    });
}

void SwitchConnection::read() {
    m_socket.async_read_some(asio::buffer(m_received), [this, generation = m_generation](
                                                           std::error_code error, std::size_t received) {
        if (generation != m_generation) {
            return;
        }
        if (error) {
            abandon(m_reader.pendingBytes() > 0 ? "closed inside a message" : error.message());
            return;
        }
        takeFrames(received);
    });
}

void SwitchConnection::takeFrames(std::size_t received) {
    m_reader.feed(std::string_view(m_received.data(), received));
    if (!handOver(&FrameReader::next)) {
        return;
    }
    if (m_reader.isLost()) {
        abandon("the byte stream contains no valid message");
        return;
    }
    awaitRest();
    read();
}

bool SwitchConnection::handOver(std::optional<Frame> (FrameReader::*next)()) {
    const unsigned generation = m_generation;
    while (const std::optional<Frame> frame = (m_reader.*next)()) {
        m_backoff.reset();
        m_handlers.frame(*frame);
        if (generation != m_generation) {
            break;
        }
    }
    m_handlers.framesEnd();
    if (generation != m_generation) {
        return false;
    }
    for (const std::string& fault : m_reader.takeFaults()) {
        CSTA_LINK_LOG(3, "from the switch: %s", fault.c_str());
    }
    return true;
}

void SwitchConnection::awaitRest() {
    m_restTimer.cancel();
    if (m_reader.pendingBytes() == 0) {
        return;
    }
    m_restTimer.expires_after(m_limits.overdue);
    m_restTimer.async_wait([this, generation = m_generation](std::error_code overdue) {
        if (overdue || generation != m_generation || !handOver(&FrameReader::takeOverdue) ||
            m_reader.pendingBytes() == 0) {
            return;
        }
        CSTA_LINK_LOG(3, "the rest of a message does not come; %zu bytes of it are there",
                      m_reader.pendingBytes());
        m_restTimer.expires_after(m_limits.tornOff - m_limits.overdue);
        m_restTimer.async_wait([this, generation](std::error_code tornOff) {
            if (!tornOff && generation == m_generation) {
                abandon("the rest of a message does not come");
            }
        });
    });
}

void SwitchConnection::endAttempt() {
    ++m_generation;
    m_connected = false;
    m_resolver.cancel();
    m_timer.cancel();
    m_restTimer.cancel();
    m_socket.close();
    m_socket = StreamSocket(m_io);
    m_reader = FrameReader();
    m_queue.clear();
}

}  // namespace host
