#include "host/framework/Strand.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

#include "host/framework/AsioTimerSource.h"
#include "host/framework/WorkerPool.h"

namespace host {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

class StrandTest : public ::testing::Test {
protected:
    WorkerPool m_pool{2};
    Strand m_strand{m_pool};
};

TEST_F(StrandTest, RunsOneWorkItemAtATimeInTheOrderOfEachPoster) {
    std::atomic<int> inside{0};
    std::vector<std::vector<int>> seen(4);  // written by the strand only
    std::vector<std::jthread> posters;
    for (std::vector<int>& mine : seen) {
        posters.emplace_back([&] {
            for (int number = 0; number < 500; ++number) {
                m_strand.post([&, number] {
                    EXPECT_EQ(++inside, 1);
                    mine.push_back(number);
                    --inside;
                });
            }
        });
    }
    posters.clear();  // joins them
    m_strand.drain();
    for (const std::vector<int>& numbers : seen) {
        EXPECT_EQ(numbers.size(), 500U);
        EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
    }
}

TEST_F(StrandTest, InsideItsOwnWorkPostsForLaterAndRunsAndWaitsAtOnce) {
    std::vector<int> order;
    EXPECT_TRUE(m_strand.runAndWait([&] {
        EXPECT_TRUE(m_strand.isCurrent());
        m_strand.post([&] { order.push_back(3); });
        order.push_back(1);
        m_strand.runAndWait([&] { order.push_back(2); });
    }));
    EXPECT_FALSE(m_strand.isCurrent());
    EXPECT_TRUE(m_strand.runAndWait([&] { order.push_back(4); }));
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3, 4}));
}

TEST_F(StrandTest, IsHelpedByAThreadThatIsNotOfThePool) {
    const Strand::Helper helper = m_strand.helper();
    std::vector<int> order;
    std::vector<std::thread::id> threads;
    const auto note = [&](int number) {
        EXPECT_TRUE(m_strand.isCurrent());
        order.push_back(number);
        threads.push_back(std::this_thread::get_id());
    };
    EXPECT_TRUE(helper.queue([&] { note(1); }));
    EXPECT_TRUE(helper.queue([&] {
        note(2);
        m_strand.post([&] { note(4); });  // another thread goes on
        helper.run();
        order.push_back(3);
    }));
    helper.run();
    m_strand.drain();
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3, 4}));
    EXPECT_EQ(threads[0], std::this_thread::get_id());
    EXPECT_EQ(threads[1], std::this_thread::get_id());
    EXPECT_NE(threads[2], std::this_thread::get_id());

    // Work that waits is not forgotten while another thread runs the strand.
    std::promise<void> begun;
    std::promise<void> goOn;
    m_strand.post([&] {
        begun.set_value();
        goOn.get_future().wait();
    });
    begun.get_future().wait();
    EXPECT_TRUE(helper.queue([&] { order.push_back(5); }));
    helper.run();
    EXPECT_EQ(order.back(), 4);
    goOn.set_value();
    m_strand.drain();
    EXPECT_EQ(order.back(), 5);
    m_strand.close();
    EXPECT_FALSE(helper.queue([] {}));
}

TEST_F(StrandTest, ContinuesAfterAnExceptionAndPassesItToTheWaitingCaller) {
    m_strand.post([] { throw std::runtime_error("broken"); });
    m_strand.post([] { throw 7; });
    EXPECT_THROW(m_strand.runAndWait([] { throw std::runtime_error("broken"); }), std::runtime_error);
    EXPECT_TRUE(m_strand.runAndWait([] {}));
}

TEST_F(StrandTest, CompletesPostedWorkAndDestroysItWhenItClosesAndRefusesMore) {
    auto strand = std::make_unique<Strand>(m_pool);
    const auto post = strand->weakPoster();
    auto captured = std::make_shared<std::atomic<int>>(0);
    const std::weak_ptr<std::atomic<int>> watch = captured;
    int ran = 0;
    strand->post([] { std::this_thread::sleep_for(milliseconds(20)); });
    EXPECT_TRUE(post([&ran, held = std::move(captured)] { ran = ++*held; }));
    strand->close();
    EXPECT_EQ(ran, 1);
    EXPECT_TRUE(watch.expired());
    EXPECT_FALSE(strand->runAndWait([] { FAIL() << "ran after the strand was closed"; }));
    strand.reset();
    EXPECT_FALSE(post([] { FAIL() << "ran after the strand was destroyed"; }));
}

// With the lock, an expiry inside the call that schedules it would deadlock.
TEST(AsioTimerSource, ExpiresAtItsTimeUnlessDestroyedAndDoesNotDelayTheEndOfThePool) {
    WorkerPool pool(1);
    AsioTimerSource clock(pool);
    const auto far = clock.schedule(std::chrono::hours(1), [] { FAIL() << "expired early"; });
    std::mutex held;
    std::promise<steady_clock::time_point> rung;
    const auto begin = steady_clock::now();
    clock.schedule(milliseconds(5), [] { FAIL() << "was destroyed"; }).reset();
    std::unique_ptr<ScheduledExpiry> atOnce;
    {
        const std::lock_guard lock(held);
        atOnce = clock.schedule(milliseconds(0), [&] { const std::lock_guard inner(held); });
    }
    const auto expiry = clock.schedule(milliseconds(20), [&] { rung.set_value(steady_clock::now()); });
    auto future = rung.get_future();
    ASSERT_EQ(future.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    EXPECT_GE(future.get() - begin, milliseconds(20));
}

}  // namespace
}  // namespace host
