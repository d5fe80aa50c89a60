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
#include "host/http/resources/StatusResource.h"
#include "host/log/Log.h"
#include "host/webhooks/Webhook.h"

class JournalServiceIfc;

namespace host {

class CallControlIfc;
class Database;
class Dialling;
class LocalManagement;
class Metrics;
class NumberTexts;
class Phonebook;
class StoredEntries;
class StoredLists;

/// The components that the HTTP API serves. All are borrowed and outlive the API.
struct HttpBackend {
    std::string line;
    JournalServiceIfc& journal;
    LocalManagement& management;
    Phonebook& phonebook;
    Database& database;
    const StoredLists& storedLists;
    StoredEntries& storedEntries;
    Metrics& metrics;
    CallControlIfc& callControl;
    const Dialling& dialling;
    NumberTexts& numbers;
    std::function<LineState()> lineState;
    /// The number of clients of the Unix socket.
    std::function<std::size_t()> remoteClients;
    /// The lines of the log since the program started.
    std::function<LogCounts()> logCounts;
    /// Empty without a webhook.
    std::function<std::vector<WebhookState>()> webhooks{};
    /// The version of the program.
    std::string version{};
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

/// The HTTP API of one line (docs/http-api.md): the resources with their routes, the event stream, the page.
/// Every request passes the `RequestPipeline`.
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

    /// Subscribes to the journal and returns the listening address. Throws `HttpServerError`.
    Endpoint start();
    /// Unsubscribes and ends every connection. Idempotent.
    void stop();

    /// Reads the named tokens again, which another program may have changed. Thread-safe.
    void reloadTokens();

    /// The routes of all resources.
    [[nodiscard]] const std::vector<Router::Route>& routes() const noexcept;

    /// Sends a "resync" event to all streams; their clients read the lists again. Call after an operation
    /// that may have changed the lists without a notification of observers. Thread-safe.
    void resync();
    /// Sends a "liveCallsUpdate" event to all streams, with the live calls as they are then, not more often
    /// than ten times a second. Call after each change of the live calls. Does not block. Thread-safe.
    void liveCallsChanged();

private:
    class Impl;
    const std::unique_ptr<Impl> m_impl;
};

}  // namespace host
