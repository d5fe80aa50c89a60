#include "host/clock/SystemClock.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>

namespace {

using host::SystemClock;
using DateTime = ClockServiceIfc::DateTime;
using std::chrono::milliseconds;
using std::chrono::system_clock;

SystemClock clockAt(long milliseconds1970) {
    return SystemClock(
        [milliseconds1970] { return system_clock::time_point(milliseconds(milliseconds1970)); });
}

std::string text(const DateTime& time) {
    char buffer[80];
    std::snprintf(buffer, sizeof(buffer), "%04d-%02d-%02d %02d:%02d:%02d", time.year, time.month, time.day,
                  time.hour, time.minute, time.second);
    return buffer;
}

TEST(SystemClock, ShowsTheSameTimeInAllItsForms) {
    SystemClock clock = clockAt(1795238525999);
    EXPECT_EQ(text(clock.getDateTime()), "2026-11-21 05:22:05");
    EXPECT_EQ(clock.getSeconds(), 1795238525);
    EXPECT_EQ(clock.formatTimeDate(clock.getSeconds()), "2026-11-21T05:22:05Z");
}

TEST(SystemClock, CountsFractionsOfSecondsBefore1970Downwards) {
    SystemClock clock = clockAt(-1);
    EXPECT_EQ(clock.getSeconds(), -1);
    EXPECT_EQ(text(clock.getDateTime()), "1969-12-31 23:59:59");
}

TEST(SystemClock, TellsTheMachinesTimeUnlessToldOtherwise) {
    SystemClock clock;
    const long before = std::time(nullptr);
    const long told = clock.getSeconds();
    // time() may lag behind by a tick of the kernel.
    EXPECT_GE(told, before);
    EXPECT_LE(told, std::time(nullptr) + 1);
}

TEST(SystemClock, FormatsInFixedWidthsWhateverItIsGiven) {
    SystemClock clock;
    EXPECT_EQ(clock.formatTimeDate(0), "1970-01-01T00:00:00Z");
    EXPECT_EQ(clock.formatTimeDate(951782400), "2000-02-29T00:00:00Z");
    EXPECT_EQ(clock.formatTimeDate(-1), "1969-12-31T23:59:59Z");
    EXPECT_EQ(clock.formatTimeDate(std::numeric_limits<long>::max()), "9999-12-31T23:59:59Z");
    EXPECT_EQ(clock.formatTimeDate(std::numeric_limits<long>::min()), "0000-01-01T00:00:00Z");
}

RC_GTEST_PROP(SystemClock, AgreesWithTheCLibraryInBothDirections, ()) {
    const long seconds = *rc::gen::inRange(-5000000000L, 100000000000L);
    std::tm expected{};
    const std::time_t time = seconds;
    RC_ASSERT(::gmtime_r(&time, &expected) != nullptr);
    char formatted[80];
    std::strftime(formatted, sizeof(formatted), "%Y-%m-%dT%H:%M:%SZ", &expected);
    SystemClock clock;
    RC_ASSERT(clock.formatTimeDate(seconds) == formatted);
    DateTime split;
    RC_ASSERT(clock.splitTimeDate(formatted, split));
    RC_ASSERT(split.year == expected.tm_year + 1900);
    RC_ASSERT(split.month == expected.tm_mon + 1);
    RC_ASSERT(split.day == expected.tm_mday);
    RC_ASSERT(split.hour == expected.tm_hour);
    RC_ASSERT(split.minute == expected.tm_min);
    RC_ASSERT(split.second == expected.tm_sec);
}

struct Case {
    const char* text;
    const char* split;  // null: it is no time
};

class SplitTimeDate : public testing::TestWithParam<Case> {};

TEST_P(SplitTimeDate, ReadsTimesAndNothingElse) {
    SystemClock clock;
    DateTime result{1, 2, 3, 4, 5, 6};
    const bool isTime = clock.splitTimeDate(GetParam().text, result);
    EXPECT_EQ(isTime, GetParam().split != nullptr);
    EXPECT_EQ(text(result), isTime ? GetParam().split : "0001-02-03 04:05:06");
}

constexpr Case kCases[] = {
    {"2026-11-21T05:22:05Z", "2026-11-21 05:22:05"},
    {"2026-11-21T05:22:05", "2026-11-21 05:22:05"},
    {"2026-11-21 05:22:05", "2026-11-21 05:22:05"},
    {"2026-11-21t05:22:05z", "2026-11-21 05:22:05"},
    {"2026-11-21T05:22:05.999Z", "2026-11-21 05:22:05"},
    {"2026-11-21T05:22:05,1", "2026-11-21 05:22:05"},
    {"2026-11-21T05:22:05+01:00", "2026-11-21 04:22:05"},
    {"2026-11-21T05:22:05.5+0130", "2026-11-21 03:52:05"},
    {"2026-11-21T05:22:05-08", "2026-11-21 13:22:05"},
    {"2027-01-01T00:30:00+01:00", "2026-12-31 23:30:00"},
    {"2024-02-28T23:30:00-01:00", "2024-02-29 00:30:00"},
    {"2016-12-31T23:59:60Z", "2016-12-31 23:59:59"},
    {"0001-01-01T00:00:00Z", "0001-01-01 00:00:00"},
    {"", nullptr},
    {"now", nullptr},
    {"2026-11-21", nullptr},
    {"2026-11-21T05:22", nullptr},
    {"2026-11-21T05:22:5Z", nullptr},
    {"2026-02-29T00:00:00Z", nullptr},
    {"2026-13-01T00:00:00Z", nullptr},
    {"2026-00-10T00:00:00Z", nullptr},
    {"2026-11-00T00:00:00Z", nullptr},
    {"2026-11-21T24:00:00Z", nullptr},
    {"2026-11-21T05:60:05Z", nullptr},
    {"2026-11-21T05:22:61Z", nullptr},
    {"2026-11-21T05:22:05.Z", nullptr},
    {"2026-11-21T05:22:05+1:00", nullptr},
    {"2026-11-21T05:22:05+01:", nullptr},
    {"2026-11-21T05:22:05+01:60", nullptr},
    {"2026-11-21T05:22:05+24:00", nullptr},
    {"2026-11-21T05:22:05Z ", nullptr},
    {" 2026-11-21T05:22:05Z", nullptr},
    {"2026-11-21T05:22:05Z0000002A", nullptr},
    {"2026-11-21X05:22:05Z", nullptr},
    {"2026/11/21T05:22:05Z", nullptr},
    {"-026-11-21T05:22:05Z", nullptr},
    {"20260-11-21T05:22:05Z", nullptr},
};

INSTANTIATE_TEST_SUITE_P(Texts, SplitTimeDate, testing::ValuesIn(kCases));

}  // namespace
