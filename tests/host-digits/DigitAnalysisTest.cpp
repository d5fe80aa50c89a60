#include "host/digits/DigitAnalysis.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using host::DigitAnalysis;

std::string normalised(std::string number, const std::string& region = "DE") {
    DigitAnalysis(region, {"*61", "81"}).normalise(number);
    return number;
}

TEST(DigitAnalysis, BringsTheSpellingsOfANumberTogether) {
    const struct {
        const char* region;
        const char* written;
        const char* same;
    } cases[] = {
        {"DE", "030 / 1234-56", "+4930123456"},
        {"DE", "(030) 12.34.56", "+4930123456"},
        {"DE", "0049 (0) 30 123456", "+4930123456"},
        {"DE", "+49 030 123456", "+4930123456"},
        {"DE",
         "\xe2\x80\xad+49\xc2\xa0"
         "30 123\xe2\x80\x91"
         "456\xe2\x80\xac",
         "+4930123456"},
        {"DE", "\t+1-202-555-0100 ", "+12025550100"},
        {"DE", "01555 0100123", "+4915550100123"},
        {"US", "(202) 555-0100", "+12025550100"},
        {"US", "1 202 555 0100", "+12025550100"},
        {"US", "011 49 30 123456", "+4930123456"},
        {"IT", "06 1234 5678", "+390612345678"},
        {"IT", "+39 (0)6 1234 5678", "+390612345678"},
        {"ES", "912 34 56 78", "+34912345678"},
        {"XX", "+49 (0)30 123456", "+4930123456"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(normalised(each.written, each.region), each.same) << each.region << ' ' << each.written;
    }
}

TEST(DigitAnalysis, LeavesTheDigitsThatAreDialledInsideOrLocally) {
    const struct {
        const char* region;
        const char* written;
        const char* same;
    } cases[] = {
        {"DE", "47-11", "4711"},
        {"DE", "110", "110"},
        {"DE", "123 456", "123456"},
        {"DE", "03012", "03012"},
        {"DE", "*61 4711#", "*614711#"},
        {"DE", "810 30 123456", "81030123456"},
        {"DE", "000", "000"},
        {"DE", "0", "0"},
        {"DE", "+49", "+49"},
        {"DE", "+999 4711", "+9994711"},
        {"US", "555-0100", "5550100"},
        {"US", "911", "911"},
        {"LU", "4711", "4711"},
        {"XX", "030 123456", "030123456"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(normalised(each.written, each.region), each.same) << each.region << ' ' << each.written;
    }
}

TEST(DigitAnalysis, LeavesWhatIsNoNumberAsItIs) {
    for (const char* const text : {"", "-", "( )", "+", "sip:ada.miller@example.org", "ada miller", "49+30",
                                   "++49", "1800-FLOWERS", "\xc3\xbc 12", "12,34"}) {
        EXPECT_EQ(normalised(text), text);
    }
}

TEST(DigitAnalysis, NormalisesANumberOnlyOnce) {
    for (const char* const text : {"0049 (0)30 123456", "+49 00 30 123456", "00 49", "000 30 12345",
                                   "030/1234567", "(((", "00(0)1", "0711 711"}) {
        EXPECT_EQ(normalised(normalised(text)), normalised(text)) << text;
    }
}

TEST(DigitAnalysis, KnowsAFeatureAccessCodeAloneAndBeforeANumber) {
    DigitAnalysis digits("DE", {"*61", "# 7 2", "", " "});
    for (const char* const code : {"*61", "*614711", "* 61 (4711)", "#72", "#72#"}) {
        EXPECT_TRUE(digits.isFeatureAccessCode(code)) << code;
    }
    for (const char* const number : {"", "*6", "61", "4711*61", "#7", "*16", "+*61"}) {
        EXPECT_FALSE(digits.isFeatureAccessCode(number)) << number;
    }
}

}  // namespace
