// The priority goes down by at most five, and is always restored, also without the privilege to raise it.

#include <algorithm>

#include <gtest/gtest.h>

#include "src/JournalServiceEvents/switch-log/LoweredPriority.h"

namespace {

using journal::LoweredPriority;

TEST(LoweredPriority, GoesDownOnlyWhereItCanComeBack) {
    constexpr int kNoLimit = 20;
    const struct {
        int before;
        bool privileged;
        int leastAllowed;
        int during;
    } rows[] = {{0, true, kNoLimit, 5},     {13, true, kNoLimit, 18},    {14, true, kNoLimit, 19},
                {-19, true, kNoLimit, -14}, {-20, false, kNoLimit, -20}, {0, false, kNoLimit, 0},
                {0, false, 0, 5},           {-1, false, 0, -1},          {-20, false, -20, -15}};
    for (const auto& row : rows) {
        int nice = row.before;
        const LoweredPriority::Kernel kernel{[&nice] { return nice; },
                                             [&nice, &row](int value) {
                                                 value = std::clamp(value, -20, 19);
                                                 const bool refused = value < nice && !row.privileged &&
                                                                      value < row.leastAllowed;
                                                 nice = refused ? nice : value;
                                                 return !refused;
                                             },
                                             [&row] { return row.leastAllowed; }};
        {
            const LoweredPriority priority("test", kernel);
            EXPECT_EQ(nice, row.during) << row.before << (row.privileged ? " privileged" : "");
        }
        EXPECT_EQ(nice, row.before);
    }
}

}  // namespace
