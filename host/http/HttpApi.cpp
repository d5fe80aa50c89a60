#include "host/http/HttpApi.h"

#include <chrono>
#include <nlohmann/json.hpp>
#include <utility>

#include "host/access/AccessTokens.h"
#include "host/access/Tickets.h"
#include "host/database/DatabaseMemory.h"
#include "host/framework/Strand.h"
#include "host/framework/WorkerPool.h"
#include "host/http/HealthRoute.h"
#include "host/http/LineApi.h"
#include "host/http/LinesResource.h"
#include "host/http/Metrics.h"
#include "host/http/RequestPipeline.h"
#include "host/http/ServedLinesIfc.h"
#include "host/http/SessionRoutes.h"
#include "host/http/events/AllLinesFeed.h"
#include "host/http/messages/HttpError.h"
#include "host/http/resources/OpenApi.h"
#include "host/http/resources/TokensResource.h"

namespace host {
namespace {

/// The streams of a token end within a second after it.
constexpr std::chrono::milliseconds kStreamCheck{500};

}  // namespace

/// The components in dependency order.
class HttpApi::Impl {
public:
    Impl(HttpBackend backend, HttpApiSettings settings)
        : m_backend(std::move(backend)),
          m_tokens(m_backend.database),
          m_authenticator(std::move(settings.token), &m_tokens, &m_tickets, settings.publicUrl,
                          std::move(settings.allowedOrigins)),
          m_page(settings.page),
          m_isSecure(settings.server.certificate != nullptr),
          m_server(settings.server) {
        m_health.addRoutes(m_router);
        m_lines.addRoutes(m_router);
        m_tokensResource.addRoutes(m_router);
        addSessionRoutes(m_authenticator, m_router);
        m_router.add({.method = "GET",
                      .pattern = "/metrics",
                      .scope = Scope::eMetrics,
                      .handler = [this](const HttpRequest& /*each*/) { return metrics(); },
                      .isOfAllLines = true});
        m_router.add({"POST", "/api/v1/tickets", Scope::eRead,
                      [this](const HttpRequest& each) { return ticket(each); }});
        m_router.add({"GET", "/api/v1/openapi.json", Scope::eNone,
                      [](const HttpRequest& /*each*/) { return openApiResponse(); }});
    }
    ~Impl() { stop(); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    Endpoint start() {
        return m_server.start(
            {[this](const HttpRequest& request) { return m_pipeline.handle(request); },
             [this](const HttpRequest& request) { return m_authenticator.isTrusted(request); },
             [this](HttpRequest request) { return m_pipeline.mayBeLong(std::move(request)); },
             [this](const Endpoint& where) { m_authenticator.setListenAddress(where, m_isSecure); },
             [this] {
                 m_allLines.keepAlive();
                 m_backend.lines.keepAlive();
             }});
    }

    void stop() {
        m_eventStrand.close();
        m_server.post([this] { m_allLines.close(); });
        m_server.stop();
    }

    LineApiServer serverForLines() {
        return {[this](std::function<void()> work) { m_server.post(std::move(work)); },
                [this](std::chrono::milliseconds pause, std::function<void()> work) {
                    m_server.postLater(pause, std::move(work));
                },
                [this](std::function<void()> work) { m_eventStrand.post(std::move(work)); },
                [this](const Access& access) { return mayGoOn(access); },
                [this](const HttpRequest& request) { return allEvents(request); },
                [this](const std::string& line) {
                    return EventFeed::Reader{[this] { return m_allLines.mayBeRead(); },
                                             [this, line](const char* event, const std::string& data) {
                                                 m_allLines.append(line, event, data);
                                             }};
                }};
    }

    void reloadTokens() { static_cast<void>(m_tokens.load()); }

    [[nodiscard]] const Router& router() const noexcept { return m_router; }

private:
    HttpResponse ticket(const HttpRequest& request) {
        const std::string ticket = m_tickets.issue(request.access, Tickets::Clock::now());
        return jsonResponse({{"ticket", ticket}, {"seconds", Tickets::kLifetime.count()}}, 201);
    }

    HttpResponse allEvents(const HttpRequest& request) {
        if (request.access.scope != Scope::eAdmin || !request.access.line.empty()) {
            throw HttpError(403, "wrong-scope", "the events of all lines need a token with the scope admin");
        }
        HttpResponse response;
        if (request.method == "GET") {
            response.stream = m_allLines.open(request.header("last-event-id"), mayGoOn(request.access));
            if (response.stream == nullptr) {
                throw HttpError(503, "too-many-streams", "there are too many event streams");
            }
            m_backend.lines.useAll();
        }
        response.contentType = "text/event-stream";
        return response;
    }

    /// A function that returns false once the stream of this access must end; empty for one that never must.
    std::function<bool()> mayGoOn(const Access& access) {
        if (access.tokenId == 0) {
            return {};
        }
        m_server.post([this] {
            if (!std::exchange(m_checksStreams, true)) {
                checkStreamsLater();
            }
        });
        return [this, access] { return m_authenticator.isValid(access); };
    }

    /// Ends the streams of tokens that were revoked or have expired. Call from the loop thread only.
    void checkStreamsLater() {
        m_server.postLater(kStreamCheck, [this] {
            const bool isAllLeft = m_allLines.endRefused();
            m_checksStreams = m_backend.lines.endRefused() || isAllLeft;
            if (m_checksStreams) {
                checkStreamsLater();
            }
        });
    }

    HttpResponse metrics() {
        const LineTotals totals = m_backend.lines.totals();
        HttpResponse response;
        response.contentType = "text/plain; version=0.0.4; charset=utf-8";
        response.body = m_backend.metrics.text(
            {.connectedSwitches = totals.connectedSwitches,
             .switches = totals.switches,
             .lines = totals.lines,
             .monitoredLines = totals.monitored,
             .ofLines = storedOr503(m_backend.lines.gauges(m_backend.metrics.isByLine(totals.lines))),
             .observers = {{"http", m_backend.lines.streamCount() + m_allLines.streamCount()},
                           {"remote", m_backend.remoteClients()}},
             .keptChanges = m_backend.database.keptCount(),
             .lostChanges = m_backend.database.lostCount(),
             .databaseMemory = databaseMemory(),
             .log = m_backend.logCounts(),
             .failedTries = m_authenticator.failedTries(),
             .webhooks = m_backend.webhooks ? m_backend.webhooks() : std::vector<WebhookState>()});
        return response;
    }

    const HttpBackend m_backend;
    AccessTokens m_tokens;
    Tickets m_tickets;
    Authenticator m_authenticator;
    const PageFiles m_page;
    HealthRoute m_health{m_backend.database};
    LinesResource m_lines{m_backend.lines};
    TokensResource m_tokensResource{
        m_tokens, [this](const std::string& device) { return m_backend.lines.contains(device); }};
    Router m_router;
    RequestPipeline m_pipeline{m_authenticator, m_router, m_page, m_backend.lines,
                               [this](const RequestReport& each) { m_backend.metrics.requestHandled(each); }};
    AllLinesFeed m_allLines{[this](std::chrono::milliseconds pause, std::function<void()> work) {
        m_server.postLater(pause, std::move(work));
    }};
    const bool m_isSecure;
    HttpServer m_server;
    WorkerPool m_eventWorkers{1};
    Strand m_eventStrand{m_eventWorkers};
    /// Loop thread only: true while a stream is open that may have to end.
    bool m_checksStreams = false;
};

HttpApi::HttpApi(HttpBackend backend, HttpApiSettings settings)
    : m_impl(std::make_unique<Impl>(std::move(backend), std::move(settings))) {}

HttpApi::~HttpApi() = default;

Endpoint HttpApi::start() {
    return m_impl->start();
}

void HttpApi::stop() {
    m_impl->stop();
}

void HttpApi::reloadTokens() {
    m_impl->reloadTokens();
}

const std::vector<Router::Route>& HttpApi::routes() const noexcept {
    return m_impl->router().routes();
}

LineApiServer HttpApi::serverForLines() {
    return m_impl->serverForLines();
}

}  // namespace host
