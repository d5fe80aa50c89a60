#include "host/digits/NumberPatterns.h"

#include <gtest/gtest.h>

#include <string>

#include "host/digits/DigitAnalysis.h"
#include "tests/support/Table.h"

namespace {

TEST(NumberPatterns, MatchANumberInEverySpellingAndNoOther) {
    host::DigitAnalysis digits("DE", {"*61"});
    for (const auto& row : journaltest::table(3, R"(
        030123456; 0049 (0)30 123456; *61 030 123456; 9030123456; +49 30 123456 | 030 1234567; 123456; 4711   | 030 123456
        030 123456                                                              | 31 123456                   | +49 30 123456
        47-11; *614711; 94711                                                   | 47110; 14711; 030 4711      | 4711
        0800 1234567; 0800; *610800 1; +49 800 1234567                          | 08; +43 800 1234567; 1 0800 | 0800*
        0043 1 123456; +43 1 123456                                             | +49 43 123456; 43           | +43*
        0305512; +49 30 55 12 34                                                | +49 30 54 12 34             | 030 55*
        4711; 47                                                                | 030 4711; 1147              | 47*
        )")) {
        const host::NumberPatterns patterns({row[2]}, {"*61", "9", ""}, digits);
        for (const std::string& number : journaltest::split(row[0], ';')) {
            EXPECT_TRUE(patterns.matches(number)) << row[2] << ": " << number;
        }
        for (const std::string& number : journaltest::split(row[1], ';')) {
            EXPECT_FALSE(patterns.matches(number)) << row[2] << ": " << number;
        }
    }
}

}  // namespace
