#include "host/digits/DigitAnalysis.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "tests/support/Table.h"

namespace {

using host::DigitAnalysis;

std::string normalised(std::string number, const std::string& region = "DE") {
    DigitAnalysis(region, {"*61", "81"}).normalise(number);
    return number;
}

TEST(DigitAnalysis, NormalisesTheSpellingsOfANumber) {
    for (const auto& row : journaltest::table(3, R"(
        DE | +4930123456    | 030 / 1234-56; (030) 12.34.56; 0049 (0) 30 123456; +49 030 123456
        DE | +4915550100123 | 01555 0100123
        US | +12025550100   | (202) 555-0100; 1 202 555 0100
        US | +4930123456    | 011 49 30 123456
        IT | +390612345678  | 06 1234 5678; +39 (0)6 1234 5678
        ES | +34912345678   | 912 34 56 78
        XX | +4930123456    | +49 (0)30 123456
        DE | 4711           | 47-11
        DE | 110            | 110
        DE | 123456         | 123 456
        DE | *614711#       | *61 4711#
        DE | 81030123456    | 810 30 123456
        DE | 000            | 000
        DE | +49            | +49
        DE | +9994711       | +999 4711
        US | 5550100        | 555-0100
        LU | 4711           | 4711
        XX | 030123456      | 030 123456
        )")) {
        for (const std::string& spelling : journaltest::split(row[2], ';')) {
            EXPECT_EQ(normalised(spelling, row[0]), row[1]) << row[0] << ' ' << spelling;
        }
    }
    EXPECT_EQ(normalised("\t+1-202-555-0100 "), "+12025550100");
    // Pasted from a document: marks of direction, a no-break space and a no-break hyphen.
    EXPECT_EQ(normalised("\u202d+49\u00a030 123\u2011456\u202c"), "+4930123456");
}

TEST(DigitAnalysis, LeavesOtherTextsUnchanged) {
    for (const char* const text : {"", "-", "( )", "+", "sip:ada.miller@example.org", "ada miller", "49+30",
                                   "++49", "1800-FLOWERS", "\xc3\xbc 12", "12,34"}) {
        EXPECT_EQ(normalised(text), text);
    }
}

// The number library takes 20 seconds for so many digits.
TEST(DigitAnalysis, ComparesALongTextAsDialledAndAtOnce) {
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(normalised("030 " + std::string(60000, '2')), "030" + std::string(60000, '2'));
    EXPECT_EQ(normalised("+" + std::string(60000, '4')), "+" + std::string(60000, '4'));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
}

TEST(DigitAnalysis, NormalisesIdempotently) {
    for (const char* const text : {"0049 (0)30 123456", "+49 00 30 123456", "00 49", "000 30 12345",
                                   "030/1234567", "(((", "00(0)1", "0711 711"}) {
        EXPECT_EQ(normalised(normalised(text)), normalised(text)) << text;
    }
}

TEST(DigitAnalysis, RecognisesAFeatureAccessCodeAloneAndBeforeANumber) {
    DigitAnalysis digits("DE", {"*61", "# 7 2", "", " "});
    for (const char* const code : {"*61", "*614711", "* 61 (4711)", "#72", "#72#"}) {
        EXPECT_TRUE(digits.isFeatureAccessCode(code)) << code;
    }
    for (const char* const number : {"", "*6", "61", "4711*61", "#7", "*16", "+*61"}) {
        EXPECT_FALSE(digits.isFeatureAccessCode(number)) << number;
    }
}

}  // namespace
