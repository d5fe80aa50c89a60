#include "host/log/LineText.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using host::kMaxLogText;
using host::lineText;
using namespace std::string_literals;

struct Case {
    const char* name;
    std::string text;
    std::string line;
};

TEST(LineText, ShowsWhatCouldBreakOrForgeALine) {
    const Case cases[] = {
        {"plain", "calling 4711", "calling 4711"},
        {"nothing", "", ""},
        {"line feed", "Ada\n2026-11-21T05:22:05.123Z error [Journal Service] forged",
         R"(Ada\n2026-11-21T05:22:05.123Z error [Journal Service] forged)"},
        {"carriage return and tab", "a\rb\tc", R"(a\rb\tc)"},
        {"terminal escape", "\x1b[2Jgone", R"(\x1b[2Jgone)"},
        {"NUL and DEL", "a\0b\x7f"s, R"(a\x00b\x7f)"},
        {"C1 control",
         "a\xc2\x9b"
         "b",
         R"(a\xc2\x9bb)"},
        {"line separator",
         "a\xe2\x80\xa8"
         "b",
         R"(a\xe2\x80\xa8b)"},
        {"right-to-left override",
         "a\xe2\x80\xae"
         "b",
         R"(a\xe2\x80\xaeb)"},
        {"umlaut and emoji", "M\xc3\xbcller \xf0\x9f\x98\x80", "M\xc3\xbcller \xf0\x9f\x98\x80"},
        {"cut character", "M\xc3", R"(M\xc3)"},
        {"overlong slash", "\xc0\xaf", R"(\xc0\xaf)"},
        {"line breaks at the end", "DAS resp ok \n\r\n", "DAS resp ok "},
        {"only line breaks", "\n\n", ""},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(lineText(each.text), each.line) << each.name;
    }
}

TEST(LineText, CutsALongTextAndSaysHowMuchIsMissing) {
    const std::string longest(kMaxLogText, 'x');
    EXPECT_EQ(lineText(longest), longest);
    EXPECT_EQ(lineText(longest + "yyy"), longest + " ... (3 bytes more)");
}

TEST(LineText, CutsWithinACharacterWithoutReadingBehindTheCut) {
    const std::string line = lineText(std::string(kMaxLogText - 1, 'x') + "\xc3\xbc");
    EXPECT_EQ(line.substr(kMaxLogText - 1), R"(\xc3 ... (1 bytes more))");
}

}  // namespace
