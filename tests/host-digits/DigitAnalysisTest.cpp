#include "host/digits/DigitAnalysis.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using host::DigitAnalysis;

std::string normalised(std::string number) {
    DigitAnalysis({}).normalise(number);
    return number;
}

TEST(DigitAnalysis, BringsTheSpellingsOfANumberTogether) {
    const struct {
        const char* written;
        const char* same;
    } cases[] = {
        {"4711", "4711"},
        {"030 / 1234-56", "030123456"},
        {"(030) 12.34.56", "030123456"},
        {"+49 30 123456", "+4930123456"},
        {"0049 30 123456", "+4930123456"},
        {"+49 (0)30 123456", "+4930123456"},
        {"0049 (0) 30 123456", "+4930123456"},
        {"\t+1-202-555-0100 ", "+12025550100"},
        {"*61 4711#", "*614711#"},
        {"000", "000"},
        {"00", "00"},
        {"0", "0"},
        {"(0)30 1234", "0301234"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(normalised(each.written), each.same) << each.written;
    }
}

TEST(DigitAnalysis, LeavesWhatIsNoNumberAsItIs) {
    for (const char* const text : {"", "-", "( )", "+", "sip:ada.miller@example.org", "ada miller", "49+30",
                                   "++49", "1800-FLOWERS", "\xc3\xbc 12", "12,34"}) {
        EXPECT_EQ(normalised(text), text);
    }
}

TEST(DigitAnalysis, NormalisesANumberOnlyOnce) {
    for (const char* const text : {"0049 (0)30 12", "00 49", "+49", "030/12", "(((", "00(0)1"}) {
        EXPECT_EQ(normalised(normalised(text)), normalised(text)) << text;
    }
}

TEST(DigitAnalysis, KnowsAFeatureAccessCodeAloneAndBeforeANumber) {
    DigitAnalysis digits({"*61", "# 7 2", "", " "});
    for (const char* const code : {"*61", "*614711", "* 61 (4711)", "#72", "#72#"}) {
        EXPECT_TRUE(digits.isFeatureAccessCode(code)) << code;
    }
    for (const char* const number : {"", "*6", "61", "4711*61", "#7", "*16", "+*61"}) {
        EXPECT_FALSE(digits.isFeatureAccessCode(number)) << number;
    }
}

TEST(DigitAnalysis, KnowsNoCodeWhenItWasGivenNone) {
    EXPECT_FALSE(DigitAnalysis({}).isFeatureAccessCode("*61"));
    EXPECT_FALSE(DigitAnalysis({""}).isFeatureAccessCode("4711"));
}

}  // namespace
