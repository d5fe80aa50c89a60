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

TEST(ListTable, CutsNamesFirstAndNumbersThenToTheWidth) {
    const std::vector<ListRow> rows{
        {true, "06:22", "山田山田山田", "+4915550100123", "2", "00:01", "2026-11-21T05:22:05Z0000002A"}};
    EXPECT_EQ(tableText(rows, ListColumns::eCalls, 50),
              "  TIME   NAME      NUMBER          CALLS  DURATION\n"
              "* 06:22  山田山…   +4915550100123  2      00:01\n");
    EXPECT_EQ(tableText(rows, ListColumns::eEntryIds, 20),
              "  TIME   NAME      NUMBER    ENTRY ID\n"
              "* 06:22  山田山…   +491555…  2026-11-21T05:22:05Z0000002A\n");
}

TEST(ListTable, IsEmptyWithoutRows) {
    EXPECT_EQ(tableText({}), "");
}

}  // namespace
}  // namespace host
