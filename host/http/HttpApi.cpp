#include "host/http/HttpApi.h"

#include <chrono>
#include <nlohmann/json.hpp>
#include <utility>

#include "host/access/AccessTokens.h"
#include "host/access/Tickets.h"
#include "host/database/DatabaseMemory.h"
#include "host/framework/Strand.h"
#include "host/framework/WorkerPool.h"
#include "host/http/Metrics.h"
#include "host/http/ObserverPair.h"
#include "host/http/RequestPipeline.h"
#include "host/http/SessionRoutes.h"
#include "host/http/events/EventFeed.h"
#include "host/http/messages/HttpError.h"
#include "host/http/resources/CallsResource.h"
#include "host/http/resources/ContactsResource.h"
#include "host/http/resources/ImportResource.h"
#include "host/http/resources/ListsResource.h"
#include "host/http/resources/LiveCallsResource.h"
#include "host/http/resources/OpenApi.h"
#include "host/http/resources/PartiesResource.h"
#include "host/http/resources/SettingsResource.h"
#include "host/http/resources/StatisticsResource.h"
#include "host/http/resources/TimesResource.h"
#include "host/http/resources/TokensResource.h"
#include "host/stored-lists/StoredLists.h"
#include "journalservice/JournalServiceIfc.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;

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
          m_lists(m_backend.storedLists, m_backend.storedEntries),
          m_import(m_backend.storedEntries),
          m_settings(m_backend.management, m_backend.database, [this] { resync(); }),
          m_contacts(m_backend.phonebook, m_backend.numbers),
          m_times({m_backend.line, m_backend.database}),
          m_status({m_backend.line, m_backend.lineState, m_backend.storedLists, m_backend.management,
                    m_backend.database, m_backend.version}),
          m_calls(m_backend.storedEntries, m_backend.numbers),
          m_liveCalls({m_backend.callControl, m_backend.dialling, m_backend.phonebook, m_backend.numbers,
                       m_backend.lineState}),
          m_statistics(m_backend.database, m_backend.line, m_backend.storedEntries.sources().digits,
                       m_backend.numbers),
          m_parties({m_backend.database, m_backend.line, m_backend.storedEntries.sources().digits,
                     m_backend.phonebook, m_backend.numbers}),
          m_feed([this](std::function<void()> work) { m_server.post(std::move(work)); },
                 [this](std::chrono::milliseconds pause, std::function<void()> work) {
                     m_server.postLater(pause, std::move(work));
                 },
                 [this](std::function<void()> work) { m_eventStrand.post(std::move(work)); }, {},
                 {[this](const std::vector<EventFeed::EntryKey>& keys) {
                      return m_backend.storedLists.entries(keys).value_or(std::vector<Json>());
                  },
                  [this] { return m_backend.storedLists.unviewed(); },
                  [this] { return m_liveCalls.list(PlaceLanguage::eEnglish); },
                  [this](const std::string& number) { return m_backend.numbers.text(number); }}),
          m_isSecure(settings.server.certificate != nullptr),
          m_server(settings.server) {
        m_lists.addRoutes(m_router);
        m_import.addRoutes(m_router);
        m_settings.addRoutes(m_router);
        m_contacts.addRoutes(m_router);
        m_times.addRoutes(m_router);
        m_calls.addRoutes(m_router);
        m_liveCalls.addRoutes(m_router);
        m_statistics.addRoutes(m_router);
        m_parties.addRoutes(m_router);
        m_status.addRoutes(m_router);
        m_tokensResource.addRoutes(m_router);
        addSessionRoutes(m_authenticator, m_router);
        m_router.add(
            {"GET", "/metrics", Scope::eMetrics, [this](const HttpRequest& /*each*/) { return metrics(); }});
        m_router.add({"GET",
                      "/api/v1/events",
                      Scope::eRead,
                      [this](const HttpRequest& each) { return events(each); },
                      {"ticket"}});
        m_router.add({"POST", "/api/v1/tickets", Scope::eRead,
                      [this](const HttpRequest& each) { return ticket(each); }});
        m_router.add({"GET", "/api/v1/openapi.json", Scope::eNone,
                      [](const HttpRequest& /*each*/) { return openApiResponse(); }});
    }
    ~Impl() { stop(); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    Endpoint start() {
        // A subscription makes the journal load its lists. No client may read them before they are loaded.
        m_backend.journal.subscribeForJournalEvents(&m_observers);
        m_subscribed = true;
        return m_server.start(
            {[this](const HttpRequest& request) { return m_pipeline.handle(request); },
             [this](const HttpRequest& request) { return m_authenticator.isTrusted(request); },
             [this](HttpRequest request) { return m_pipeline.mayBeLong(std::move(request)); },
             [this](const Endpoint& where) { m_authenticator.setListenAddress(where, m_isSecure); },
             [this] { m_feed.keepAlive(); }});
    }

    void stop() {
        if (std::exchange(m_subscribed, false)) {
            m_backend.journal.unsubscribeForJournalEvents(&m_observers);
        }
        m_eventStrand.close();
        m_server.post([this] { m_feed.close(); });
        m_server.stop();
        m_import.stop();
    }

    void reloadTokens() { static_cast<void>(m_tokens.load()); }

    [[nodiscard]] const Router& router() const noexcept { return m_router; }
    void resync() { m_feed.resync(); }
    void liveCallsChanged() { m_feed.liveCallsChanged(); }

private:
    HttpResponse ticket(const HttpRequest& request) {
        const std::string ticket = m_tickets.issue(request.access, Tickets::Clock::now());
        return jsonResponse({{"ticket", ticket}, {"seconds", Tickets::kLifetime.count()}}, 201);
    }

    HttpResponse events(const HttpRequest& request) {
        HttpResponse response;
        if (request.method == "GET") {
            response.stream = m_feed.open(request.header("last-event-id"), mayGoOn(request.access));
            if (response.stream == nullptr) {
                throw HttpError(503, "too-many-streams", "there are too many event streams");
            }
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
            m_checksStreams = m_feed.endRefused();
            if (m_checksStreams) {
                checkStreamsLater();
            }
        });
    }

    HttpResponse metrics() {
        const LineState state = m_backend.lineState();
        HttpResponse response;
        response.contentType = "text/plain; version=0.0.4; charset=utf-8";
        response.body = m_backend.metrics.text(
            {.switchConnected = state.connected,
             .lineMonitored = state.monitoring,
             .liveCallCount = state.liveCallCount,
             .observers = {{"http", m_feed.streamCount()}, {"remote", m_backend.remoteClients()}},
             .entries = m_status.entries(),
             .unviewed = m_status.unviewed(),
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
    ListsResource m_lists;
    ImportResource m_import;
    SettingsResource m_settings;
    ContactsResource m_contacts;
    TimesResource m_times;
    StatusResource m_status;
    CallsResource m_calls;
    LiveCallsResource m_liveCalls;
    StatisticsResource m_statistics;
    PartiesResource m_parties;
    TokensResource m_tokensResource{m_tokens, m_backend.line};
    Router m_router;
    RequestPipeline m_pipeline{m_authenticator, m_router, m_page, m_backend.line,
                               [this](const RequestReport& each) { m_backend.metrics.requestHandled(each); }};
    EventFeed m_feed;
    ObserverPair m_observers{m_backend.metrics, m_feed};
    const bool m_isSecure;
    HttpServer m_server;
    WorkerPool m_eventWorkers{1};
    Strand m_eventStrand{m_eventWorkers};
    bool m_subscribed = false;
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

void HttpApi::resync() {
    m_impl->resync();
}

void HttpApi::liveCallsChanged() {
    m_impl->liveCallsChanged();
}

}  // namespace host
