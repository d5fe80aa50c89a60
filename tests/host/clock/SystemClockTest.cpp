#include "host/clock/SystemClock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <future>
#include <limits>
#include <stdexcept>
#include <string>

#include "host/calls/DeliveryContext.h"
#include "tests/support/Table.h"

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

/// Returns the time that the clock reads, or "none". Checks that a failure leaves the result unchanged.
std::string parsed(const std::string& timeDate) {
    SystemClock clock;
    DateTime result{1, 2, 3, 4, 5, 6};
    const bool isTime = clock.splitTimeDate(timeDate, result);
    EXPECT_TRUE(isTime || text(result) == "0001-02-03 04:05:06");
    return isTime ? text(result) : "none";
}

TEST(SystemClock, HasTheSameTimeInAllFormsAndLimitsItToFourDigitsOfAYear) {
    EXPECT_EQ(text(clockAt(-1).getDateTime()), "1969-12-31 23:59:59");
    SystemClock clock = clockAt(1795238525999);
    EXPECT_EQ(text(clock.getDateTime()), "2026-11-21 05:22:05");
    EXPECT_EQ(clock.formatTimeDate(clock.getSeconds()), "2026-11-21T05:22:05Z");
    EXPECT_EQ(clock.formatTimeDate(std::numeric_limits<long>::max()), "9999-12-31T23:59:59Z");
    EXPECT_EQ(clock.formatTimeDate(std::numeric_limits<long>::min()), "0000-01-01T00:00:00Z");
}

TEST(SystemClock, ReturnsTheTimeOfTheDeliveredEventOnItsThread) {
    SystemClock clock = clockAt(5000);
    host::DeliveryContext earlier{.time = system_clock::time_point(milliseconds(3999))};
    EXPECT_THROW(earlier.around([&] {
        EXPECT_EQ(clock.getSeconds(), 3);
        EXPECT_EQ(text(clock.getDateTime()), "1970-01-01 00:00:03");
        EXPECT_EQ(std::async(std::launch::async, [&] { return clock.getSeconds(); }).get(), 5);
        host::DeliveryContext now;
        now.around([&] { EXPECT_EQ(clock.getSeconds(), 5); });
        EXPECT_EQ(host::DeliveryContext::current(), &earlier);
        throw std::runtime_error("the receiver fails");
    }),
                 std::runtime_error);
    EXPECT_EQ(clock.getSeconds(), 5);
}

TEST(SplitTimeDate, ReadsValidTimesOnly) {
    for (const auto& row : journaltest::table(2, R"(
        2026-11-21 05:22:05 | 2026-11-21T05:22:05Z; 2026-11-21T05:22:05; 2026-11-21 05:22:05
        2026-11-21 05:22:05 | 2026-11-21t05:22:05z; 2026-11-21T05:22:05.999Z; 2026-11-21T05:22:05,1
        2026-11-21 03:52:05 | 2026-11-21T05:22:05.5+0130
        2026-11-21 13:22:05 | 2026-11-21T05:22:05-08
        2026-12-31 23:30:00 | 2027-01-01T00:30:00+01:00
        2024-02-29 00:30:00 | 2024-02-28T23:30:00-01:00
        2016-12-31 23:59:59 | 2016-12-31T23:59:60Z
        0001-01-01 00:00:00 | 0001-01-01T00:00:00Z
        none | now; ; 2026-11-21; 2026-11-21T05:22; 2026-11-21T05:22:5Z; 2026-02-29T00:00:00Z
        none | 2026-13-01T00:00:00Z; 2026-00-10T00:00:00Z; 2026-11-00T00:00:00Z; 2026-11-21T24:00:00Z
        none | 2026-11-21T05:60:05Z; 2026-11-21T05:22:61Z; 2026-11-21T05:22:05.Z
        none | 2026-11-21T05:22:05+1:00; 2026-11-21T05:22:05+01:; 2026-11-21T05:22:05+01:60
        none | 2026-11-21T05:22:05+24:00; 2026-11-21T05:22:05Z0000002A; 2026-11-21X05:22:05Z
        none | 2026/11/21T05:22:05Z; -026-11-21T05:22:05Z; 20260-11-21T05:22:05Z
        )")) {
        for (const std::string& timeDate : journaltest::split(row[1], ';')) {
            EXPECT_EQ(parsed(timeDate), row[0]) << timeDate;
        }
    }
    EXPECT_EQ(parsed("2026-11-21T05:22:05Z "), "none");
    EXPECT_EQ(parsed(" 2026-11-21T05:22:05Z"), "none");
}

}  // namespace
