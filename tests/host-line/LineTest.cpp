#include "host/line/Line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "host/data/Database.h"
#include "host/framework/AsioAlarmClock.h"
#include "host/framework/WorkerPool.h"
#include "host/switch/SwitchSimulator.h"
#include "include/JournalServiceObserverSubscriptionIfc.h"
#include "platform/clock/ClockServiceIfc.h"
#include "platform/csta/CSTADevice.h"
#include "platform/csta/CSTAEvent.h"
#include "platform/csta/CSTAEventIfc.h"
#include "platform/csta/CSTARequests.h"
#include "platform/csta/CSTAServiceIfc.h"
#include "platform/data/DataAccessServiceIfc.h"
#include "platform/digits/DigitAnalysisServiceIfc.h"
#include "platform/directory/DirectoryServiceIfc.h"
#include "platform/management/LocalMgmtIfc.h"
#include "platform/management/ManageableData.h"
#include "platform/management/MgmtAgentIfc.h"
#include "platform/services/MobilityServiceIfc.h"
#include "platform/services/PallaxServiceIfc.h"
#include "platform/services/TeamServiceIfc.h"
#include "platform/services/UCServiceIfc.h"
#include "platform/services/WSIServiceIfc.h"
#include "tests/support/TemporaryDirectory.h"

namespace host {
namespace {

using ::testing::ElementsAre;

/// What happened to a journal, in order. Outlives it.
class Diary {
public:
    void note(const std::string& what) {
        const std::lock_guard lock(m_mutex);
        m_notes.push_back(what);
    }
    [[nodiscard]] std::vector<std::string> notes() const {
        const std::lock_guard lock(m_mutex);
        return m_notes;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_notes;
};

/// A service that is registered everywhere where the journal is: with the switch, the management, its context's timers.
class SmallJournal final : public Service,
                           public CSTAEventIfc,
                           public JournalServiceObserverSubscriptionIfc,
                           public MgmtAgentIfc {
public:
    SmallJournal(Diary& diary, std::atomic<int>& events) : m_diary(diary), m_events(events) {}
    ~SmallJournal() override { m_diary.note("destroyed"); }

    void init(Context& context) override;
    void run() override {}
    void shutdown() override { m_diary.note("shutdown"); }
    void timerEvent(int id) override {
        ++m_events;
        m_context->startTimer(id);
    }

    void deliverEvent(CSTAEvent*) override { ++m_events; }

    bool subscribeForJournalEvents(JournalServiceObserverIfc*) override {
        m_diary.note("subscribed");
        return true;
    }
    bool unsubscribeForJournalEvents(JournalServiceObserverIfc*) override {
        m_diary.note("unsubscribed");
        return true;
    }

    bool setData(ManageableData&) override { return true; }
    bool getData(ManageableData&) override { return true; }
    void manageableDataChanged(ManageableData&) override { ++m_events; }
    bool resetUserData() override { return true; }

private:
    template <typename Interface>
    Interface* find(const char* name) {
        auto* const found = dynamic_cast<Interface*>(m_context->findService(name));
        if (found == nullptr) {
            m_diary.note(std::string("lacks ") + name);
        }
        return found;
    }
    void findAll();

    Diary& m_diary;
    std::atomic<int>& m_events;
    Context* m_context = nullptr;
};

void SmallJournal::init(Context& context) {
    m_diary.note("init");
    m_context = &context;
    findAll();
    auto* const management = find<LocalMgmtIfc>("LocalMgmtIfc");
    management->registerAgent("JournalMgmtId", *this, 1);
    management->observe("software-type", *this);
    auto* const link = find<CSTAServiceIfc>("CSTAServiceIfc");
    CSTAMonitorStartRequest request;
    request.setDeviceObject(CSTADevice::kLocalDevice);
    request.setSourceService(this);
    request.setCSTAEventIfc(this);
    link->request(request);
    // A timer that is always due: were one delivered too late, the destroyed service would be called.
    context.startTimer(context.createTimer(*this, 0));
}

void SmallJournal::findAll() {
    find<DataAccessServiceIfc>("DataAccessServiceIfc");
    find<DirectoryServiceIfc>("DirectoryServiceIfc");
    find<ClockServiceIfc>("ClockServiceIfc");
    find<DigitAnalysisServiceIfc>("DigitAnalysisServiceIfc");
    find<MobilityServiceIfc>("MobilityServiceIfc");
    find<TeamServiceIfc>("TeamServiceIfc");
    find<UCServiceIfc>("UCServiceIfc");
    find<PallaxServiceIfc>("PallaxServiceIfc");
    find<WSIServiceIfc>("WSIServiceIfc");
}

class LineTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_switch.start();
        m_settings.link.port = m_switch.port();
        m_settings.managementFirst = {{"software-type", "Norlith Qorvex"}};
        m_line = std::make_unique<Line>(m_settings, std::make_unique<SmallJournal>(m_diary, m_events),
                                        m_database, m_pool, m_alarms);
        m_line->setStatusListener([this](CstaLink::Status status) { m_monitoring = status.monitoring; });
    }

    /// A value that another thread sets and a test waits for.
    class Flag {
    public:
        void operator=(bool value) {
            const std::lock_guard lock(m_mutex);
            m_value = value;
            m_changed.notify_all();
        }
        /// Waits for the value; false after ten seconds.
        bool becomes(bool wanted) {
            std::unique_lock lock(m_mutex);
            return m_changed.wait_for(lock, std::chrono::seconds(10), [&] { return m_value == wanted; });
        }

    private:
        std::mutex m_mutex;
        std::condition_variable m_changed;
        bool m_value = false;
    };

    TemporaryDirectory m_directory;
    Database m_database{m_directory.path() / "journal.db"};
    WorkerPool m_pool{2};
    AsioAlarmClock m_alarms{m_pool};
    Diary m_diary;
    std::atomic<int> m_events{0};
    Flag m_monitoring;
    SwitchSimulator m_switch{{.port = 0}};
    LineSettings m_settings;
    std::unique_ptr<Line> m_line;
};

TEST_F(LineTest, GivesTheJournalEveryServiceAndLeadsItThroughItsLife) {
    m_line->start();
    EXPECT_NE(m_line->journal(), nullptr);
    m_line->stop();
    EXPECT_EQ(m_line->journal(), nullptr);
    m_line->stop();
    EXPECT_THAT(m_diary.notes(), ElementsAre("init", "subscribed", "unsubscribed", "shutdown", "destroyed"));
}

TEST_F(LineTest, ALineThatIsNeverStartedTakesItsJournalAlong) {
    m_line.reset();
    EXPECT_THAT(m_diary.notes(), ElementsAre("destroyed"));
}

TEST_F(LineTest, MonitorsTheLineAtTheSwitch) {
    m_line->start();
    EXPECT_TRUE(m_monitoring.becomes(true));
    m_switch.stop();
    EXPECT_TRUE(m_monitoring.becomes(false));
}

// Calls, timers and changed settings all the time: whatever came after the end would meet a destroyed journal.
TEST_F(LineTest, NothingReachesTheJournalOnceItIsStopped) {
    m_line->start();
    ASSERT_TRUE(m_monitoring.becomes(true));
    m_switch.run(Scenario::parse("repeat 100\ncall c from 4711 ; ring c ; giveup c\nend\n"),
                 {.loop = true, .finished = {}});
    ASSERT_TRUE(m_switch.log().await(SwitchLogEntry::Direction::eSent, "DeliveredEvent", 200));
    m_line->stop();
    const int atTheEnd = m_events;
    EXPECT_GT(atTheEnd, 0);
    m_line.reset();
    EXPECT_EQ(m_events, atTheEnd);
    EXPECT_EQ(m_diary.notes().back(), "destroyed");
}

}  // namespace
}  // namespace host
