#include "host/served-lines/ServedLine.h"

#include <string_view>
#include <utility>

#include "host/framework/LibraryLoader.h"
#include "journalservice/JournalServiceIfc.h"

namespace host {
namespace {

/// Null without a webhook.
std::unique_ptr<EventQueue> eventQueue(const std::string& device, const LineSurroundings& surroundings) {
    if (surroundings.webhookEvents.empty()) {
        return nullptr;
    }
    auto queue = std::make_unique<EventQueue>(device, surroundings.webhookEvents);
    queue->setListener(surroundings.webhookEventStored);
    return queue;
}

LineSettings withEvents(LineSettings settings, const EventQueue* events) {
    settings.events = events;
    return settings;
}

}  // namespace

ServedLine::ServedLine(Description description, LineSettings settings, const LineSurroundings& surroundings)
    : m_description(std::move(description)),
      m_database(surroundings.database),
      m_telephone(surroundings.telephone),
      m_version(surroundings.version),
      m_events(eventQueue(m_description.device, surroundings)),
      m_line(withEvents(std::move(settings), m_events.get()), surroundings.library.createJournalService(),
             surroundings.database, surroundings.liveCalls, surroundings.pool, surroundings.timers),
      m_metrics(surroundings.metrics, m_description.device),
      m_entries({dynamic_cast<JournalServiceIfc&>(*m_line.journal()), surroundings.database,
                 m_description.device, &m_line.digits(), [this] { resync(); },
                 [this] { return m_line.management().aheadOfUtc(); }, m_events.get()}),
      m_retention(m_entries, m_callDeletion, m_description.keep),
      m_maintenance(surroundings.pool, surroundings.timers, m_retention, m_names) {
    m_line.observers().add(m_metrics);
    m_line.setEventListener(
        [&metrics = surroundings.metrics](std::string_view kind) { metrics.switchEvent(kind); });
    m_line.setCallsListener([this] { withApi([](LineApi& api) { api.liveCallsChanged(); }); });
    m_line.phonebook().setChangeListener([this] { m_maintenance.phonebookChanged(); });
}

ServedLine::~ServedLine() {
    stop();
}

void ServedLine::start() {
    m_isStarted = true;
    m_line.start();
    m_maintenance.start();
}

void ServedLine::stop() {
    if (!std::exchange(m_isStarted, false)) {
        return;
    }
    disconnect();
    m_maintenance.stop();
    std::unique_ptr<LineApi> api;
    {
        std::unique_lock lock(m_useMutex);
        m_isEnding = true;
        m_unused.wait(lock, [this] { return m_uses == 0; });
        api = std::move(m_api);
    }
    if (api) {
        api->stop();
    }
    m_line.stop();
}

void ServedLine::renameEntries() {
    std::shared_ptr<HistoryMaintenance> used;
    {
        const std::lock_guard lock(m_useMutex);
        used = use(&m_maintenance);
    }
    if (used) {
        used->rename();
    }
}

void ServedLine::unloadLists(std::chrono::milliseconds idle) {
    const std::lock_guard lock(m_useMutex);
    if (!m_isEnding) {
        m_line.unloadLists(idle);
    }
}

std::shared_ptr<LineApi> ServedLine::api(const LineApiServer& server) {
    const std::lock_guard lock(m_useMutex);
    if (!m_isEnding && !m_api) {
        m_api = std::make_unique<LineApi>(backend(), server);
        m_api->start();
    }
    return use(m_api.get());
}

std::shared_ptr<LineApi> ServedLine::usedApi() {
    const std::lock_guard lock(m_useMutex);
    return use(m_api.get());
}

std::shared_ptr<RemoteLine> ServedLine::remote() {
    const std::lock_guard lock(m_useMutex);
    if (!m_isEnding && !m_remote) {
        m_remote = std::make_unique<RemoteLine>(*m_line.journal(),
                                                [this] { return m_line.storedLists().unviewed(); });
    }
    return use(m_remote.get());
}

/// Requires: m_useMutex is held.
template <typename Part>
std::shared_ptr<Part> ServedLine::use(Part* part) {
    if (m_isEnding || part == nullptr) {
        return nullptr;
    }
    ++m_uses;
    return {part, [this](Part* /*part*/) {
                const std::lock_guard lock(m_useMutex);
                if (--m_uses == 0) {
                    m_unused.notify_all();
                }
            }};
}

void ServedLine::withApi(const std::function<void(LineApi&)>& call) {
    if (const std::shared_ptr<LineApi> api = usedApi()) {
        call(*api);
    }
}

void ServedLine::resync() {
    withApi([](LineApi& api) { api.resync(); });
}

LineBackend ServedLine::backend() {
    return {m_description.device, m_line.management(),        m_line.phonebook(),
            m_database,           m_line.storedLists(),       m_entries,
            m_line.observers(),   m_line.callControl(),       m_line.dialling(),
            m_line.numberTexts(), [this] { return state(); }, m_version};
}

LineState ServedLine::state() const {
    const CstaLink::Status status = m_line.linkStatus();
    return {.connected = status.connected,
            .monitoring = status.monitoring,
            .callControl = status.callControl,
            .liveCallCount = m_line.liveCallCount(),
            .telephone = m_telephone ? m_telephone() : std::nullopt};
}

}  // namespace host
