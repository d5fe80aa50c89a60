#include "host/line/Line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "host/data/Database.h"
#include "host/framework/AsioAlarmClock.h"
#include "host/framework/WorkerPool.h"
#include "host/switch/server/SwitchSimulator.h"
#include "journalservice/JournalServiceObserverSubscriptionIfc.h"
#include "platform/clock/ClockServiceIfc.h"
#include "platform/csta/CSTADevice.h"
#include "platform/csta/CSTAEventIfc.h"
#include "platform/csta/CSTARequests.h"
#include "platform/csta/CSTAServiceIfc.h"
#include "platform/data/DataAccessServiceIfc.h"
#include "platform/digits/DigitAnalysisServiceIfc.h"
#include "platform/directory/DirectoryServiceIfc.h"
#include "platform/management/LocalMgmtIfc.h"
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

/// What happened to a journal, in order. Outlives it; the line orders the threads that write here.
using Diary = std::vector<std::string>;

/// A service that is registered everywhere where the journal is: with the switch, the management, its context's timers.
class SmallJournal final : public Service,
                           public CSTAEventIfc,
                           public JournalServiceObserverSubscriptionIfc,
                           public MgmtAgentIfc {
public:
    SmallJournal(Diary& diary, std::atomic<int>& events) : m_diary(diary), m_events(events) {}
    ~SmallJournal() override { note("destroyed"); }

    void init(Context& context) override;
    void run() override {}
    void shutdown() override { note("shutdown"); }
    void timerEvent(int id) override {
        ++m_events;
        m_context->startTimer(id);
    }

    void deliverEvent(CSTAEvent*) override { ++m_events; }

    bool subscribeForJournalEvents(JournalServiceObserverIfc*) override { return note("subscribed"); }
    bool unsubscribeForJournalEvents(JournalServiceObserverIfc*) override { return note("unsubscribed"); }

    bool setData(ManageableData&) override { return true; }
    bool getData(ManageableData&) override { return true; }
    void manageableDataChanged(ManageableData&) override { ++m_events; }
    bool resetUserData() override { return true; }

private:
    bool note(const std::string& what) {
        m_diary.push_back(what);
        return true;
    }
    template <typename Interface>
    Interface* find(const char* name) {
        auto* const found = dynamic_cast<Interface*>(m_context->findService(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    Diary& m_diary;
    std::atomic<int>& m_events;
    Context* m_context = nullptr;
};

void SmallJournal::init(Context& context) {
    note("init");
    m_context = &context;
    find<DataAccessServiceIfc>("DataAccessServiceIfc");
    find<DirectoryServiceIfc>("DirectoryServiceIfc");
    find<ClockServiceIfc>("ClockServiceIfc");
    find<DigitAnalysisServiceIfc>("DigitAnalysisServiceIfc");
    find<MobilityServiceIfc>("MobilityServiceIfc");
    find<TeamServiceIfc>("TeamServiceIfc");
    find<UCServiceIfc>("UCServiceIfc");
    find<PallaxServiceIfc>("PallaxServiceIfc");
    find<WSIServiceIfc>("WSIServiceIfc");
    auto* const management = find<LocalMgmtIfc>("LocalMgmtIfc");
    management->registerAgent("JournalMgmtId", *this, 1);
    management->observe("software-type", *this);
    CSTAMonitorStartRequest request;
    request.setDeviceObject(CSTADevice::kLocalDevice);
    request.setSourceService(this);
    request.setCSTAEventIfc(this);
    find<CSTAServiceIfc>("CSTAServiceIfc")->request(request);
    // A timer that is always due: were one delivered too late, the destroyed service would be called.
    context.startTimer(context.createTimer(*this, 0));
}

class LineTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_switch.start();
        m_settings.link.port = m_switch.port();
        m_settings.managementFirst = {{"software-type", "Norlith Qorvex"}};
        m_line = std::make_unique<Line>(m_settings, std::make_unique<SmallJournal>(m_diary, m_events),
                                        m_database, m_pool, m_alarms);
        m_line->setStatusListener([this](CstaLink::Status status) {
            m_monitoring = status.monitoring;
            m_monitoring.notify_all();
        });
    }

    TemporaryDirectory m_directory;
    Database m_database{m_directory.path() / "journal.db"};
    WorkerPool m_pool{2};
    AsioAlarmClock m_alarms{m_pool};
    Diary m_diary;
    std::atomic<int> m_events{0};
    std::atomic<bool> m_monitoring{false};
    SwitchSimulator m_switch{{.port = 0}};
    LineSettings m_settings;
    std::unique_ptr<Line> m_line;
};

TEST_F(LineTest, GivesTheJournalEveryServiceAndLeadsItThroughItsLifeAlsoWhenTheSwitchGoes) {
    m_line->start();
    EXPECT_NE(m_line->journal(), nullptr);
    m_monitoring.wait(false);
    m_switch.stop();
    m_monitoring.wait(true);
    m_line->stop();
    EXPECT_EQ(m_line->journal(), nullptr);
    m_line->stop();
    EXPECT_THAT(m_diary, ElementsAre("init", "subscribed", "unsubscribed", "shutdown", "destroyed"));
}

TEST_F(LineTest, ALineThatIsNeverStartedTakesItsJournalAlong) {
    m_line.reset();
    EXPECT_THAT(m_diary, ElementsAre("destroyed"));
}

// Calls, timers and changed settings all the time: whatever came after the end would meet a destroyed journal.
TEST_F(LineTest, NothingReachesTheJournalOnceItIsStopped) {
    m_line->start();
    m_monitoring.wait(false);
    m_switch.run(Scenario::parse("repeat 100\ncall c from 4711 ; ring c ; giveup c\nend\n"),
                 {.loop = true, .finished = {}});
    ASSERT_TRUE(m_switch.log().await(SwitchLogEntry::Direction::eSent, "DeliveredEvent", 200));
    m_line->stop();
    const int atTheEnd = m_events;
    EXPECT_GT(atTheEnd, 0);
    m_line.reset();
    EXPECT_EQ(m_events, atTheEnd);
    EXPECT_EQ(m_diary.back(), "destroyed");
}

}  // namespace
}  // namespace host
