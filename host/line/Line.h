#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "host/clock/SystemClock.h"
#include "host/csta/CstaLink.h"
#include "host/data/SqliteDataAccess.h"
#include "host/digits/DigitAnalysis.h"
#include "host/directory/Phonebook.h"
#include "host/framework/HostedService.h"
#include "host/framework/LineContext.h"
#include "host/framework/Strand.h"
#include "host/line/JournalLogObserver.h"
#include "host/line/LineSettings.h"
#include "host/line/LiveCalls.h"
#include "host/management/LocalManagement.h"
#include "host/services/AbsentServices.h"
#include "host/services/Team.h"
#include "platform/framework/Service.h"

namespace host {

class AlarmClock;
class Database;
class WorkerPool;

/// One telephone line: its strand, its context, a real part behind every platform interface, and the journal service
/// that uses them.
///
/// The road up (`start`): the parts are registered under their names and initialised; the journal is initialised on the
/// strand; the log observer subscribes, which loads the lists; the link begins to connect.
/// The road down (`stop`): the link ends, so nothing more is posted; what was posted is done; the observer and the
/// journal leave everything they were registered with; the journal and then the parts are shut down, in reverse order.
/// All of it runs on the strand, so the journal meets no event and no timer afterwards.
///
/// Threads: made, started and stopped by one thread, which is none of the pool's.
class Line {
public:
    /// All is borrowed and outlives the line, the library that `journal` comes from included. Throws `DatabaseError` when
    /// stored settings cannot be read.
    Line(const LineSettings& settings, std::unique_ptr<Service> journal, Database& database, WorkerPool& pool,
         AlarmClock& alarms);
    /// Stops the line if it still runs.
    ~Line();
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    /// Called on a thread of the link's after each change; it must not block. Before `start`.
    void setStatusListener(CstaLink::StatusListener listener);
    /// Told of every event of the switch by its name on the wire, likewise.
    void setEventListener(std::function<void(std::string_view)> listener) {
        m_eventListener = std::move(listener);
    }

    /// Told every change of the journal in a sentence. Before `start`.
    void setChangeListener(JournalLogObserver::Listener listener) {
        m_observer.setListener(std::move(listener));
    }

    void start();
    /// Remote clients have to be gone. Idempotent.
    void stop();

    /// The journal; null after `stop`.
    [[nodiscard]] Service* journal() const noexcept { return m_journal.service(); }
    /// The line's settings; any thread, as long as the line lives.
    [[nodiscard]] LocalManagement& management() noexcept { return m_management; }
    /// The line's phonebook; likewise.
    [[nodiscard]] Phonebook& phonebook() noexcept { return m_phonebook; }
    /// How the link to the switch is, and how many calls are up; likewise.
    [[nodiscard]] CstaLink::Status linkStatus() const noexcept { return m_link.status(); }
    [[nodiscard]] std::size_t callsUp() const { return m_liveCalls.count(); }

private:
    struct NamedService {
        const char* name;
        Executable& executable;
    };

    /// Posts to the strand; what comes when that is closed is dropped.
    [[nodiscard]] std::function<void(std::function<void()>)> post() const;
    /// The settings of the link, with the line as its listener.
    [[nodiscard]] CstaLinkConfig withEventListener(CstaLinkConfig link);
    void subscribeObserver();
    void releaseJournal();

    // In the order in which each needs the ones before it.
    Strand m_strand;
    LineContext m_context;
    SystemClock m_clock;
    DigitAnalysis m_digits;
    Phonebook m_phonebook;
    SqliteDataAccess m_dataAccess;
    LocalManagement m_management;
    Mobility m_mobility;
    Team m_team;
    UnifiedCommunications m_unifiedCommunications;
    PallaxClient m_pallax;
    WebServices m_webServices;
    LiveCalls m_liveCalls;
    std::function<void(std::string_view)> m_eventListener;
    CstaLink::StatusListener m_statusListener;
    CstaLink m_link;
    JournalLogObserver m_observer;
    HostedService m_journal;

    // Constant after construction.
    const std::vector<NamedService> m_services;

    // The owner's.
    bool m_started = false;
};

}  // namespace host
