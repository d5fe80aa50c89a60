#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>

#include "host/config/Endpoint.h"
#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"
#include "host/tls/ServerCertificate.h"

namespace host {

/// The server cannot listen; `what` is a text for the user.
class HttpServerError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct HttpServerSettings {
    Endpoint listen;
    /// If set, the server speaks TLS only.
    std::shared_ptr<ServerCertificate> certificate{};
    /// Connections that have sent a request with the token, and the others; `ConnectionTable` has the rule.
    std::size_t maxTrustedConnections = 192;
    std::size_t maxAnonymousConnections = 64;
    std::size_t maxAnonymousOfOneAddress = 32;
    /// In bytes. The connection of a longer request is closed without a response, so this limit is higher
    /// than the one of the handler that returns 413.
    std::size_t maxBody = 256U * 1024U;
    /// In bytes, of a request for which `mayBeLong` returns true; the rest of a longer body is dropped.
    /// Higher than the limit of every handler.
    std::size_t maxLongBody = 16U * 1024U * 1024U + 1;
    /// The time limit for a client to complete the TLS handshake, to send a request, idle time included, and
    /// to receive a piece of a response.
    std::chrono::seconds clientTime{15};
    /// The interval of the streams' comments, and of new attempts to accept after file descriptors ran out.
    std::chrono::milliseconds heartbeat{15000};
};

/// HTTP over TCP or TLS. Only its source, `ConnectionLimiter` and `RestinioMessages` use the HTTP library.
///
/// Threads: one loop thread does all input and output and never blocks. Handlers run on a few worker threads,
/// so a handler may wait for the database or the switch.
///
/// Closes the connections of slow and idle clients. Closes a connection without a response if a request
/// cannot be parsed or exceeds a limit: 8 KiB a header value, 64 headers, 4 KiB a target.
class HttpServer {
public:
    /// Called on worker threads, concurrently; does not throw.
    using Handler = std::function<HttpResponse(const HttpRequest&)>;

    /// Throws `HttpServerError` if the address is in use, so that the caller can stop before it starts
    /// anything else.
    explicit HttpServer(const HttpServerSettings& settings);
    /// Calls `stop`.
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    /// `listening` is called before the first request, `heartbeat` on the loop thread at each interval.
    /// `isTrusted` is called on the loop thread for each request; true keeps its connection from clients
    /// without the token.
    struct Callbacks {
        Handler handle;
        std::function<bool(const HttpRequest&)> isTrusted;
        /// Called on the loop thread when a body is longer than `maxBody`, with the request without its body.
        std::function<bool(HttpRequest)> mayBeLong;
        std::function<void(const Endpoint&)> listening;
        std::function<void()> heartbeat;
    };
    /// Returns the listening address. Throws `HttpServerError`. Call once only.
    Endpoint start(Callbacks callbacks);
    /// Stops accepting, drops requests whose handler has not begun, waits for the running handlers, sends
    /// their responses as far as the network takes them at once, and closes all connections. Work that was
    /// posted before runs. Idempotent.
    void stop();

    /// Runs `work` on the loop thread, asynchronously and in order; after `stop` it is dropped. Thread-safe.
    void post(std::function<void()> work);
    /// The same after a delay.
    void postLater(std::chrono::milliseconds pause, std::function<void()> work);

private:
    class Impl;
    const std::unique_ptr<Impl> m_impl;
};

}  // namespace host
