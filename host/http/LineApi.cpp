#include "host/http/LineApi.h"

#include <mutex>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>
#include <vector>

#include "host/http/messages/HttpError.h"
#include "host/http/resources/CallsResource.h"
#include "host/http/resources/ContactsResource.h"
#include "host/http/resources/ImportResource.h"
#include "host/http/resources/ListsResource.h"
#include "host/http/resources/LiveCallsResource.h"
#include "host/http/resources/PartiesResource.h"
#include "host/http/resources/SettingsResource.h"
#include "host/http/resources/StatisticsResource.h"
#include "host/http/resources/TimesResource.h"
#include "host/line/ObserverFan.h"
#include "host/stored-lists/StoredEntries.h"
#include "host/stored-lists/StoredLists.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;

/// Carries out work until it is closed.
class Closable {
public:
    void run(const std::function<void()>& work) {
        const std::lock_guard lock(m_mutex);
        if (!m_isClosed) {
            work();
        }
    }
    /// Waits for the work that runs.
    void close() {
        const std::lock_guard lock(m_mutex);
        m_isClosed = true;
    }

private:
    std::mutex m_mutex;
    // Guarded by m_mutex.
    bool m_isClosed = false;
};

/// The feed with what posts to it. The posted work keeps the feed, so that it may outlive its line.
struct KeptFeed : std::enable_shared_from_this<KeptFeed> {
    KeptFeed(const LineApiServer& server, const std::string& line, EventFeed::Stored stored)
        : feed([this, post = server.post](std::function<void()> work) { post(keeping(std::move(work))); },
               [this, postLater = server.postLater](std::chrono::milliseconds pause,
                                                    std::function<void()> work) {
                   postLater(pause, keeping(std::move(work)));
               },
               [this, runAside = server.runAside](std::function<void()> work) {
                   runAside([this, kept = keeping(std::move(work))] { reads.run(kept); });
               },
               {}, std::move(stored), server.readerOf(line)) {}

    std::function<void()> keeping(std::function<void()> work) {
        return [self = weak_from_this().lock(), work = std::move(work)] { work(); };
    }

    /// Closed when the line's lists can be read no more.
    Closable reads;
    EventFeed feed;
};

/// The resources of a line with their routes, in dependency order.
struct Resources {
    using Events = std::function<HttpResponse(const HttpRequest&)>;

    Resources(const LineBackend& backend, LiveCallsResource& liveCalls, const std::function<void()>& resync,
              const Events& events)
        : lists(backend.storedLists, backend.storedEntries),
          import(backend.storedEntries),
          settings(backend.management, backend.database, resync),
          contacts(backend.phonebook, backend.numbers),
          times({backend.line, backend.database}),
          status({backend.line, backend.lineState, backend.storedLists, backend.management, backend.database,
                  backend.version}),
          calls(backend.storedEntries, backend.numbers),
          statistics(backend.database, backend.line, backend.storedEntries.sources().digits, backend.numbers),
          parties({backend.database, backend.line, backend.storedEntries.sources().digits, backend.phonebook,
                   backend.numbers}) {
        lists.addRoutes(router);
        import.addRoutes(router);
        settings.addRoutes(router);
        contacts.addRoutes(router);
        times.addRoutes(router);
        calls.addRoutes(router);
        liveCalls.addRoutes(router);
        statistics.addRoutes(router);
        parties.addRoutes(router);
        status.addRoutes(router);
        router.add({"GET", "/api/v1/events", Scope::eRead, events, {"lines", "ticket"}});
    }

    ListsResource lists;
    ImportResource import;
    SettingsResource settings;
    ContactsResource contacts;
    TimesResource times;
    StatusResource status;
    CallsResource calls;
    StatisticsResource statistics;
    PartiesResource parties;
    Router router;
};

}  // namespace

/// A line of which only the events are read, in the stream of all lines, has no resources.
class LineApi::Impl {
public:
    Impl(LineBackend backend, LineApiServer server)
        : m_backend(std::move(backend)),
          m_server(std::move(server)),
          m_liveCalls({m_backend.callControl, m_backend.dialling, m_backend.phonebook, m_backend.numbers,
                       m_backend.lineState}),
          m_kept(std::make_shared<KeptFeed>(
              m_server, m_backend.line,
              EventFeed::Stored{
                  [this](const std::vector<EventFeed::EntryKey>& keys) {
                      return m_backend.storedLists.entries(keys).value_or(std::vector<Json>());
                  },
                  [this] { return m_backend.storedLists.unviewed(); },
                  [this] { return m_liveCalls.list(PlaceLanguage::eEnglish); },
                  [this](const std::string& number) { return m_backend.numbers.text(number); }})) {}
    ~Impl() { stop(); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    void start() {
        m_backend.observers.add(m_kept->feed);
        m_isStarted = true;
    }

    void stop() {
        if (!std::exchange(m_isStarted, false)) {
            return;
        }
        m_backend.observers.remove(m_kept->feed);
        m_kept->reads.close();
        endStreams();
        if (m_resources) {
            m_resources->import.stop();
        }
    }

    void endStreams() {
        m_server.post([kept = m_kept] { kept->feed.close(); });
    }

    [[nodiscard]] const Router& router() {
        std::call_once(m_resourcesMade, [this] {
            m_resources.emplace(
                m_backend, m_liveCalls, [this] { resync(); },
                [this](const HttpRequest& each) { return events(each); });
        });
        return m_resources->router;
    }
    [[nodiscard]] EventFeed& feed() const noexcept { return m_kept->feed; }
    void resync() { feed().resync(); }

private:
    HttpResponse events(const HttpRequest& request) {
        if (const std::string& lines = request.queryValue("lines"); lines == "all") {
            return m_server.allEvents(request);
        } else if (!lines.empty()) {
            throw HttpError(400, "bad-parameter", "lines must be all, or be left out");
        }
        HttpResponse response;
        if (request.method == "GET") {
            response.stream =
                feed().open(request.header("last-event-id"), m_server.mayGoOn(request.access), m_kept);
            if (response.stream == nullptr) {
                throw HttpError(503, "too-many-streams", "there are too many event streams");
            }
        }
        response.contentType = "text/event-stream";
        return response;
    }

    const LineBackend m_backend;
    const LineApiServer m_server;
    LiveCallsResource m_liveCalls;
    const std::shared_ptr<KeptFeed> m_kept;
    bool m_isStarted = false;
    std::once_flag m_resourcesMade;
    std::optional<Resources> m_resources;
};

LineApi::LineApi(LineBackend backend, LineApiServer server)
    : m_impl(std::make_unique<Impl>(std::move(backend), std::move(server))) {}

LineApi::~LineApi() = default;

void LineApi::start() {
    m_impl->start();
}

void LineApi::stop() {
    m_impl->stop();
}

void LineApi::endStreams() {
    m_impl->endStreams();
}

const Router& LineApi::router() const {
    return m_impl->router();
}

void LineApi::resync() {
    m_impl->resync();
}

void LineApi::liveCallsChanged() {
    m_impl->feed().liveCallsChanged();
}

std::size_t LineApi::streamCount() const noexcept {
    return m_impl->feed().streamCount();
}

void LineApi::keepAlive() {
    m_impl->feed().keepAlive();
}

bool LineApi::endRefused() {
    return m_impl->feed().endRefused();
}

}  // namespace host
