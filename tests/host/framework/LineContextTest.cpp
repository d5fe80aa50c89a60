#include "host/framework/LineContext.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <latch>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "host/framework/Strand.h"
#include "host/framework/TimerSource.h"
#include "host/framework/WorkerPool.h"
#include "platform/framework/Executable.h"
#include "tests/support/Table.h"

namespace host {
namespace {

using std::chrono::milliseconds;
using Ids = std::vector<int>;

/// A timer source that a test advances by hand. Callbacks run on the thread that calls `advance`; a handler
/// on the strand may schedule meanwhile.
class ManualTimerSource final : public TimerSource {
    using Ring = std::function<void()>;

public:
    [[nodiscard]] std::unique_ptr<ScheduledExpiry> schedule(milliseconds delay, Ring ring) override {
        auto held = std::make_unique<Held>();
        held->ring = std::make_shared<Ring>(std::move(ring));
        const std::lock_guard lock(m_mutex);
        m_rings.emplace(m_now + delay, held->ring);
        return held;
    }

    /// Advances the time and runs the callbacks that are due, the earliest first.
    void advance(milliseconds step) {
        std::unique_lock lock(m_mutex);
        m_now += step;
        while (!m_rings.empty() && m_rings.begin()->first <= m_now) {
            const auto due = m_rings.extract(m_rings.begin());
            lock.unlock();
            if (const auto ring = due.mapped().lock()) {
                (*ring)();
            }
            lock.lock();
        }
    }

private:
    struct Held final : ScheduledExpiry {
        std::shared_ptr<Ring> ring;
    };

    std::mutex m_mutex;
    // Guarded by m_mutex.
    milliseconds m_now{0};
    std::multimap<milliseconds, std::weak_ptr<Ring>> m_rings;  // of timers that run
};

/// Records the timers that expire on the strand, and calls `m_react` from inside the expiry.
class TimerRecorder final : public Executable {
public:
    explicit TimerRecorder(const Strand& strand) : m_strand(strand) {}

    void timerEvent(int id) override {
        m_expired.push_back(m_strand.isCurrent() ? id : -1);
        if (m_react) {
            m_react(id);
        }
    }

    const Strand& m_strand;
    Ids m_expired;
    std::function<void(int)> m_react;
};

class LineContextTest : public ::testing::Test {
protected:
    /// Advances the time and completes the work that this posts.
    void passes(int ms) {
        m_clock.advance(milliseconds(ms));
        m_strand.drain();
    }
    /// "start", "stop", "restart" or "delete".
    bool does(const std::string& verb, int id) {
        return verb == "start"     ? m_context->startTimer(id)
               : verb == "stop"    ? m_context->stopTimer(id)
               : verb == "restart" ? m_context->restartTimer(id)
                                   : m_context->deleteTimer(id);
    }
    /// Returns the outcome for a timer of one second: the times of its expiries, "no" for each refused step,
    /// and at the end "runs" or "rests". A step is a verb, or a number of milliseconds that pass.
    std::string outcome(const std::vector<std::string>& steps) {
        const int id = m_context->createTimer(m_handler, 1000);
        std::string outcome;
        int now = 0;
        for (const std::string& step : steps) {
            if (step.find_first_not_of("0123456789") == std::string::npos) {
                now += std::stoi(step);
                passes(std::stoi(step));
            } else {
                outcome += does(step, id) ? "" : "no ";
            }
            outcome += std::exchange(m_handler.m_expired, {}) == Ids{id} ? std::to_string(now) + " " : "";
        }
        outcome += m_context->isTimerRunning(id) ? "runs" : "rests";
        m_context->deleteTimer(id);
        return outcome;
    }

    WorkerPool m_pool{2};
    Strand m_strand{m_pool};
    ManualTimerSource m_clock;
    std::unique_ptr<LineContext> m_context = std::make_unique<LineContext>(m_strand, m_clock);
    TimerRecorder m_handler{m_strand};
};

TEST_F(LineContextTest, ATimerExpiresOnceAtItsTimeWhileItRuns) {
    for (const auto& row : journaltest::table(2, R"(
        start 999 1 5000                              | 1000 rests
        start 600 start 400 600                       | 1000 rests
        start 600 restart 999 1                       | 1600 rests
        restart 1000 start 1000                       | 1000 2000 rests
        start stop 5000 stop start 1000               | 6000 rests
        start delete 5000                             | rests
        delete delete start restart stop 5000         | no no no no rests
    )")) {
        EXPECT_EQ(outcome(journaltest::split(row[0], ' ')), row[1]) << row[0];
    }
    EXPECT_EQ(m_context->createTimer(m_handler, -1), -1);
}

// The expiry is posted after other work of the strand. That work cancels the timer.
TEST_F(LineContextTest, ACancelledTimerDoesNotExpireEvenIfItsExpiryIsPosted) {
    int last = 0;
    for (const std::string action : {"stop", "delete", "restart", "end"}) {
        const int id = m_context->createTimer(m_handler, 100);
        EXPECT_GT(id, std::exchange(last, id)) << "ids are unique";
        m_context->startTimer(id);
        std::latch rung(1);
        m_strand.post([&] {
            rung.wait();
            if (action == "end") {
                m_context.reset();
            } else {
                EXPECT_TRUE(does(action, id));
            }
        });
        m_clock.advance(milliseconds(100));
        rung.count_down();
        m_strand.drain();
        EXPECT_EQ(m_handler.m_expired, Ids()) << action;
    }
}

TEST_F(LineContextTest, AHandlerMayUseItsTimersFromInsideAnExpiry) {
    TimerRecorder other(m_strand);
    const int theirs = m_context->createTimer(other, 3000);
    const int hourly = m_context->createTimer(m_handler, 1000);
    const int once = m_context->createTimer(m_handler, 500);
    m_handler.m_react = [&](int id) {
        EXPECT_TRUE(id == hourly ? m_context->startTimer(id) : m_context->deleteTimer(id));
    };
    for (const int id : {theirs, hourly, once}) {
        m_context->startTimer(id);
    }
    passes(1000);
    passes(1000);
    m_context->deleteTimersOf(m_handler);
    passes(1000);
    EXPECT_EQ(m_handler.m_expired, (Ids{once, hourly, hourly}));
    EXPECT_EQ(other.m_expired, Ids{theirs});
}

}  // namespace
}  // namespace host
