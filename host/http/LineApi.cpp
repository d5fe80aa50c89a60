#include "host/http/LineApi.h"

#include <mutex>
#include <nlohmann/json.hpp>
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

}  // namespace

/// The components in dependency order.
class LineApi::Impl {
public:
    Impl(LineBackend backend, LineApiServer server)
        : m_backend(std::move(backend)),
          m_server(std::move(server)),
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
          m_kept(std::make_shared<KeptFeed>(
              m_server, m_backend.line,
              EventFeed::Stored{
                  [this](const std::vector<EventFeed::EntryKey>& keys) {
                      return m_backend.storedLists.entries(keys).value_or(std::vector<Json>());
                  },
                  [this] { return m_backend.storedLists.unviewed(); },
                  [this] { return m_liveCalls.list(PlaceLanguage::eEnglish); },
                  [this](const std::string& number) { return m_backend.numbers.text(number); }})) {
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
        m_router.add({"GET",
                      "/api/v1/events",
                      Scope::eRead,
                      [this](const HttpRequest& each) { return events(each); },
                      {"lines", "ticket"}});
    }
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
        m_import.stop();
    }

    void endStreams() {
        m_server.post([kept = m_kept] { kept->feed.close(); });
    }

    [[nodiscard]] const Router& router() const noexcept { return m_router; }
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
    Router m_router;
    const std::shared_ptr<KeptFeed> m_kept;
    bool m_isStarted = false;
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

const Router& LineApi::router() const noexcept {
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
