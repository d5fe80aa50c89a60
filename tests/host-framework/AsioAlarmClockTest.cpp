#include "host/framework/AsioAlarmClock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <mutex>

#include "host/framework/WorkerPool.h"

namespace host {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::seconds;

TEST(AsioAlarmClock, RingsOnceAndNotBeforeItsTime) {
    WorkerPool pool(2);
    AsioAlarmClock clock(pool);
    std::promise<std::chrono::steady_clock::time_point> rung;
    const auto begin = std::chrono::steady_clock::now();
    const auto alarm =
        clock.after(milliseconds(20), [&] { rung.set_value(std::chrono::steady_clock::now()); });

    auto future = rung.get_future();
    ASSERT_EQ(future.wait_for(seconds(20)), std::future_status::ready);
    EXPECT_GE(future.get() - begin, milliseconds(20));
}

TEST(AsioAlarmClock, NeverRingsInsideTheCallThatSetsIt) {
    WorkerPool pool(2);
    AsioAlarmClock clock(pool);
    std::mutex held;
    std::promise<void> rung;
    std::unique_ptr<Alarm> alarm;
    {
        const std::lock_guard lock(held);
        alarm = clock.after(milliseconds(0), [&] {
            const std::lock_guard inner(held);
            rung.set_value();
        });
    }
    EXPECT_EQ(rung.get_future().wait_for(seconds(20)), std::future_status::ready);
}

TEST(AsioAlarmClock, AnAlarmThatIsDestroyedDoesNotRing) {
    WorkerPool pool(1);
    AsioAlarmClock clock(pool);
    bool first = false;
    std::promise<void> second;
    clock.after(milliseconds(5), [&] { first = true; }).reset();
    const auto alarm = clock.after(milliseconds(10), [&] { second.set_value(); });
    ASSERT_EQ(second.get_future().wait_for(seconds(20)), std::future_status::ready);
    EXPECT_FALSE(first);
}

TEST(AsioAlarmClock, APoolEndsAlthoughAnAlarmIsFarAway) {
    WorkerPool pool(2);
    AsioAlarmClock clock(pool);
    const auto alarm = clock.after(hours(1), [] { FAIL() << "rang early"; });
}

}  // namespace
}  // namespace host
