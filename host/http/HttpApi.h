#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/http/HttpServer.h"
#include "host/http/messages/Router.h"
#include "host/log/Log.h"
#include "host/webhooks/Webhook.h"

namespace host {

class Database;
class Metrics;
class ServedLinesIfc;
struct LineApiServer;

/// The components that the HTTP API serves. All are borrowed and outlive the API.
struct HttpBackend {
    ServedLinesIfc& lines;
    Database& database;
    Metrics& metrics;
    /// The number of clients of the Unix socket.
    std::function<std::size_t()> remoteClients;
    /// The lines of the log since the program started.
    std::function<LogCounts()> logCounts;
    /// Empty without a webhook.
    std::function<std::vector<WebhookState>()> webhooks{};
};

struct HttpApiSettings {
    HttpServerSettings server;
    /// std::nullopt: no request needs a token.
    std::optional<std::string> token;
    /// The URL under which a proxy serves the page; empty for none.
    std::string publicUrl{};
    /// The origins of other pages that may use the API.
    std::vector<std::string> allowedOrigins{};
    /// The directory of the page's files.
    std::filesystem::path page;
};

/// The HTTP API (docs/http-api.md): the server, its tokens, the list of lines, the page, and the `LineApi` of
/// each line. Every request passes the `RequestPipeline`.
///
/// Construct, start and stop from one thread.
class HttpApi {
public:
    /// Throws `HttpServerError` when the address is taken.
    HttpApi(HttpBackend backend, HttpApiSettings settings);
    /// Calls `stop`.
    ~HttpApi();
    HttpApi(const HttpApi&) = delete;
    HttpApi& operator=(const HttpApi&) = delete;

    /// Returns the listening address. Throws `HttpServerError`.
    Endpoint start();
    /// Ends every connection. Call `LineApi::endStreams` of each line before. Idempotent.
    void stop();

    /// The parts that the APIs of lines use. Valid until the API is destroyed.
    [[nodiscard]] LineApiServer serverForLines();

    /// Reads the named tokens again, which another program may have changed. Thread-safe.
    void reloadTokens();

    /// The routes that belong to no line; a `LineApi` has those of a line.
    [[nodiscard]] const std::vector<Router::Route>& routes() const noexcept;

private:
    class Impl;
    const std::unique_ptr<Impl> m_impl;
};

}  // namespace host
