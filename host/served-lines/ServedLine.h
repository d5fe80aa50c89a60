#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "host/http/LineApi.h"
#include "host/http/Metrics.h"
#include "host/journal-events/EventQueue.h"
#include "host/line/Line.h"
#include "host/remote/RemoteBackend.h"
#include "host/stored-lists/CallDeletion.h"
#include "host/stored-lists/EntryNames.h"
#include "host/stored-lists/HistoryMaintenance.h"
#include "host/stored-lists/Retention.h"
#include "host/stored-lists/StoredEntries.h"

namespace host {

class Database;
class LibraryLoader;
class TimerSource;
class WorkerPool;

/// The parts of a process that its lines share. Everything is borrowed and outlives them.
struct LineSurroundings {
    Database& database;
    LiveCallWriter& liveCalls;
    WorkerPool& pool;
    TimerSource& timers;
    const LibraryLoader& library;
    Metrics& metrics;
    /// The version of the program.
    std::string version{};
    /// The events that some webhook wants; empty without a webhook.
    std::set<JournalEventKind> webhookEvents{};
    /// Called after an event for webhooks is stored; must not block.
    std::function<void()> webhookEventStored{};
    /// The state of the telephone that the program runs; std::nullopt if it runs none.
    std::function<std::optional<TelephoneState>()> telephone{};
};

/// A line with everything that serves it: its journal, what changes its stored calls, and its HTTP API, which
/// is made when the first request needs it.
///
/// Threads: one thread at a time starts and stops it. Any thread may call the rest between.
class ServedLine {
public:
    struct Description {
        std::string device;
        std::string name{};
        std::string switchName{};
        bool isConfigured = true;
        /// The time for which calls are kept; 0 for ever.
        std::chrono::days keep{0};
    };

    /// Throws a `std::exception` with a text for the user. `settings.events` is replaced.
    ServedLine(Description description, LineSettings settings, const LineSurroundings& surroundings);
    /// Calls `stop`.
    ~ServedLine();
    ServedLine(const ServedLine&) = delete;
    ServedLine& operator=(const ServedLine&) = delete;

    [[nodiscard]] const Description& description() const noexcept { return m_description; }
    [[nodiscard]] Line& line() noexcept { return m_line; }
    [[nodiscard]] const Line& line() const noexcept { return m_line; }

    /// Returns when the journal is loaded. The monitor is started asynchronously.
    void start();
    /// Ends its use of the link. Requests of clients that wait for the switch fail. Idempotent.
    void disconnect() { m_line.disconnect(); }
    /// Ends the API, then the line. Waits until no request uses it, and no remote client. Idempotent.
    void stop();

    /// The API, made with the first call; it is not stopped while the result lives. nullptr from the begin of
    /// `stop` on.
    [[nodiscard]] std::shared_ptr<LineApi> api(const LineApiServer& server);
    /// The API if it was made. The same holds.
    [[nodiscard]] std::shared_ptr<LineApi> usedApi();

    /// The line for remote clients; it is not stopped while the result lives. nullptr from the begin of
    /// `stop` on.
    [[nodiscard]] std::shared_ptr<RemoteLine> remote();

    /// Renames the entries, on the calling thread, as the phonebook is now.
    void renameEntries();
    /// See `Line::unloadLists`. Does not block.
    void unloadLists(std::chrono::milliseconds idle);

    /// Makes the readers of its event streams read again. Does not block.
    void resync();

private:
    /// Counts a use of one of the parts below, which are never replaced.
    template <typename Part>
    [[nodiscard]] std::shared_ptr<Part> use(Part* part);
    [[nodiscard]] LineBackend backend();
    [[nodiscard]] LineState state() const;
    /// Calls a function with the API if there is one.
    void withApi(const std::function<void(LineApi&)>& call);

    const Description m_description;
    Database& m_database;
    const std::function<std::optional<TelephoneState>()> m_telephone;
    const std::string m_version;
    const std::unique_ptr<EventQueue> m_events;
    Line m_line;
    LineMetrics m_metrics;
    StoredEntries m_entries;
    CallDeletion m_callDeletion{m_entries};
    Retention m_retention;
    EntryNames m_names{m_entries};
    HistoryMaintenance m_maintenance;
    bool m_isStarted = false;

    std::mutex m_useMutex;
    std::condition_variable m_unused;
    // Guarded by m_useMutex.
    std::unique_ptr<LineApi> m_api;
    std::unique_ptr<RemoteLine> m_remote;
    std::size_t m_uses = 0;
    bool m_isEnding = false;
};

}  // namespace host
