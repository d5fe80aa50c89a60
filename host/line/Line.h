#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/clock/SystemClock.h"
#include "host/csta/CstaLink.h"
#include "host/data/LiveCallStore.h"
#include "host/data/SqliteDataAccess.h"
#include "host/digits/Dialling.h"
#include "host/digits/DigitAnalysis.h"
#include "host/digits/NumberPatterns.h"
#include "host/digits/NumberTexts.h"
#include "host/directory/Phonebook.h"
#include "host/framework/HostedService.h"
#include "host/framework/LineContext.h"
#include "host/framework/Strand.h"
#include "host/line/JournalLogObserver.h"
#include "host/line/LineSettings.h"
#include "host/line/ObserverFan.h"
#include "host/management/LocalManagement.h"
#include "host/services/AbsentServices.h"
#include "host/services/Team.h"
#include "host/stored-lists/StoredLists.h"
#include "platform/framework/Service.h"

class JournalListMemoryIfc;

namespace host {

class TimerSource;
class Database;
class WorkerPool;

/// One telephone line: its strand, its context, an implementation of every platform interface, and the
/// journal service that uses them.
///
/// Start-up sequence (`start`):
///  1. The services are registered under their names and initialised.
///  2. The journal is initialised on the strand.
///  3. The management announces its values, so that each has its effect.
///  4. The log observer subscribes, which loads the lists unless they are loaded at first need.
///  5. The link begins to connect.
///
/// Shut-down sequence (`stop`):
///  1. The link ends, so nothing more is posted (`disconnect`). Posted work is completed.
///  2. The observer and the journal are removed from everything with which they were registered.
///  3. The journal and then the services are shut down, in reverse order.
///
/// All of this runs on the strand, so no event and no timer reaches the journal afterwards.
///
/// Threads: one thread creates, starts and stops it. This thread must not belong to the pool.
class Line {
public:
    /// Throws `DatabaseError` if stored settings cannot be read. Requires: the database, the writer, the
    /// pool, the clock and the library of `journal` outlive the line.
    Line(const LineSettings& settings, std::unique_ptr<Service> journal, Database& database,
         LiveCallWriter& liveCalls, WorkerPool& pool, TimerSource& timerSource);
    /// Stops the line if it still runs.
    ~Line();
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    // The listeners. Call before `start`.

    /// The link calls `listener` after each change of its status, on a thread of its own. It must not block.
    void setStatusListener(CstaLink::StatusListener listener);
    /// The link calls `listener` with the wire name of every event of the switch, on a thread of its own. It
    /// must not block.
    void setEventListener(std::function<void(std::string_view)> listener) {
        m_eventListener = std::move(listener);
    }

    /// The link calls `listener` when the live calls may have changed, on a thread of its own. It must not
    /// block.
    void setCallsListener(std::function<void()> listener) { m_link.setCallsListener(std::move(listener)); }

    /// Receives a sentence for every change of the journal.
    void setChangeListener(JournalLogObserver::Listener listener) { m_log.setListener(std::move(listener)); }

    void start();
    /// Ends the link to the switch: a request that waits for a response fails at once, and so does each later
    /// one. Events that wait are applied for two more seconds; later ones are dropped. Call it before the
    /// clients are stopped, whose requests may wait. Idempotent.
    void disconnect();
    /// Requires: no remote client is connected. Idempotent.
    void stop();

    /// Returns nullptr after `stop`.
    [[nodiscard]] Service* journal() const noexcept { return m_journal.service(); }

    // Any thread may call these, as long as the line lives.

    /// The observers of the journal. One that is added is notified of later changes only.
    [[nodiscard]] ObserverFan& observers() noexcept { return m_observers; }
    [[nodiscard]] LocalManagement& management() noexcept { return m_management; }
    [[nodiscard]] Phonebook& phonebook() noexcept { return m_phonebook; }
    [[nodiscard]] DigitAnalysis& digits() noexcept { return m_digits; }
    [[nodiscard]] NumberTexts& numberTexts() noexcept { return m_numberTexts; }
    [[nodiscard]] const Dialling& dialling() const noexcept { return m_dialling; }
    /// Not the link's own thread.
    [[nodiscard]] CallControlIfc& callControl() noexcept { return m_link; }
    [[nodiscard]] const StoredLists& storedLists() const noexcept { return m_storedLists; }
    [[nodiscard]] CstaLink::Status linkStatus() const noexcept { return m_link.status(); }
    /// Frees the memory of the journal's lists, asynchronously, if there is no live call and the switch has
    /// sent no event for at least that time. Has no effect on a line whose lists are not loaded at first
    /// need.
    void unloadLists(std::chrono::milliseconds idle);
    /// Returns the number of live calls that the journal knows of.
    [[nodiscard]] std::size_t liveCallCount() const noexcept { return m_link.callCount(); }

private:
    struct NamedService {
        const char* name;
        Executable& executable;
    };

    using Clock = std::chrono::steady_clock;

    /// Returns a function that posts to the strand, and drops the work if the strand is closed.
    [[nodiscard]] std::function<void(std::function<void()>)> post() const;
    /// Returns `post` for events of the switch, which drops them from `m_eventsEnd` on.
    [[nodiscard]] CstaLink::Post eventPost(CstaLink::Post post);
    /// The same on the thread of the link that read them: it carries out what the strand holds, and then the
    /// events, itself.
    [[nodiscard]] CstaLink::PostHere eventPostHere();
    /// Returns `link` with the event listener and the store of this line.
    [[nodiscard]] CstaLinkConfig completed(CstaLinkConfig link);
    [[nodiscard]] bool isIdle(std::chrono::milliseconds time) const noexcept;
    void subscribeObserver();
    void releaseJournal();

    // Any thread: the time from which events are dropped, and their number. They outlive the strand.
    std::atomic<Clock::time_point> m_eventsEnd{Clock::time_point::max()};
    std::atomic<std::size_t> m_droppedEvents{0};
    // Any thread: the time of the last event.
    std::atomic<Clock::time_point> m_lastEvent{Clock::time_point::min()};

    // In dependency order.
    Strand m_strand;
    LineContext m_context;
    SystemClock m_clock;
    DigitAnalysis m_digits;
    NumberPatterns m_neverLog;
    NumberTexts m_numberTexts;
    Dialling m_dialling;
    Phonebook m_phonebook;
    LiveCallStore m_liveCallStore;
    SqliteDataAccess m_dataAccess;
    StoredLists m_storedLists;
    LocalManagement m_management;
    Mobility m_mobility;
    Team m_team;
    UnifiedCommunications m_unifiedCommunications;
    PallaxClient m_pallax;
    WebServices m_webServices;
    std::function<void(std::string_view)> m_eventListener;
    CstaLink::StatusListener m_statusListener;
    CstaLink m_link;
    JournalLogObserver m_log;
    ObserverFan m_observers;
    HostedService m_journal;
    /// Of the journal; null if it has none, or keeps its lists.
    JournalListMemoryIfc* const m_listMemory;

    // Constant after construction.
    const std::vector<NamedService> m_services;

    // Used by the owner's thread only.
    bool m_started = false;
};

}  // namespace host
