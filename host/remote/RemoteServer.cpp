#include "host/remote/RemoteServer.h"

#include <algorithm>
#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/local/stream_protocol.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>
#include <atomic>
#include <chrono>
#include <map>
#include <string>
#include <thread>
#include <utility>

#include "host/framework/EventLoop.h"
#include "host/framework/WorkerPool.h"
#include "host/remote/ClientSession.h"
#include "host/remote/PendingWrites.h"
#include "host/remote/ServerSocket.h"
#include "platform/logging/Logging.h"

namespace host {

namespace {

constexpr unsigned kWorkers = 4;

}  // namespace

class RemoteServer::Impl {
public:
    Impl(ServerSocket& socket, RemoteBackend backend, RemoteLimits limits)
        : m_backend(std::move(backend)),
          m_limits(limits),
          m_acceptor(m_io, asio::local::stream_protocol(), socket.takeListener()),
          m_retry(m_io),
          m_workers(kWorkers, std::max(kWorkers, static_cast<unsigned>(limits.maxClients))) {}

    void start() {
        asio::post(m_io, [this] { accept(); });
        m_thread = std::thread([this] { runLoop(m_io); });
    }

    void stop() {
        if (!m_thread.joinable()) {
            return;
        }
        asio::post(m_io, [this] { beginStop(); });
        m_thread.join();
    }

    void disconnectLine(const std::string& device) {
        asio::post(m_io, [this, device] {
            for (const auto& [name, session] : m_sessions) {
                session->closeIfOf(device);
            }
        });
    }

    [[nodiscard]] std::size_t clientCount() const noexcept { return m_sessionCount; }

private:
    void accept() {
        m_acceptor.async_accept([this](const asio::error_code& error, ClientSession::Socket socket) {
            if (m_stopping) {
                return;
            }
            if (error) {
                if (!std::exchange(m_acceptFails, true)) {
                    logAppUni("Remote", __FILE_NAME__, 2, __LINE__, "cannot accept a client for now: %s",
                              error.message().c_str());
                }
                acceptLater();
                return;
            }
            m_acceptFails = false;
            accept();
            admit(std::move(socket));
        });
    }

    // The cause of a failed accept (no free descriptor, for example) lasts for a while.
    void acceptLater() {
        m_retry.expires_after(std::chrono::milliseconds(500));
        m_retry.async_wait([this](const asio::error_code& error) {
            if (!error) {
                accept();
            }
        });
    }

    void admit(ClientSession::Socket socket) {
        if (m_sessions.size() >= m_limits.maxClients) {
            logAppUni("Remote", __FILE_NAME__, 3, __LINE__, "a client is rejected: %zu are connected",
                      m_sessions.size());
            return;
        }
        const std::string name = "client-" + std::to_string(++m_lastClient);
        const auto session = std::make_shared<ClientSession>(std::move(socket), name, m_surroundings,
                                                             [this, name] { forget(name); });
        m_sessions.emplace(name, session);
        m_sessionCount = m_sessions.size();
        session->start();
    }

    void forget(const std::string& name) {
        m_sessions.erase(name);
        m_sessionCount = m_sessions.size();
        endIfEmpty();
    }

    void beginStop() {
        m_stopping = true;
        asio::error_code ignored;
        m_acceptor.close(ignored);
        m_retry.cancel();
        for (const auto& [name, session] : m_sessions) {
            session->close("");
        }
        endIfEmpty();
    }

    void endIfEmpty() {
        if (m_stopping && m_sessions.empty()) {
            m_alive.reset();
        }
    }

    // Constant after construction.
    RemoteBackend m_backend;
    const RemoteLimits m_limits;

    // Used by the reader thread only, which runs m_io.
    asio::io_context m_io{1};
    asio::executor_work_guard<asio::io_context::executor_type> m_alive{m_io.get_executor()};
    asio::local::stream_protocol::acceptor m_acceptor;
    asio::steady_timer m_retry;
    bool m_stopping = false;
    /// The last accept has failed.
    bool m_acceptFails = false;
    unsigned long m_lastClient = 0;
    /// Each client has at most one request in progress. With a thread for each, requests that wait delay no
    /// other.
    WorkerPool m_workers;
    PendingWrites m_writes{m_io.get_executor()};
    const ClientSurroundings m_surroundings{m_backend, m_workers, m_writes, m_limits.maxBacklogBytes};
    std::map<std::string, std::shared_ptr<ClientSession>> m_sessions;

    /// Any thread may read it.
    std::atomic<std::size_t> m_sessionCount{0};

    // Used by the owner's thread only.
    std::thread m_thread;
};

RemoteServer::RemoteServer(ServerSocket& socket, RemoteBackend backend, RemoteLimits limits)
    : m_impl(std::make_unique<Impl>(socket, std::move(backend), limits)) {}

RemoteServer::~RemoteServer() {
    stop();
}

void RemoteServer::start() {
    m_impl->start();
}

void RemoteServer::stop() {
    m_impl->stop();
}

void RemoteServer::disconnectLine(const std::string& device) {
    m_impl->disconnectLine(device);
}

std::size_t RemoteServer::clientCount() const noexcept {
    return m_impl->clientCount();
}

}  // namespace host
