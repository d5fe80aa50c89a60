#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "apps/calljournal/output/ListTable.h"
#include "apps/calljournal/output/WatchText.h"
#include "platform/journal-library/JournalServiceHelper.h"

namespace calljournal {
namespace {

using Helper = JournalServiceHelper;

TEST(ListTable, AlignsCutsAndLeavesOutColumnsByTheirDisplayWidth) {
    EXPECT_EQ(tableText({}), "");
    EXPECT_EQ(tableText({{true, "2026-11-21 06:22:05", "Ann Müller", "4711", "2", ""},
                         {false, "2026-11-20 06:22:05", "山田\x1b[2J", "+81355550107", "10", ""}}),
              "  TIME                 NAME         NUMBER        CALLS\n"
              "* 2026-11-21 06:22:05  Ann Müller   4711          2\n"
              "  2026-11-20 06:22:05  山田\\x1b[2J  +81355550107  10\n");
    EXPECT_EQ(tableText({{false, "now", "", "4711", "", "01:01"}}),
              "  TIME  NUMBER  DURATION\n"
              "  now   4711    01:01\n");
    const ListRow wide{true, "06:22", "山田山田山田",          "+4915550100123",
                       "2",  "00:01", "2026-11-21T05:22:05Z2A"};
    EXPECT_EQ(tableText({wide}, ListColumns::eCalls, 50),
              "  TIME   NAME      NUMBER          CALLS  DURATION\n"
              "* 06:22  山田山…   +4915550100123  2      00:01\n");
    EXPECT_EQ(tableText({wide}, ListColumns::eEntryIds, 20),
              "  TIME   NAME      NUMBER    ENTRY ID\n"
              "* 06:22  山田山…   +491555…  2026-11-21T05:22:05Z2A\n");
}

TEST(WatchText, DescribesChangesAndCountsInSentencesAndInJson) {
    ForwardedCallItem forwarded;
    forwarded.setEntryId("e1");
    forwarded.setSurname("Ann\n\x1b[2J");
    using Row = std::tuple<std::string, bool, std::string, std::string>;
    for (const auto& [xml, count, text, json] :
         {Row{Helper::obsReqForwardedCallsUpdate(forwarded, "17", 1), false,
              "forwarded call from Ann\\n\\x1b[2J",
              R"({"event":"forwardedCallsUpdate","data":{"action":1,"entryId":"17","item":{"entryId":"e1",)"},
          Row{Helper::obsReqCallBacksUpdate({}, "9", 2), false, "a callback was deleted",
              R"({"event":"callBacksUpdate","data":{"action":2,"entryId":"9","item":null}})"},
          Row{Helper::obsReqMissedCallsCountUpdate(3), true, "3 missed entries are not viewed",
              R"({"event":"missedCallsCountUpdate","data":{"count":3}})"},
          Row{Helper::obsReqCallBacksCountUpdate(1), true, "1 callback",
              R"({"event":"callBacksCountUpdate","data":{"count":1}})"}}) {
        const auto message = journalxml::parseObserverMessage(xml).value();
        const std::string line = watchJson(message).substr(0, json.size());
        EXPECT_EQ(std::tuple(isCount(message), watchText(message), line), std::tuple(count, text, json));
        EXPECT_EQ(watchJson(message).find('\n'), std::string::npos);
    }
}

}  // namespace
}  // namespace calljournal
