#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "host/csta-wire/InvokeIds.h"
#include "host/csta/EarlyEvents.h"

namespace {

using host::EarlyEvents;
using host::InvokeIds;
using std::chrono::milliseconds;
using testing::ElementsAre;

TEST(InvokeIds, GoRoundAndPassOverThoseThatWait) {
    InvokeIds ids;
    for (int expected = InvokeIds::kFirst; expected <= InvokeIds::kLast; ++expected) {
        ASSERT_EQ(ids.next([](int) { return false; }), expected);
    }
    EXPECT_EQ(ids.next([](int id) { return id < 3; }), 3);
    EXPECT_FALSE(ids.next([](int) { return true; }));
}

class EarlyEventsTest : public testing::Test {
protected:
    void keep(const std::string& crossRefId, const std::string& name, milliseconds at = {}) {
        std::string fault;
        early.keep(crossRefId, host::WireDocument::parse("<" + name + "/>", fault).value(), start + at);
    }
    std::vector<std::string> take(const std::string& crossRefId, milliseconds at = {}) {
        std::vector<std::string> names;
        for (const host::WireDocument& event : early.take(crossRefId, start + at)) {
            names.emplace_back(event.name());
        }
        return names;
    }

    const EarlyEvents::Clock::time_point start;
    EarlyEvents early;
};

TEST_F(EarlyEventsTest, GivesBackOnlyTheEventsOfOneMonitorThatAreYoung) {
    keep("1", "Old");
    keep("1", "A", milliseconds(1000));
    keep("2", "B", milliseconds(1000));
    keep("1", "C", milliseconds(1000));
    const milliseconds later = EarlyEvents::kKeptFor + milliseconds(1);
    EXPECT_THAT(take("1", later), ElementsAre("A", "C"));
    EXPECT_THAT(take("1", later), ElementsAre());
    EXPECT_THAT(take("2", later), ElementsAre("B"));
}

TEST_F(EarlyEventsTest, KeepsTheNewestWhenThereAreTooMany) {
    keep("1", "First");
    for (std::size_t i = 0; i < EarlyEvents::kKept; ++i) {
        keep("1", "Later");
    }
    EXPECT_EQ(take("1"), std::vector<std::string>(EarlyEvents::kKept, "Later"));
}

}  // namespace
