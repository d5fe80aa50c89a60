#include "host/http/HttpServer.h"

#include <algorithm>
#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/ip/address.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>
#include <asio/thread_pool.hpp>
#include <atomic>
#include <cstdint>
#include <future>
#include <map>
#include <optional>
#include <restinio/all.hpp>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "host/framework/EventLoop.h"
#include "host/http/Arrivals.h"
#include "host/http/ClosableSocket.h"
#include "host/http/ConnectionLimiter.h"
#include "host/http/ConnectionTable.h"
#include "host/http/DescriptorWatch.h"
#include "host/http/LongBodies.h"
#include "host/http/RestinioMessages.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

/// The HTTP library calls it on the loop thread for each connection that begins or ends.
struct ConnectionListener {
    std::function<void(const restinio::connection_state::notice_t&)> changed;

    void state_changed(const restinio::connection_state::notice_t& notice) const { changed(notice); }
};

/// The library's methods; the type selects the settings of the parser below.
struct Methods : public restinio::default_http_methods_t {};

struct Traits : public restinio::default_single_thread_traits_t {
    using http_methods_mapper_t = Methods;
    using stream_socket_t = ClosableSocket;
    using connection_state_listener_t = ConnectionListener;
};

/// Connections that are shut down, but not closed yet.
constexpr std::size_t kEndingConnections = 64;
constexpr std::chrono::milliseconds kDescriptorInterval{1000};
constexpr std::chrono::milliseconds kMemoryInterval{100};

}  // namespace
}  // namespace host

template <>
struct restinio::connection_count_limit_types<host::Traits> {
    using limiter_t = host::ConnectionLimiter;
    using lifetime_monitor_t = connection_count_limits::connection_lifetime_monitor_t<limiter_t>;
};

/// The library's parser, with limits of bodies by request.
template <>
inline http_parser_settings restinio::impl::create_parser_settings<host::Methods>() noexcept {
    http_parser_settings settings = create_parser_settings<restinio::default_http_methods_t>();
    settings.on_body = [](http_parser* parser, const char* piece, std::size_t length) {
        try {
            auto& request = *static_cast<http_parser_ctx_t*>(parser->data);
            return host::LongBodies::ofThisThread()->add(*parser, request, piece, length) ? 0 : -1;
        } catch (const std::exception&) {
            return -1;
        }
    };
    return settings;
}

namespace host {
namespace {

using Server = restinio::http_server_t<Traits>;
using Request = restinio::request_handle_t;

/// Pending work holds connections, and connections point into the server. So pending work is destroyed first,
/// then the server, then the loop.
class Loop : public asio::io_context {
public:
    Loop() : asio::io_context(1) {}
    void dropPendingWork() { shutdown(); }
};

/// Accepts the names that the library accepts.
asio::ip::address addressOf(const std::string& host) {
    return host == "localhost" ? asio::ip::address_v4::loopback() : asio::ip::make_address(host);
}

}  // namespace

class HttpServer::Impl {
public:
    explicit Impl(const HttpServerSettings& settings)
        : m_settings(settings),
          m_heartbeat(m_loop),
          m_descriptors(m_loop, [this] { renewAccept(); }),
          m_table({.trusted = settings.maxTrustedConnections,
                   .anonymous = settings.maxAnonymousConnections,
                   .anonymousOfOneAddress = settings.maxAnonymousOfOneAddress}) {
        try {
            const asio::ip::tcp::endpoint address(addressOf(settings.listen.host), settings.listen.port);
            const asio::ip::tcp::acceptor trial(m_loop, address);  // with SO_REUSEADDR, as the server's own
        } catch (const std::exception& error) {
            throw cannotListen(error);
        }
    }
    ~Impl() { stop(); }

    Endpoint start(Callbacks callbacks) {
        m_callbacks = std::move(callbacks);
        m_thread = std::thread([this] { runLoop(m_loop); });
        std::promise<void> opened;
        asio::post(m_loop, [this, &opened] {
            try {
                open();
                opened.set_value();
            } catch (...) {
                opened.set_exception(std::current_exception());
            }
        });
        try {
            opened.get_future().get();
        } catch (const std::exception& error) {
            stop();
            throw cannotListen(error);
        }
        return m_endpoint;
    }

    void stop() {
        if (!m_thread.joinable()) {
            return;
        }
        m_workers.stop();
        std::promise<void> closed;
        asio::post(m_loop, [this, &closed] {
            m_heartbeat.cancel();
            m_descriptors.stop();
            if (m_server) {
                m_server->close_sync();
            }
            closed.set_value();
        });
        closed.get_future().wait();
        m_workers.join();
        // After the responses of the handlers that ran.
        asio::post(m_loop, [this] { m_loop.stop(); });
        m_thread.join();
        m_waiting.clear();
        m_loop.dropPendingWork();
        m_server.reset();
    }

    void post(std::function<void()> work) { asio::post(m_loop, std::move(work)); }

    void postLater(std::chrono::milliseconds pause, std::function<void()> work) {
        const auto timer = std::make_shared<asio::steady_timer>(m_loop, pause);
        timer->async_wait([timer, work = std::move(work)](const asio::error_code& /*none*/) { work(); });
    }

private:
    [[nodiscard]] HttpServerError cannotListen(const std::exception& error) const {
        return HttpServerError("cannot listen on " + m_settings.listen.text() + ": " + error.what() +
                               "; choose another address with --listen ADDR:PORT");
    }

    void open() {
        auto settings =
            restinio::server_settings_t<Traits>()
                .address(m_settings.listen.host)
                .port(m_settings.listen.port)
                .max_parallel_connections(m_settings.maxTrustedConnections +
                                          m_settings.maxAnonymousConnections + kEndingConnections)
                .connection_state_listener(std::make_shared<ConnectionListener>(
                    ConnectionListener{[this](const auto& notice) { onConnection(notice); }}))
                // The library detects that the client of a stream disconnected only while it reads the next
                // request.
                .max_pipelined_requests(2)
                .read_next_http_message_timelimit(m_settings.clientTime)
                .write_http_response_timelimit(m_settings.clientTime)
                // Streams write at each heartbeat, so they never reach this limit.
                .handle_request_timeout(std::chrono::seconds(60))
                .incoming_http_msg_limits(restinio::incoming_http_msg_limits_t()
                                              .max_url_size(4096)
                                              .max_field_name_size(256)
                                              .max_field_value_size(8192)
                                              .max_field_count(64))
                .acceptor_post_bind_hook([this](asio::ip::tcp::acceptor& acceptor) { onBound(acceptor); })
                .request_handler([this](const Request& request) { return dispatch(request); });
        m_bodies.emplace(LongBodies::Limits{m_settings.maxBody, m_settings.maxLongBody},
                         m_callbacks.mayBeLong);
        m_arrivals.emplace(
            Arrivals::Settings{.arrived = [this](ConnectionTable::Id id,
                                                 const ClosableSocket& socket) { onArrival(id, socket); },
                               .context =
                                   [certificate = m_settings.certificate] {
                                       return certificate ? certificate->context() : nullptr;
                                   },
                               .limit = m_settings.clientTime});
        m_server = std::make_unique<Server>(restinio::external_io_context(m_loop), std::move(settings));
        m_server->open_sync();
        scheduleHeartbeat();
        m_descriptors.start(std::min(kDescriptorInterval, m_settings.heartbeat));
    }

    void onBound(asio::ip::tcp::acceptor& acceptor) {
        m_acceptor = &acceptor;
        m_endpoint = {m_settings.listen.host, acceptor.local_endpoint().port()};
        m_callbacks.listening(m_endpoint);
    }

    void onArrival(ConnectionTable::Id id, const ClosableSocket& socket) {
        m_streams.try_emplace(id);
        ClosableSocket::sendAtOnce(socket.handle());
        asio::error_code gone;
        m_table.accepted(
            id, socket.tcp().remote_endpoint(gone).address().to_string(),
            [handle = socket.handle()] { ClosableSocket::shutDown(handle); }, ConnectionTable::Clock::now());
    }

    void onConnection(const restinio::connection_state::notice_t& notice) {
        using restinio::connection_state::closed_t;
        const ConnectionTable::Id id = notice.connection_id();
        const restinio::connection_state::cause_t cause = notice.cause();
        if (!restinio::holds_alternative<closed_t>(cause)) {
            return;
        }
        m_table.closed(id);
        const auto found = m_streams.find(id);
        if (found == m_streams.end()) {
            return;
        }
        // Later, because the library may report it within a write of the stream.
        asio::post(m_loop, [streams = std::move(found->second)] {
            for (const auto& weak : streams) {
                if (const auto stream = weak.lock()) {
                    stream->disconnected();
                }
            }
        });
        m_streams.erase(found);
    }

    void scheduleHeartbeat() {
        m_heartbeat.expires_after(m_settings.heartbeat);
        m_heartbeat.async_wait([this](const asio::error_code& error) {
            if (!error) {
                scheduleHeartbeat();
                renewAccept();
                m_callbacks.heartbeat();
            }
        });
    }

    /// Cancels and restarts the accept, because a failed accept cannot be distinguished from a pending one.
    void renewAccept() {
        auto renewal = ConnectionLimiter::ofThisThread()->renewal();
        asio::error_code ignored;
        m_acceptor->cancel(ignored);
        asio::post(m_loop, std::move(renewal));
    }

    /// The library's request handle stays on the loop thread, because it is not thread-safe.
    restinio::request_handling_status_t dispatch(const Request& request) {
        const std::uint64_t id = ++m_lastId;
        HttpRequest plain = requestOf(*request);
        m_table.requested(request->connection_id(), m_callbacks.isTrusted(plain),
                          ConnectionTable::Clock::now());
        m_waiting.emplace(id, request);
        try {
            asio::post(m_workers, [this, id, plain = std::move(plain)] { handle(id, plain); });
        } catch (const std::exception& error) {
            logAppUni("HTTP", __FILE_NAME__, 2, __LINE__, "a request failed: %s", error.what());
            respond(id, unavailable());
        }
        return restinio::request_accepted();
    }

    /// An error that cannot even be described, as without free memory, gets an empty response. It is repeated
    /// until there is memory for it, because each request must end.
    void handle(std::uint64_t id, const HttpRequest& request) noexcept {
        bool failed = false;
        for (bool posted = false; !posted;) {
            try {
                asio::post(
                    m_loop,
                    [this, id, response = failed ? unavailable() : m_callbacks.handle(request)]() mutable {
                        respondSoon(id, std::move(response));
                    });
                posted = true;
            } catch (const std::exception& error) {
                logAppUni("HTTP", __FILE_NAME__, 2, __LINE__, "a request failed: %s", error.what());
                if (std::exchange(failed, true)) {
                    std::this_thread::sleep_for(kMemoryInterval);
                }
            }
        }
    }

    static HttpResponse unavailable() {
        HttpResponse response;
        response.status = 503;
        return response;
    }

    void respondSoon(std::uint64_t id, HttpResponse response) {
        if (const auto delay = std::exchange(response.delay, {}); delay.count() > 0) {
            postLater(delay, [this, id, response = std::move(response)] { respond(id, response); });
        } else {
            respond(id, std::move(response));
        }
    }

    void respond(std::uint64_t id, HttpResponse response) {
        const auto found = m_waiting.find(id);
        const Request request = std::move(found->second);
        m_waiting.erase(found);
        const ConnectionTable::Id connection = request->connection_id();
        if (!response.stream) {
            m_table.responded(connection, ConnectionTable::Clock::now());
        } else if (const auto streams = m_streams.find(connection); streams != m_streams.end()) {
            streams->second.push_back(response.stream);
        }
        try {
            send(*request, std::move(response));
        } catch (const std::exception& error) {
            logAppUni("HTTP", __FILE_NAME__, 2, __LINE__, "a response cannot be sent: %s", error.what());
        }
    }

    // Constant after `start`.
    const HttpServerSettings m_settings;
    Callbacks m_callbacks;
    Endpoint m_endpoint;

    Loop m_loop;
    asio::executor_work_guard<asio::io_context::executor_type> m_alive{m_loop.get_executor()};
    asio::thread_pool m_workers{4};

    // Loop thread only.
    asio::steady_timer m_heartbeat;
    DescriptorWatch m_descriptors;
    ConnectionTable m_table;
    std::optional<LongBodies> m_bodies;
    std::optional<Arrivals> m_arrivals;
    /// The streams of each open connection.
    std::map<ConnectionTable::Id, std::vector<std::weak_ptr<StreamBody>>> m_streams;
    std::unique_ptr<Server> m_server;
    asio::ip::tcp::acceptor* m_acceptor = nullptr;  // the server's
    std::uint64_t m_lastId = 0;
    std::map<std::uint64_t, Request> m_waiting;

    // The owner's thread only.
    std::thread m_thread;
};

HttpServer::HttpServer(const HttpServerSettings& settings) : m_impl(std::make_unique<Impl>(settings)) {}

HttpServer::~HttpServer() = default;

Endpoint HttpServer::start(Callbacks callbacks) {
    return m_impl->start(std::move(callbacks));
}

void HttpServer::stop() {
    m_impl->stop();
}

void HttpServer::post(std::function<void()> work) {
    m_impl->post(std::move(work));
}

void HttpServer::postLater(std::chrono::milliseconds pause, std::function<void()> work) {
    m_impl->postLater(pause, std::move(work));
}

}  // namespace host
