// The faked timers keep the contract of `Context`: if they bent it, every test on them would lie.

#include <chrono>
#include <functional>
#include <vector>

#include <gmock/gmock.h>

#include "platform/framework/Executable.h"
#include "tests/support/FakeContext.h"

namespace journaltest {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

class Handler final : public Executable {
public:
    std::vector<int> expired;
    std::function<void(int)> during;

    void timerEvent(int id) override {
        expired.push_back(id);
        if (during) {
            during(id);
        }
    }
};

class FakeTimers : public testing::Test {
protected:
    FakeContext context;
    Handler handler;
};

TEST_F(FakeTimers, ExpireOnceInTheOrderOfTheirTimes) {
    const int slow = context.createTimer(handler, 300);
    const int fast = context.createTimer(handler, 100);
    context.startTimer(slow);
    context.startTimer(fast);
    context.advance(milliseconds(99));
    EXPECT_THAT(handler.expired, IsEmpty());
    context.advance(milliseconds(1000));
    EXPECT_THAT(handler.expired, ElementsAre(fast, slow));
    EXPECT_FALSE(context.isTimerRunning(fast));
}

TEST_F(FakeTimers, AreLeftAloneByASecondStartAndBegunAgainByARestart) {
    const int started = context.createTimer(handler, 100);
    const int restarted = context.createTimer(handler, 100);
    context.startTimer(started);
    context.restartTimer(restarted);
    context.advance(milliseconds(60));
    context.startTimer(started);
    context.restartTimer(restarted);
    context.advance(milliseconds(40));
    EXPECT_THAT(handler.expired, ElementsAre(started));
    context.advance(milliseconds(60));
    EXPECT_THAT(handler.expired, ElementsAre(started, restarted));
}

TEST_F(FakeTimers, DoNotExpireOnceAnEarlierExpiryHasStoppedThem) {
    const int first = context.createTimer(handler, 100);
    const int second = context.createTimer(handler, 100);
    context.startTimer(first);
    context.startTimer(second);
    handler.during = [&](int) { context.deleteTimer(second); };
    context.advance(milliseconds(100));
    EXPECT_THAT(handler.expired, ElementsAre(first));
    EXPECT_THAT(context.timers(), ElementsAre(first));
}

}  // namespace
}  // namespace journaltest
