#include "host/faces/PlainText.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

namespace host {
namespace {

TEST(PlainText, ShowsNothingThatCouldSteerATerminal) {
    struct Row {
        std::string text;
        std::string shown;
    };
    const std::vector<Row> rows{
        {"Ann Müller", "Ann Müller"},
        {"two\nlines\r\n", "two\\nlines\\r\\n"},
        {"\x1b[31mred", "\\x1b[31mred"},
        {std::string("nul\0byte", 8), "nul\\x00byte"},
        {"\x7f", "\\x7f"},
        {"M\xfcller", "M\\xfcller"},
        {"half \xe2\x82", "half \\xe2\\x82"},
        {"\xc2\x9b"
         "31m",
         "\\xc2\\x9b31m"},
        {"line\u2028separator", "line\\xe2\\x80\\xa8separator"},
        {"\u202eturned", "\\xe2\\x80\\xaeturned"},
        {"日本 😀", "日本 😀"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(printable(row.text), row.shown);
    }
}

TEST(PlainText, CountsColumnsAsATerminalDoes) {
    EXPECT_EQ(displayWidth(""), 0U);
    EXPECT_EQ(displayWidth("Müller"), 6U);
    EXPECT_EQ(displayWidth("Mu\u0308ller"), 6U);
    EXPECT_EQ(displayWidth("日本"), 4U);
    EXPECT_EQ(displayWidth("😀"), 2U);
    EXPECT_EQ(padded("日本", 6), "日本  ");
    EXPECT_EQ(padded("longer", 3), "longer");
    EXPECT_EQ(shortened("Müller", 6), "Müller");
    EXPECT_EQ(shortened("Mu\u0308ller", 4), "Mu\u0308l…");
    EXPECT_EQ(shortened("日本語", 5), "日本…");
    EXPECT_EQ(shortened("日本語", 4), "日…");
    EXPECT_EQ(shortened("日本語", 1), "…");
}

class InZone : public ::testing::Test {
protected:
    static void zone(const char* name) {
        ::setenv("TZ", name, 1);
        ::tzset();
    }
    void TearDown() override {
        ::unsetenv("TZ");
        ::tzset();
    }
};

TEST_F(InZone, ShowsTimesInTheZoneOfTheUser) {
    zone("CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(localTime("2026-11-21T05:22:05Z"), "2026-11-21 06:22:05");
    EXPECT_EQ(localTime("2026-07-21T23:22:05Z"), "2026-07-22 01:22:05");
    zone("UTC0");
    EXPECT_EQ(localTime("2026-11-21T05:22:05Z"), "2026-11-21 05:22:05");
}

TEST(PlainText, ShowsATimeThatIsNoneAsItIs) {
    for (const char* text :
         {"", "yesterday", "2026-11-21", "2026-11-21T05:22:05Z and more", "2026-13-21T05:22:05Z"}) {
        EXPECT_EQ(localTime(text), text);
    }
}

TEST(PlainText, NamesAPartyByWhatIsKnownOfIt) {
    struct Row {
        std::string first, surname, number, text;
    };
    const std::vector<Row> rows{
        {"Ann", "Müller", "4711", "Ann Müller (4711)"},
        {"", "Müller", "4711", "Müller (4711)"},
        {"Ann", "", "", "Ann"},
        {"", "", "4711", "4711"},
        {"", "4711", "4711", "4711"},
        {"", "", "", "unknown"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(partyText(row.first, row.surname, row.number), row.text);
    }
}

}  // namespace
}  // namespace host
