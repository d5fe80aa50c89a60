#include "host/framework/HostedService.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/framework/LineContext.h"
#include "host/framework/Strand.h"
#include "host/framework/WorkerPool.h"
#include "tests/host-framework/ManualAlarmClock.h"

namespace host {
namespace {

using ::testing::ElementsAre;

/// What happened to a service, in order, each with where it happened.
class Diary {
public:
    explicit Diary(const Strand& strand) : m_strand(strand) {}

    void note(const std::string& what) {
        const std::lock_guard lock(m_mutex);
        m_notes.push_back(what + (m_strand.isCurrent() ? " on the strand" : " elsewhere"));
    }
    std::vector<std::string> notes() const {
        const std::lock_guard lock(m_mutex);
        return m_notes;
    }

private:
    const Strand& m_strand;
    mutable std::mutex m_mutex;
    std::vector<std::string> m_notes;
};

/// Starts a timer that it never deletes, and stays in `run` until it is shut down.
class DiaryService final : public Service {
public:
    explicit DiaryService(Diary& diary) : m_diary(diary) {}
    ~DiaryService() override { m_diary.note("destroyed"); }

    void init(Context& context) override {
        m_diary.note("init");
        context.startTimer(context.createTimer(*this, 100));
    }
    void run() override {
        m_diary.note("run");
        m_running.set_value();
        m_ended.get_future().wait();
    }
    void shutdown() override {
        m_diary.note("shutdown");
        m_ended.set_value();
    }
    void timerEvent(int) override { m_diary.note("timer"); }

    void awaitRunning() { m_running.get_future().wait(); }

private:
    Diary& m_diary;
    std::promise<void> m_running;
    std::promise<void> m_ended;
};

class BrokenService final : public Service {
public:
    explicit BrokenService(Diary& diary) : m_diary(diary) {}
    ~BrokenService() override { m_diary.note("destroyed"); }
    void init(Context&) override { throw std::runtime_error("no init today"); }
    void run() override { m_diary.note("run"); }
    void shutdown() override { m_diary.note("shutdown"); }

private:
    Diary& m_diary;
};

class HostedServiceTest : public ::testing::Test {
protected:
    WorkerPool m_pool{2};
    Strand m_strand{m_pool};
    ManualAlarmClock m_clock;
    LineContext m_context{m_strand, m_clock};
    Diary m_diary{m_strand};
};

TEST_F(HostedServiceTest, LivesItsLifeInOrderOnTheStrand) {
    auto owned = std::make_unique<DiaryService>(m_diary);
    DiaryService& service = *owned;
    HostedService hosted(std::move(owned), m_strand, m_context);
    hosted.start();
    service.awaitRunning();
    hosted.stop();
    hosted.stop();
    EXPECT_EQ(hosted.service(), nullptr);
    EXPECT_THAT(m_diary.notes(), ElementsAre("init on the strand", "run elsewhere", "shutdown on the strand",
                                             "destroyed on the strand"));
}

TEST_F(HostedServiceTest, NoTimerReachesAServiceThatIsGone) {
    {
        HostedService hosted(std::make_unique<DiaryService>(m_diary), m_strand, m_context);
        hosted.start();
    }
    EXPECT_EQ(m_clock.outstanding(), 0U);
    m_clock.advance(std::chrono::milliseconds(100));
    m_strand.drain();
    EXPECT_EQ(m_diary.notes().back(), "destroyed on the strand");
}

TEST_F(HostedServiceTest, AServiceWhoseInitFailsIsDestroyedWithoutShutdown) {
    {
        HostedService hosted(std::make_unique<BrokenService>(m_diary), m_strand, m_context);
        EXPECT_THROW(hosted.start(), std::runtime_error);
    }
    EXPECT_THAT(m_diary.notes(), ElementsAre("destroyed on the strand"));
}

}  // namespace
}  // namespace host
