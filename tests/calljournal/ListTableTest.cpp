#include "apps/calljournal/ListTable.h"

#include <gtest/gtest.h>

namespace host {
namespace {

TEST(ListTable, AlignsColumnsByWhatATerminalShows) {
    EXPECT_EQ(tableText({{true, "2026-11-21 06:22:05", "Ann Müller", "4711", "2", ""},
                         {false, "2026-11-20 06:22:05", "山田", "+81355550107", "10", ""}}),
              "  TIME                 NAME        NUMBER        CALLS\n"
              "* 2026-11-21 06:22:05  Ann Müller  4711          2\n"
              "  2026-11-20 06:22:05  山田        +81355550107  10\n");
}

TEST(ListTable, LeavesOutAColumnThatNoRowFills) {
    EXPECT_EQ(tableText({{false, "now", "", "4711", "", "01:01"}}),
              "  TIME  NUMBER  DURATION\n"
              "  now   4711    01:01\n");
}

TEST(ListTable, ANameCannotBreakTheTable) {
    EXPECT_EQ(tableText({{false, "now", "\x1b[2Jx\ny", "1", "", ""}}),
              "  TIME  NAME         NUMBER\n"
              "  now   \\x1b[2Jx\\ny  1\n");
}

TEST(ListTable, IsEmptyWithoutRows) {
    EXPECT_EQ(tableText({}), "");
}

}  // namespace
}  // namespace host
