#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "src/JournalService/base/JournalClock.h"
#include "tests/support/FakeClock.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

class JournalClock : public testing::Test {
protected:
    void SetUp() override { clock.setClock(&time); }

    FakeClock time;
    journal::JournalClock clock;
};

TEST_F(JournalClock, WritesDurationsAndComparesTimesFromTheMostSignificantField) {
    EXPECT_EQ(clock.formatDuration(0, 6000) + " " + clock.formatDuration(200, 100), "100:00 00:00");
    const std::string base = "2026-11-21T05:22:05Z";
    int result = 7;
    EXPECT_FALSE(clock.compareTimes(base, "yesterday", result));
    EXPECT_EQ(result, 7);
    for (const auto& row : table(2, R"(
2025-12-31T23:59:59Z |  1
2026-11-21T05:21:59Z |  1
2026-11-21T05:22:04Z |  1
2026-11-21T05:22:05  |  0
2027-01-01T00:00:00Z | -1
)")) {
        EXPECT_TRUE(clock.compareTimes(base, row[0], result));
        EXPECT_EQ(result, std::stoi(row[1])) << row[0];
    }
}

TEST_F(JournalClock, OfOneJournalIsNotAnothersAndOfNoneTheLatestThatLives) {
    const journal::JournalClock without;
    FakeClock otherTime;
    otherTime.set(86400);
    auto other = std::make_unique<journal::JournalClock>();
    other->setClock(&otherTime);
    EXPECT_EQ(other->getCurrentTimeSec(), 86400);
    EXPECT_EQ(without.getCurrentTimeSec(), 86400);
    EXPECT_EQ(clock.getCurrentTimeSec(), FakeClock::kStart);
    other.reset();
    EXPECT_EQ(clock.getCurrentTimeSec(), FakeClock::kStart);
    EXPECT_EQ(without.getCurrentTimeSec(), FakeClock::kStart) << "the older journal's clock is left";

    clock.setClock(nullptr);
    int result = 7;
    EXPECT_EQ(without.getCurrentTimeSec(), -1);
    EXPECT_EQ(without.getCurrentTime(), "");
    EXPECT_EQ(clock.createEntryId("5"), "00000005");
    EXPECT_EQ(clock.formatTimeDate(5), "");
    EXPECT_FALSE(clock.compareTimes("2026-11-21T05:22:05Z", "2026-11-21T05:22:05Z", result));
}

}  // namespace
}  // namespace journaltest
