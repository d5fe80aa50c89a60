#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <set>
#include <string>
#include <vector>

#include "host/csta-wire/InvokeIds.h"
#include "host/csta/EarlyEvents.h"
#include "host/csta/GrowingPause.h"

namespace {

using host::EarlyEvents;
using host::GrowingPause;
using host::InvokeIds;
using host::WireDocument;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

WireDocument event(const std::string& name) {
    std::string fault;
    return WireDocument::parse("<" + name + "/>", fault).value();
}

std::vector<std::string> names(const std::vector<WireDocument>& events) {
    std::vector<std::string> all;
    all.reserve(events.size());
    for (const WireDocument& one : events) {
        all.emplace_back(one.name());
    }
    return all;
}

TEST(InvokeIds, GoFromTheLastToTheFirst) {
    InvokeIds ids;
    const auto nothing = [](int) { return false; };
    for (int expected = InvokeIds::kFirst; expected <= InvokeIds::kLast; ++expected) {
        ASSERT_EQ(ids.next(nothing), expected);
    }
    EXPECT_EQ(ids.next(nothing), InvokeIds::kFirst);
}

TEST(InvokeIds, PassOverThoseThatWait) {
    InvokeIds ids;
    const std::set<int> waiting = {1, 2, 4};
    const auto isWaiting = [&waiting](int id) { return waiting.contains(id); };
    EXPECT_EQ(ids.next(isWaiting), 3);
    EXPECT_EQ(ids.next(isWaiting), 5);
    EXPECT_FALSE(ids.next([](int) { return true; }));
}

TEST(GrowingPause, DoublesUpToTheLongestAndBeginsAnew) {
    GrowingPause pause(milliseconds(1000), milliseconds(5000));
    std::vector<milliseconds> pauses;
    pauses.reserve(5);
    for (int i = 0; i < 5; ++i) {
        pauses.push_back(pause.next());
    }
    EXPECT_THAT(pauses, ElementsAre(milliseconds(1000), milliseconds(2000), milliseconds(4000),
                                    milliseconds(5000), milliseconds(5000)));
    pause.reset();
    EXPECT_EQ(pause.next(), milliseconds(1000));
    EXPECT_EQ(GrowingPause(milliseconds(1000), milliseconds(300)).next(), milliseconds(300));
}

TEST(EarlyEvents, GiveBackOnlyTheEventsOfOneMonitorInOrder) {
    const EarlyEvents::Clock::time_point now{};
    EarlyEvents early;
    early.keep("1", event("A"), now);
    early.keep("2", event("B"), now);
    early.keep("1", event("C"), now);
    EXPECT_THAT(names(early.take("1", now)), ElementsAre("A", "C"));
    EXPECT_THAT(names(early.take("1", now)), IsEmpty());
    EXPECT_THAT(names(early.take("2", now)), ElementsAre("B"));
}

TEST(EarlyEvents, ForgetAfterAWhile) {
    const EarlyEvents::Clock::time_point now{};
    EarlyEvents early;
    early.keep("1", event("Old"), now);
    early.keep("1", event("Young"), now + std::chrono::seconds(1));
    EXPECT_THAT(names(early.take("1", now + EarlyEvents::kKeptFor + milliseconds(1))), ElementsAre("Young"));
}

TEST(EarlyEvents, KeepTheNewestWhenThereAreTooMany) {
    const EarlyEvents::Clock::time_point now{};
    EarlyEvents early;
    early.keep("1", event("First"), now);
    for (std::size_t i = 0; i < EarlyEvents::kKept; ++i) {
        early.keep("1", event("Later"), now);
    }
    const std::vector<std::string> kept = names(early.take("1", now));
    EXPECT_EQ(kept.size(), EarlyEvents::kKept);
    EXPECT_EQ(kept.front(), "Later");
}

}  // namespace
