#include "platform/client-utils/ClientUtils.h"

#include <climits>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "platform/client-utils/Utf8.h"
#include "tests/journal-library/RandomItems.h"

namespace {

struct Escape {
    const char* why;
    std::string bytes;
    std::string escaped;
};

// U+EE00 + byte, in UTF-8.
std::string placeholder(unsigned byte) {
    std::string text;
    utf8::append(text, 0xee00U + byte);
    return text;
}

class EscapeXMLString : public ::testing::TestWithParam<Escape> {};

TEST_P(EscapeXMLString, WritesWhatXmlCanCarry) {
    EXPECT_EQ(ClientUtils::escapeXMLString(GetParam().bytes), GetParam().escaped) << GetParam().why;
}

INSTANTIATE_TEST_SUITE_P(
    Table, EscapeXMLString,
    ::testing::Values(
        Escape{"plain text stays", "Ada Miller", "Ada Miller"}, Escape{"nothing stays nothing", "", ""},
        Escape{"markup and quotes", "<a b=\"c\" d='e'>&</a>",
               "&lt;a b=&quot;c&quot; d=&apos;e&apos;&gt;&amp;&lt;/a&gt;"},
        Escape{"a carriage return would become a line feed", "a\r\nb", "a&#13;\nb"},
        Escape{"tab and line feed are allowed", "\t\n", "\t\n"},
        Escape{"UTF-8 of every length stays", "\x7f\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80",
               "\x7f\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80"},
        Escape{"NUL", std::string(1, '\0'), placeholder(0)},
        Escape{"a control character", "\x1b", placeholder(0x1b)},
        Escape{"a lone continuation byte", "\x80", placeholder(0x80)},
        Escape{"a sequence cut short", "\xE2\x82", placeholder(0xe2) + placeholder(0x82)},
        Escape{"a sequence broken by a plain letter",
               "\xE2\x82"
               "A",
               placeholder(0xe2) + placeholder(0x82) + "A"},
        Escape{"an overlong form of NUL", "\xC0\x80", placeholder(0xc0) + placeholder(0x80)},
        Escape{"an overlong form of three bytes", "\xE0\x80\xAF",
               placeholder(0xe0) + placeholder(0x80) + placeholder(0xaf)},
        Escape{"a surrogate", "\xED\xA0\x80", placeholder(0xed) + placeholder(0xa0) + placeholder(0x80)},
        Escape{"U+FFFF", "\xEF\xBF\xBF", placeholder(0xef) + placeholder(0xbf) + placeholder(0xbf)},
        Escape{"beyond U+10FFFF", "\xF4\x90\x80\x80",
               placeholder(0xf4) + placeholder(0x90) + placeholder(0x80) + placeholder(0x80)},
        Escape{"a genuine U+EE41", "\xEE\xB9\x81", placeholder(0xee) + placeholder(0xb9) + placeholder(0x81)},
        Escape{"its neighbours below and above stay", "\xEE\xB7\xBF\xEE\xBC\x80", "\xEE\xB7\xBF\xEE\xBC\x80"},
        Escape{"good and bad mixed",
               "M\xFC"
               "ller & \xC3\xBC",
               "M" + placeholder(0xfc) + "ller &amp; \xC3\xBC"}));

// What a parser does with the references that escapeXMLString writes.
std::string resolved(std::string text) {
    for (const auto& [reference, character] :
         std::vector<std::pair<std::string, std::string>>{{"&lt;", "<"},
                                                          {"&gt;", ">"},
                                                          {"&quot;", "\""},
                                                          {"&apos;", "'"},
                                                          {"&#13;", "\r"},
                                                          {"&amp;", "&"}}) {
        for (auto at = text.find(reference); at != std::string::npos; at = text.find(reference, at + 1)) {
            text.replace(at, reference.size(), character);
        }
    }
    return text;
}

RC_GTEST_PROP(EscapeXMLString, IsUndoneByReadingAndUnescaping, ()) {
    const std::string bytes = journaltest::someText();
    const std::string escaped = ClientUtils::escapeXMLString(bytes);
    RC_ASSERT(utf8::isXmlText(escaped));
    RC_ASSERT(escaped.find_first_of("<>\"'\r") == std::string::npos);
    RC_ASSERT(ClientUtils::unescapeText(resolved(escaped)) == bytes);
}

TEST(UnescapeText, LeavesAloneWhatIsNoPlaceholder) {
    EXPECT_EQ(ClientUtils::unescapeText("M\xC3\xBCller \xEE\xB7\xBF"), "M\xC3\xBCller \xEE\xB7\xBF");
    EXPECT_EQ(ClientUtils::unescapeText("cut \xEE\xB9"), "cut \xEE\xB9");
}

TEST(IsStringBool, AcceptsFourWordsOfWhichTwoAreTrue) {
    for (const std::string word : {"true", "1", "false", "0"}) {
        EXPECT_TRUE(ClientUtils::isStringBool(word)) << word;
        EXPECT_EQ(ClientUtils::stob(word), word == "true" || word == "1") << word;
    }
    for (const char* word : {"", "TRUE", "True", " true", "true ", "yes", "2", "00", "on"}) {
        EXPECT_FALSE(ClientUtils::isStringBool(word)) << word;
        EXPECT_FALSE(ClientUtils::stob(word)) << word;
    }
}

TEST(Itos, WritesTheWholeRange) {
    EXPECT_EQ(ClientUtils::itos(0U), "0");
    EXPECT_EQ(ClientUtils::itos(UINT_MAX), "4294967295");
    EXPECT_EQ(ClientUtils::itos(INT_MIN), "-2147483648");
}

}  // namespace
