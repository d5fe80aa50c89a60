#include "host/framework/Strand.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <latch>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "host/framework/WorkerPool.h"

namespace host {
namespace {

TEST(Strand, RunsOnePieceAtATimeInTheOrderOfEachPoster) {
    WorkerPool pool(4);
    Strand strand(pool);
    constexpr int kPosters = 4;
    constexpr int kEach = 500;
    std::atomic<int> inside{0};
    std::atomic<bool> overlapped{false};
    std::vector<std::vector<int>> seen(kPosters);  // only the strand writes it

    std::vector<std::thread> posters;
    for (int poster = 0; poster < kPosters; ++poster) {
        posters.emplace_back([&, poster] {
            for (int number = 0; number < kEach; ++number) {
                strand.post([&, poster, number] {
                    overlapped = overlapped || inside.fetch_add(1) != 0;
                    seen[static_cast<std::size_t>(poster)].push_back(number);
                    inside.fetch_sub(1);
                });
            }
        });
    }
    for (std::thread& poster : posters) {
        poster.join();
    }
    strand.drain();

    EXPECT_FALSE(overlapped);
    for (const std::vector<int>& numbers : seen) {
        ASSERT_EQ(numbers.size(), static_cast<std::size_t>(kEach));
        EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
    }
}

TEST(Strand, DoesNotHoldUpAnotherStrandOfItsPool) {
    WorkerPool pool(2);
    Strand slow(pool);
    Strand quick(pool);
    std::latch released(1);
    slow.post([&] { released.wait(); });

    EXPECT_TRUE(quick.runAndWait([] {}));
    released.count_down();
    slow.drain();
}

TEST(Strand, PostsLaterAlsoFromItsOwnWork) {
    WorkerPool pool(2);
    Strand strand(pool);
    std::vector<int> order;
    strand.runAndWait([&] {
        strand.post([&] { order.push_back(2); });
        order.push_back(1);
    });
    strand.drain();
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

TEST(Strand, RunAndWaitComesBehindWhatWasPostedBefore) {
    WorkerPool pool(2);
    Strand strand(pool);
    int value = 0;
    strand.post([&] { value = 1; });
    int seen = 0;
    EXPECT_TRUE(strand.runAndWait([&] { seen = value; }));
    EXPECT_EQ(seen, 1);
}

TEST(Strand, RunAndWaitOnTheStrandItselfRunsAtOnce) {
    WorkerPool pool(1);
    Strand strand(pool);
    bool ran = false;
    strand.runAndWait([&] {
        EXPECT_TRUE(strand.isCurrent());
        strand.runAndWait([&] { ran = true; });
        EXPECT_TRUE(ran);
    });
    EXPECT_FALSE(strand.isCurrent());
}

TEST(Strand, RunAndWaitHandsOnWhatTheWorkThrew) {
    WorkerPool pool(2);
    Strand strand(pool);
    EXPECT_THROW(strand.runAndWait([] { throw std::runtime_error("broken"); }), std::runtime_error);
}

TEST(Strand, SurvivesWorkThatThrows) {
    WorkerPool pool(1);
    Strand strand(pool);
    strand.post([] { throw std::runtime_error("broken"); });
    strand.post([] { throw 7; });
    bool ran = false;
    strand.runAndWait([&] { ran = true; });
    EXPECT_TRUE(ran);
}

TEST(Strand, CloseFinishesWhatWasPostedAndTakesNothingMore) {
    WorkerPool pool(2);
    Strand strand(pool);
    std::latch released(1);
    std::atomic<int> ran{0};
    strand.post([&] { released.wait(); });
    strand.post([&] { ++ran; });

    std::thread closer([&] { strand.close(); });
    released.count_down();
    closer.join();

    EXPECT_EQ(ran, 1);
    EXPECT_FALSE(strand.post([&] { ++ran; }));
    EXPECT_FALSE(strand.runAndWait([&] { ++ran; }));
    EXPECT_EQ(ran, 1);
}

TEST(Strand, ReleasesWhatWorkCapturedBeforeADrainReturns) {
    WorkerPool pool(2);
    Strand strand(pool);
    auto captured = std::make_shared<int>(1);
    const std::weak_ptr<int> watch = captured;
    strand.post([held = std::move(captured)] { static_cast<void>(held); });
    strand.drain();
    EXPECT_TRUE(watch.expired());
}

TEST(Strand, ItsDoorOutlivesIt) {
    WorkerPool pool(2);
    auto strand = std::make_unique<Strand>(pool);
    const auto door = strand->door();
    std::promise<void> ran;
    EXPECT_TRUE(door([&] { ran.set_value(); }));
    ran.get_future().wait();
    strand.reset();
    EXPECT_FALSE(door([] { FAIL() << "ran after the strand was gone"; }));
}

}  // namespace
}  // namespace host
