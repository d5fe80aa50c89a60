#include "host/line/Line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/database/Database.h"
#include "host/framework/AsioTimerSource.h"
#include "host/framework/WorkerPool.h"
#include "host/switch/scenario/ScenarioParser.h"
#include "host/switch/server/SwitchSimulator.h"
#include "journalservice/JournalListMemoryIfc.h"
#include "journalservice/JournalServiceObserverSubscriptionIfc.h"
#include "platform/csta/CSTADevice.h"
#include "platform/csta/CSTAEventIfc.h"
#include "platform/csta/CSTARequests.h"
#include "platform/csta/CSTAServiceIfc.h"
#include "platform/services/MobilityServiceIfc.h"
#include "platform/services/UCServiceIfc.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/MessageTrace.h"
#include "tests/support/TemporaryDirectory.h"

namespace host {
namespace {

using journaltest::CapturedLog;
using ::testing::ElementsAre;

/// The life cycle of a journal, in order. The line orders the threads that write here.
using LifeCycle = std::vector<std::string>;

/// A service that uses the switch and its timers, and subscribes its observer, like the journal.
class SmallJournal final : public Service,
                           public CSTAEventIfc,
                           public JournalServiceObserverSubscriptionIfc,
                           public JournalListMemoryIfc {
public:
    SmallJournal(LifeCycle& lifeCycle, std::atomic<int>& events) : m_lifeCycle(lifeCycle), m_events(events) {}
    ~SmallJournal() override { m_lifeCycle.emplace_back("destroyed"); }

    void init(Context& context) override {
        m_lifeCycle.emplace_back("init");
        m_context = &context;
        EXPECT_TRUE(find<MobilityServiceIfc>("MobilityServiceIfc").saveVisitorCallLog()) << "needs no retry";
        find<UCServiceIfc>("UCServiceIfc").refreshJournal();
        CSTAMonitorStartRequest request;
        request.setDeviceObject(CSTADevice::kLocalDevice);
        request.setSourceService(this);
        request.setCSTAEventIfc(this);
        find<CSTAServiceIfc>("CSTAServiceIfc").request(request);
        // This timer is always due: an expiry that came too late would call the destroyed service.
        context.startTimer(context.createTimer(*this, 0));
    }
    /// Returns after `shutdown`.
    void run() override { m_ended.get_future().wait(); }
    void shutdown() override {
        m_lifeCycle.emplace_back("shutdown");
        m_ended.set_value();
    }
    void timerEvent(int id) override {
        ++m_events;
        m_context->startTimer(id);
    }
    void deliverEvent(CSTAEvent*) override { ++m_events; }

    void loadListsAtFirstNeed() override { m_lifeCycle.emplace_back("at first need"); }
    bool unloadLists() override {
        m_lifeCycle.emplace_back("unloaded");
        return true;
    }
    [[nodiscard]] bool areListsLoaded() const noexcept override { return true; }

    /// Delivers the contents of a list first, which are no change to log.
    bool subscribeForJournalEvents(JournalServiceObserverIfc* observer) override {
        m_lifeCycle.emplace_back("subscribed");
        observer->callBacksUpdate({}, "", JournalServiceObserverIfc::eItemAdded);
        return true;
    }
    bool unsubscribeForJournalEvents(JournalServiceObserverIfc* observer) override {
        m_lifeCycle.emplace_back("unsubscribed");
        observer->callBacksUpdate({}, "", JournalServiceObserverIfc::eItemDeleted);
        return true;
    }

private:
    template <typename Interface>
    Interface& find(const char* name) {
        return dynamic_cast<Interface&>(*m_context->findService(name));
    }

    LifeCycle& m_lifeCycle;
    std::atomic<int>& m_events;
    Context* m_context = nullptr;
    std::promise<void> m_ended;
};

/// A service whose `init` fails. The framework must call no other operation.
class BrokenJournal final : public Service {
public:
    void init(Context& /*context*/) override { throw std::runtime_error("test"); }
    void run() override { ADD_FAILURE(); }
    void shutdown() override { ADD_FAILURE(); }
};

class LineTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_switch.start();
        m_settings.link.port = m_switch.port();
        m_line = std::make_unique<Line>(m_settings, std::make_unique<SmallJournal>(m_lifeCycle, m_events),
                                        m_database, m_liveCalls, m_pool, m_timerSource);
        m_line->setStatusListener([this](CstaLink::Status status) {
            m_monitoring = status.monitoring;
            m_monitoring.notify_all();
        });
    }

    TemporaryDirectory m_directory;
    Database m_database{m_directory.path() / "journal.db"};
    LiveCallWriter m_liveCalls{m_database};
    WorkerPool m_pool{2};
    AsioTimerSource m_timerSource{m_pool};
    LifeCycle m_lifeCycle;
    std::atomic<int> m_events{0};
    std::atomic<bool> m_monitoring{false};
    journaltest::MessageTrace m_trace;
    SwitchSimulator m_switch{{.port = 0, .messageListener = m_trace.listener()}};
    LineSettings m_settings;
    std::unique_ptr<Line> m_line;
};

TEST_F(LineTest, GivesTheJournalItsLifeCycleAndLogsItsChangesEvenIfTheSwitchDisconnects) {
    m_line->start();
    m_monitoring.wait(false);
    m_switch.stop();
    m_monitoring.wait(true);
    m_line->stop();
    EXPECT_EQ(m_line->journal(), nullptr);
    EXPECT_THAT(CapturedLog::lines("Journal"), ElementsAre("2001: a callback was deleted"));
    m_line->stop();
    EXPECT_THAT(m_lifeCycle, ElementsAre("init", "subscribed", "unsubscribed", "shutdown", "destroyed"));
}

TEST_F(LineTest, DestroysAJournalThatIsNeverStartedOrFailsToStart) {
    m_line.reset();
    EXPECT_THAT(m_lifeCycle, ElementsAre("destroyed"));
    Line line(m_settings, std::make_unique<BrokenJournal>(), m_database, m_liveCalls, m_pool, m_timerSource);
    EXPECT_THROW(line.start(), std::runtime_error);
}

TEST_F(LineTest, FreesTheListsOfAnIdleLineOnly) {
    m_settings.loadsListsAtFirstNeed = true;
    m_line = std::make_unique<Line>(m_settings, std::make_unique<SmallJournal>(m_lifeCycle, m_events),
                                    m_database, m_liveCalls, m_pool, m_timerSource);
    m_lifeCycle.clear();
    m_line->setStatusListener([this](CstaLink::Status status) {
        m_monitoring = status.monitoring;
        m_monitoring.notify_all();
    });
    std::promise<void> ended;
    m_line->setEventListener([&ended](std::string_view name) {
        if (name == "ConnectionClearedEvent") {
            ended.set_value();
        }
    });
    m_line->start();
    m_line->unloadLists(std::chrono::hours(1));
    m_monitoring.wait(false);
    m_switch.run(parseScenario("call c from 4711 ; ring c ; giveup c\n"));
    ended.get_future().wait();
    m_line->unloadLists(std::chrono::hours(1));
    m_line->stop();
    EXPECT_THAT(m_lifeCycle, ElementsAre("init", "at first need", "subscribed", "unloaded", "unsubscribed",
                                         "shutdown", "destroyed"));
}

// With constant calls and timers, anything that came after the end would call a destroyed journal.
TEST_F(LineTest, NothingReachesTheJournalOnceItIsStopped) {
    m_line->start();
    m_monitoring.wait(false);
    m_switch.run(parseScenario("repeat 100\ncall c from 4711 ; ring c ; giveup c\nend\n"),
                 {.loop = true, .finished = {}});
    ASSERT_TRUE(m_trace.await(journaltest::MessageTrace::Direction::eSent, "DeliveredEvent", 200));
    m_line->stop();
    const int atTheEnd = m_events;
    EXPECT_GT(atTheEnd, 0);
    m_line.reset();
    EXPECT_EQ(m_events, atTheEnd);
    EXPECT_EQ(m_lifeCycle.back(), "destroyed");
}

}  // namespace
}  // namespace host
