#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>

#include "host/config/Endpoint.h"
#include "host/http/HttpRequest.h"
#include "host/http/HttpResponse.h"

namespace host {

/// Why a server cannot listen, with a text for the user.
class HttpServerError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct HttpServerSettings {
    Endpoint listen;
    /// A further client waits until another one goes.
    std::size_t maxConnections = 256;
    /// Beyond it a request is cut off. Whoever wants to answer such a request with an error allows for more here than there.
    std::size_t maxBody = 256U * 1024U;
    /// How long a client may take to send a request, an idle one included, and to take a piece of an answer.
    std::chrono::seconds clientTime{15};
    /// How often the streams are told that the server lives, and how long it may stay deaf after it was short of descriptors.
    std::chrono::milliseconds heartbeat{15000};
};

/// HTTP over TCP. This room's one door to the HTTP library, which no other file but `ConnectionLimiter` knows.
///
/// Threads: one loop thread does all input and output and must never wait. Requests are handled on a few worker threads, so
/// a handler may wait for the database or the switch.
///
/// Slow and idle clients are cut off; what does not parse or exceeds the limits of headers (8 KiB a value, 64 of them, an
/// address of 4 KiB) is cut off without an answer.
class HttpServer {
public:
    /// Runs on a worker thread, several at a time; does not throw.
    using Handler = std::function<HttpResponse(const HttpRequest&)>;

    /// Throws `HttpServerError` when it cannot listen there, before anything else begins that would disturb what does.
    explicit HttpServer(const HttpServerSettings& settings);
    /// Stops the server if it still runs.
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    /// What a start needs. `listens` is called before the first request, `heartbeat` on the loop thread from time to time.
    struct Callbacks {
        Handler handle;
        std::function<void(const Endpoint&)> listening;
        std::function<void()> heartbeat;
    };
    /// Answers where it listens. Throws `HttpServerError`. Once only.
    Endpoint start(Callbacks callbacks);
    /// Accepts nothing more, begins no request that waits or still comes, waits for the handlers that run, sends what these
    /// answer as far as the network takes it at once, and cuts all clients off. What was posted before runs. Idempotent.
    void stop();

    /// Runs `work` on the loop thread, later and in order; what comes after `stop` is dropped. Any thread.
    void post(std::function<void()> work);
    /// The same after a pause.
    void postLater(std::chrono::milliseconds pause, std::function<void()> work);

private:
    class Impl;
    const std::unique_ptr<Impl> m_impl;
};

}  // namespace host
