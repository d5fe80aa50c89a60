#include "host/framework/LineContext.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <latch>
#include <memory>
#include <thread>
#include <vector>

#include "host/framework/AsioAlarmClock.h"
#include "host/framework/Strand.h"
#include "host/framework/WorkerPool.h"
#include "platform/framework/Executable.h"
#include "tests/host-framework/ManualAlarmClock.h"

namespace host {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Notes the timers that expired, and can react from inside the expiry.
class TimerNotes final : public Executable {
public:
    explicit TimerNotes(const Strand& strand) : m_strand(strand) {}

    void timerEvent(int id) override {
        m_expired.push_back(id);
        m_onStrand = m_onStrand && m_strand.isCurrent();
        if (m_react) {
            m_react(id);
        }
    }

    const Strand& m_strand;
    std::vector<int> m_expired;
    bool m_onStrand = true;
    std::function<void(int)> m_react;
};

class LineContextTest : public ::testing::Test {
protected:
    /// Time passes, and the strand has done what that brought.
    void passes(int ms) {
        m_clock.advance(milliseconds(ms));
        m_strand.drain();
    }

    int timer(int ms) { return m_context.createTimer(m_handler, ms); }

    const std::vector<int>& expired() {
        m_strand.drain();
        return m_handler.m_expired;
    }

    WorkerPool m_pool{2};
    Strand m_strand{m_pool};
    ManualAlarmClock m_clock;
    LineContext m_context{m_strand, m_clock};
    TimerNotes m_handler{m_strand};
};

TEST_F(LineContextTest, ATimerThatWasOnlyCreatedNeverExpires) {
    const int id = timer(1000);
    EXPECT_FALSE(m_context.isTimerRunning(id));
    passes(100000);
    EXPECT_THAT(expired(), IsEmpty());
}

TEST_F(LineContextTest, AStartedTimerExpiresOnceOnTheStrandAtItsTime) {
    const int id = timer(1000);
    EXPECT_TRUE(m_context.startTimer(id));
    EXPECT_TRUE(m_context.isTimerRunning(id));
    passes(999);
    EXPECT_THAT(expired(), IsEmpty());
    passes(1);
    EXPECT_THAT(expired(), ElementsAre(id));
    EXPECT_TRUE(m_handler.m_onStrand);
    EXPECT_FALSE(m_context.isTimerRunning(id));
    passes(100000);
    EXPECT_THAT(expired(), ElementsAre(id));
}

TEST_F(LineContextTest, ARunningTimerThatIsStartedAgainKeepsItsTime) {
    const int id = timer(1000);
    m_context.startTimer(id);
    passes(600);
    EXPECT_TRUE(m_context.startTimer(id));
    passes(400);
    EXPECT_THAT(expired(), ElementsAre(id));
    passes(600);
    EXPECT_THAT(expired(), ElementsAre(id));
}

TEST_F(LineContextTest, ARestartedTimerTakesItsFullTimeFromThen) {
    const int id = timer(1000);
    m_context.startTimer(id);
    passes(600);
    EXPECT_TRUE(m_context.restartTimer(id));
    passes(999);
    EXPECT_THAT(expired(), IsEmpty());
    passes(1);
    EXPECT_THAT(expired(), ElementsAre(id));
}

TEST_F(LineContextTest, RestartArmsATimerThatDoesNotRun) {
    const int id = timer(10);
    EXPECT_TRUE(m_context.restartTimer(id));
    passes(10);
    EXPECT_THAT(expired(), ElementsAre(id));
}

TEST_F(LineContextTest, AStoppedTimerStaysAndMayBeStartedAgain) {
    const int id = timer(1000);
    m_context.startTimer(id);
    EXPECT_TRUE(m_context.stopTimer(id));
    EXPECT_FALSE(m_context.isTimerRunning(id));
    passes(5000);
    EXPECT_THAT(expired(), IsEmpty());
    EXPECT_TRUE(m_context.stopTimer(id));
    EXPECT_TRUE(m_context.startTimer(id));
    passes(1000);
    EXPECT_THAT(expired(), ElementsAre(id));
}

TEST_F(LineContextTest, ADeletedTimerIsForgotten) {
    const int id = timer(1000);
    m_context.startTimer(id);
    EXPECT_TRUE(m_context.deleteTimer(id));
    passes(5000);
    EXPECT_THAT(expired(), IsEmpty());
    EXPECT_FALSE(m_context.deleteTimer(id));
    EXPECT_FALSE(m_context.startTimer(id));
    EXPECT_EQ(m_clock.outstanding(), 0U);
}

TEST_F(LineContextTest, AnIdIsNeverUsedAgain) {
    const int first = timer(1);
    m_context.deleteTimer(first);
    EXPECT_NE(timer(1), first);
}

TEST_F(LineContextTest, AnUnknownIdAnswersFalseEverywhere) {
    for (const int id : {-1, 0, 4711}) {
        EXPECT_FALSE(m_context.startTimer(id));
        EXPECT_FALSE(m_context.stopTimer(id));
        EXPECT_FALSE(m_context.restartTimer(id));
        EXPECT_FALSE(m_context.deleteTimer(id));
        EXPECT_FALSE(m_context.isTimerRunning(id));
    }
}

TEST_F(LineContextTest, ANegativeTimeIsRefused) {
    EXPECT_EQ(m_context.createTimer(m_handler, -1), -1);
}

// The alarm has rung and its expiry waits behind other work of the strand when that work takes the timer back.
TEST_F(LineContextTest, AnExpiryThatWasDueBeforeStopRestartOrDeleteIsNotDelivered) {
    const std::vector<std::function<bool(int)>> takeBack{
        [this](int id) { return m_context.stopTimer(id); },
        [this](int id) { return m_context.restartTimer(id); },
        [this](int id) { return m_context.deleteTimer(id); },
        [this](int id) { return m_context.stopTimer(id) && m_context.startTimer(id); },
    };
    for (const auto& action : takeBack) {
        const int id = timer(100);
        m_context.startTimer(id);
        std::latch rung(1);
        m_strand.post([&] {
            rung.wait();
            EXPECT_TRUE(action(id));
        });
        m_clock.advance(milliseconds(100));
        rung.count_down();
        EXPECT_THAT(expired(), IsEmpty());
        m_context.deleteTimer(id);
    }
}

TEST_F(LineContextTest, AHandlerMayUseItsTimersFromInsideAnExpiry) {
    const int hourly = timer(1000);
    const int once = timer(500);
    m_handler.m_react = [&](int id) {
        if (id == hourly) {
            EXPECT_FALSE(m_context.isTimerRunning(hourly));
            m_context.startTimer(hourly);
        } else {
            EXPECT_TRUE(m_context.deleteTimer(once));
        }
    };
    m_context.startTimer(hourly);
    m_context.startTimer(once);
    passes(1000);
    passes(1000);
    EXPECT_THAT(expired(), ElementsAre(once, hourly, hourly));
}

TEST_F(LineContextTest, TimersOfOneHandlerAreDeletedAndThoseOfAnotherStay) {
    TimerNotes other(m_strand);
    const int mine = timer(10);
    const int theirs = m_context.createTimer(other, 10);
    m_context.startTimer(mine);
    m_context.startTimer(theirs);
    m_context.deleteTimersOf(m_handler);
    passes(10);
    EXPECT_THAT(expired(), IsEmpty());
    EXPECT_THAT(other.m_expired, ElementsAre(theirs));
}

TEST(LineContextLife, ATimerThatRingsWhenTheContextIsGoneIsSilent) {
    WorkerPool pool(2);
    Strand strand(pool);
    ManualAlarmClock clock;
    TimerNotes handler(strand);
    auto context = std::make_unique<LineContext>(strand, clock);
    context->startTimer(context->createTimer(handler, 10));
    std::latch rung(1);
    strand.post([&] {
        rung.wait();
        context.reset();
    });
    clock.advance(milliseconds(10));
    rung.count_down();
    strand.drain();
    EXPECT_THAT(handler.m_expired, IsEmpty());
}

// Many threads at the same timers, with real time: nothing is proved but what the sanitizers and the contract say.
TEST(LineContextLife, AnyThreadMayUseItWhileTimersExpire) {
    WorkerPool pool(2);
    Strand strand(pool);
    AsioAlarmClock clock(pool);
    LineContext context(strand, clock);
    TimerNotes handler(strand);
    std::vector<int> ids;
    for (int number = 0; number < 8; ++number) {
        ids.push_back(context.createTimer(handler, number % 2));
    }
    std::vector<std::thread> users;
    for (int user = 0; user < 4; ++user) {
        users.emplace_back([&, user] {
            for (std::size_t turn = 0; turn < 300; ++turn) {
                const int id = ids[(turn + static_cast<std::size_t>(user)) % ids.size()];
                switch (turn % 4) {
                    case 0: context.startTimer(id); break;
                    case 1: context.restartTimer(id); break;
                    case 2: static_cast<void>(context.isTimerRunning(id)); break;
                    default: context.stopTimer(id); break;
                }
            }
        });
    }
    for (std::thread& user : users) {
        user.join();
    }
    std::size_t atTheEnd = 0;
    strand.runAndWait([&] {
        context.deleteTimersOf(handler);
        atTheEnd = handler.m_expired.size();
    });
    strand.drain();
    EXPECT_EQ(handler.m_expired.size(), atTheEnd);
    EXPECT_TRUE(handler.m_onStrand);
}

TEST_F(LineContextTest, FindsServicesByTheirNames) {
    TimerNotes other(m_strand);
    EXPECT_EQ(m_context.findService("ClockServiceIfc"), nullptr);
    m_context.registerService("ClockServiceIfc", m_handler);
    m_context.registerService("TeamServiceIfc", other);
    EXPECT_EQ(m_context.findService("ClockServiceIfc"), &m_handler);
    EXPECT_EQ(m_context.findService("TeamServiceIfc"), &other);
    m_context.registerService("ClockServiceIfc", other);
    EXPECT_EQ(m_context.findService("ClockServiceIfc"), &other);
    m_context.removeService("ClockServiceIfc");
    EXPECT_EQ(m_context.findService("ClockServiceIfc"), nullptr);
}

}  // namespace
}  // namespace host
