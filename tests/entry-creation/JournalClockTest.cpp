#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "src/JournalService/JournalClock.h"
#include "tests/support/FakeClock.h"

namespace journaltest {
namespace {

class JournalClock : public testing::Test {
protected:
    void SetUp() override { clock.adoptClock(&time); }

    FakeClock time;
    journal::JournalClock clock;
};

TEST_F(JournalClock, MakesEntryIdsOfTheTimeAndTheLow32BitsOfTheCallId) {
    const struct {
        const char* callId;
        const char* digits;
    } ids[] = {{"1", "00000001"},          {"255", "000000FF"}, {"4294967295", "FFFFFFFF"},
               {"4294967296", "00000000"}, {"-1", "FFFFFFFF"},  {"12345678901", "DFDC1C35"},
               {"call 7", "00000000"},     {"", "00000000"},    {"12ab", "0000000C"},
               {" 16", "00000010"}};
    for (const auto& id : ids) {
        EXPECT_EQ(clock.createEntryId(id.callId), std::string("2026-11-21T05:22:05Z") + id.digits)
            << id.callId;
    }
    time.set(0);
    EXPECT_EQ(clock.createEntryId("1"), "1970-01-01T00:00:00Z00000001");
}

TEST_F(JournalClock, WritesDurationsAsMinutesAndSeconds) {
    const struct {
        long start, end;
        const char* text;
    } durations[] = {{100, 100, "00:00"}, {0, 61, "01:01"},  {0, 6000, "100:00"}, {200, 100, "00:00"},
                     {-1, -1, "00:00"},   {40, 99, "00:59"}, {0, 60, "01:00"},    {5, 3604, "59:59"}};
    for (const auto& duration : durations) {
        EXPECT_EQ(journal::JournalClock::formatDuration(duration.start, duration.end), duration.text);
    }
}

TEST_F(JournalClock, ComparesTimesFromTheMostSignificantField) {
    const std::string base = "2026-11-21T05:22:05Z";
    const struct {
        const char* time;
        int result;
    } others[] = {{"2025-12-31T23:59:59Z", 1}, {"2026-10-31T23:59:59Z", 1},  {"2026-11-20T23:59:59Z", 1},
                  {"2026-11-21T04:59:59Z", 1}, {"2026-11-21T05:21:59Z", 1},  {"2026-11-21T05:22:04Z", 1},
                  {"2026-11-21T05:22:05", 0},  {"2026-11-21T05:22:06Z", -1}, {"2027-01-01T00:00:00Z", -1}};
    int result = 7;
    EXPECT_FALSE(clock.compareTimes(base, "yesterday", result));
    EXPECT_EQ(result, 7);
    for (const auto& other : others) {
        EXPECT_TRUE(clock.compareTimes(base, other.time, result));
        EXPECT_EQ(result, other.result) << other.time;
    }
}

TEST_F(JournalClock, IsWithoutTimeWhenThereIsNoClock) {
    clock.adoptClock(nullptr);
    int result = 7;
    EXPECT_EQ(clock.getCurrentTime(), "");
    EXPECT_EQ(clock.getCurrentTimeSec(), -1);
    EXPECT_EQ(clock.createEntryId("5"), "00000005");
    EXPECT_EQ(clock.formatTimeDate(5), "");
    EXPECT_FALSE(clock.compareTimes("2026-11-21T05:22:05Z", "2026-11-21T05:22:05Z", result));
}

TEST_F(JournalClock, OfOneJournalIsNotAnothersAndOfNoneTheLatestThatLives) {
    const journal::JournalClock without;
    EXPECT_EQ(without.getCurrentTimeSec(), FakeClock::kStart);
    FakeClock otherTime;
    otherTime.set(86400);
    auto other = std::make_unique<journal::JournalClock>();
    other->adoptClock(&otherTime);
    EXPECT_EQ(other->getCurrentTimeSec(), 86400);
    EXPECT_EQ(without.getCurrentTimeSec(), 86400);
    EXPECT_EQ(clock.getCurrentTimeSec(), FakeClock::kStart);
    other.reset();
    EXPECT_EQ(clock.getCurrentTimeSec(), FakeClock::kStart);
    EXPECT_EQ(without.getCurrentTimeSec(), FakeClock::kStart) << "the older journal's clock is left";
    clock.adoptClock(nullptr);
    EXPECT_EQ(without.getCurrentTimeSec(), -1);
}

}  // namespace
}  // namespace journaltest
