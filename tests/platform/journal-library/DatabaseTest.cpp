#include <deque>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/journal-library/CallListDatabaseAdapter.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/DataResponse.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/XmlLimits.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeDataAccess.h"
#include "tests/support/ItemBuilders.h"
#include "tests/support/Table.h"

/// Requests to the database, and the lists in its responses.
namespace journaltest {
namespace {

using Helper = CallListDatabaseAdapterHelper;
using Reader = JournalServiceHelper;

constexpr const char* kMissed = Helper::DAS_CALLLOGMISSEDCALLS;

MissedCallItem missed(const std::string& entryId, const std::vector<Occurrence>& calls = {}) {
    return itemOf<MissedCallItem>(entryId, "", calls);
}

std::deque<MissedCallItem> readBack(const std::string& text) {
    std::deque<MissedCallItem> read;
    EXPECT_TRUE(Reader::parseXMLMissedCallList(text, read));
    return read;
}

TEST(DataRequest, IsReadOrRefusedAsAWhole) {
    const auto outcomeOf = [](const std::string& request) {
        const auto read = journalxml::parseDataRequest(request);
        return read ? textOf(*read) : "refused";
    };
    for (const auto& row : table(4, R"(
        CallLogDialledCalls  | read   | read DialledCalls 50 from 0 []  | <Offset>0</Offset><RowLimit>50</RowLimit>
        Conversations        | read   | read Conversations all from 3 [A B]
        +                                                       | <ResultCols>A B</ResultCols><Offset>3</Offset>
        CallLogMissedCalls   | read   | read MissedCalls all from 0 []  | <RowLimit>-1</RowLimit>
        CallLogMissedCalls   | read   | read MissedCalls all from 0 []  | <RowLimit>99999999999</RowLimit>
        CallLogReceivedCalls | write  | write ReceivedCalls 1 2  | <ENTRY><Type>received</Type><EntryId>1</EntryId>
        +                                                          </ENTRY><ENTRY><EntryId>2</EntryId></ENTRY>
        CallLogReceivedCalls | write  | refused                  | <ENTRY/><ENTRY><Type>contact</Type></ENTRY>
        Conversations        | write  | refused                  | <ENTRY/>
        CallLogMissedCalls   | delete | delete MissedCalls 17 b  | <ENTRY><UniqueId>17</UniqueId><EntryId>a</EntryId>
        +                                                          </ENTRY><ENTRY><EntryId>b</EntryId></ENTRY>
        CallLogMissedCalls   | delete | delete MissedCalls all   | <AllEntries>true</AllEntries>
        CallLogMissedCalls   | delete | refused                  |
        CallLogMissedCalls   | delete | refused                  | <AllEntries>false</AllEntries>
        CallLogMissedCalls   | delete | refused                  | <AllEntries>yes</AllEntries>
        CallLogMissedCalls   | delete | refused                  | <ENTRY><AllEntries>true</AllEntries></ENTRY>
        CallLogMissedCalls   | delete | refused                  | <ENTRY><EntryId>a</EntryId></ENTRY><ENTRY/>
        JournalSettings      | delete | refused                  | <AllEntries>true</AllEntries>
        JournalSettings      | update | set key=no               | <key>no</key>
        JournalSettings      | update | refused                  |
        CallLogMissedCalls   | update | refused                  | <a>b</a>
        CallLogMissedCalls   | drop   | refused                  |
        )")) {
        const std::string request = "<Schema name='" + row[0] + "'><ReasonForMessage>" + row[1] +
                                    "_request</ReasonForMessage>" + row[3] + "</Schema>";
        EXPECT_EQ(outcomeOf(request), row[2]) << request;
    }
    for (const char* const request :
         {"", "<Schema name='CallLogMissedCalls'/>",
          "<Other><ReasonForMessage>read_request</ReasonForMessage></Other>",
          "<Schema name='CallLogMissedCalls'><ReasonForMessage>read_request </ReasonForMessage></Schema>"}) {
        EXPECT_EQ(outcomeOf(request), "refused") << request;
    }
    EXPECT_EQ(outcomeOf(Helper::addXMLHeaderFooter("<ReasonForMessage>read_request</ReasonForMessage>",
                                                   "a\"b'<c>&\xFF")),
              "read a\"b'<c>&\xFF all from 0 []");
}

TEST(ListDocument, StopsAtItsLimitsAndStaysReadable) {
    journalxml::ListDocument document(kMissed, 1000);
    while (document.add(missed(std::string(200, 'x')))) {}
    EXPECT_TRUE(document.size() > 1U && document.text().size() <= 1000U);
    EXPECT_FALSE(document.add(missed("x"))) << "a later, smaller entry must not come in";
    EXPECT_EQ(readBack(document.text()).size(), document.size());

    journalxml::ListDocument large(kMissed);
    while (large.add(missed("id", std::vector<Occurrence>(100000)))) {}
    EXPECT_EQ(readBack(large.text()).size(), 4U) << "readers refuse more elements";
}

TEST(ListResponse, IsCutAfterTheNewestEntriesWithAWarning) {
    const MissedCallItem third = missed(std::string(journalxml::kMaxDocumentBytes / 3, 'x'));
    EXPECT_EQ(readBack(Reader::respGetMissedCallList({third, third, third})).size(), 2U);
    EXPECT_TRUE(CapturedLog::contains("only the newest 2 of 3 entries are sent"));
}

TEST(ListParser, AppendsTheEntriesOfItsKindOrNone) {
    for (const auto& row : table(2, R"(
        held 1 2 | <S><ENTRY><EntryId>1</EntryId></ENTRY><ENTRY><Type>missed</Type><EntryId>2</EntryId>
        +          </ENTRY></S>
        held     | <S><ENTRY><Type>dialled</Type><EntryId>1</EntryId></ENTRY></S>
        held     | <S><Other><ENTRY><EntryId>4</EntryId></ENTRY></Other></S>
        held     | <S><ENTRY/>
        )")) {
        std::deque<MissedCallItem> list{missed("held")};
        Reader::parseXMLMissedCallList(row[1], list);
        EXPECT_EQ(joined(entryIdsOf(list), " "), row[0]) << row[1];
    }
}

TEST(ItemParser, ReadsTheFirstEntryOfItsKindWithDefaultsForInvalidFields) {
    MissedCallItem item("old", "old", "old", {MissedCallItem::MissedCallInfo()}, true);
    EXPECT_FALSE(Reader::parseXMLMissedCallItem("<m><Method>1</Method></m>", item));
    EXPECT_FALSE(Reader::parseXMLMissedCallItem("<m><ENTRY><Type>received</Type></ENTRY></m>", item));
    EXPECT_EQ(item.getEntryId(), "old");
    ASSERT_TRUE(Reader::parseXMLMissedCallItem(
        "<m><ENTRY><Type>received</Type></ENTRY>"
        "<ENTRY><EntryId>new</EntryId><Viewed>perhaps</Viewed><Unknown>x</Unknown>"
        "<Occurrence><LogTarget>99999999999</LogTarget><PresentationA>1x</PresentationA>"
        "<PresentationC>-7</PresentationC><CompletedElsewhere>1</CompletedElsewhere></Occurrence></ENTRY>"
        "</m>",
        item));
    MissedCallItem::MissedCallInfo info;
    info.setPresentationC(-7);
    info.setCompletedElsewhere(true);
    EXPECT_TRUE(item.sameContent(MissedCallItem("new", "", "", {info}, false)));
}

TEST(CallListDatabaseAdapter, PassesRequestAndResponseThroughOrFails) {
    CallListDatabaseAdapter adapter;
    EXPECT_EQ(adapter.processRequest("a request"), "failed");
    FakeDataAccess database;
    adapter.init(&database);
    database.setResponse([](const std::string& request) { return request + " \xFF"; });
    EXPECT_EQ(adapter.processRequest("a request"), "a request \xFF");
    EXPECT_EQ(adapter.updateEntries("", Helper::DELETEREQUEST, kMissed), "failed") << "not all entries";
    database.setResponse([](const auto&) -> std::string { throw std::runtime_error("disk failure"); });
    EXPECT_EQ(adapter.processRequest("a request"), "failed");
    EXPECT_TRUE(CapturedLog::contains("disk failure"));
    database.setResponse([](const auto&) -> std::string { throw 7; });
    EXPECT_EQ(adapter.processRequest("a request"), "failed");
}

TEST(CallListDatabaseAdapter, SortsByBytesAndDropsItemsWithoutCallsHereAndInTheDatabase) {
    FakeDataAccess database;
    CallListDatabaseAdapter adapter;
    adapter.init(&database);
    std::deque<MissedCallItem> list{missed("replaced", {{"", "2026-11-22T08:00:00Z"}})};
    const std::deque<MissedCallItem> rows{itemOf<MissedCallItem>("9 empty", "17", {}),
                                          missed("a", {{"", "2026-11-20"}, {"", "2026-11-22"}}),
                                          missed("b", {{"", "2026-11-20T08"}}),
                                          missed("c", {{"", ""}}),
                                          missed("1 & empty"),
                                          missed("d", {{"", "2026-11-20"}}),
                                          missed("e", {{"", "\xFF"}})};
    adapter.processMissedCallDbXml(Reader::respGetMissedCallList(rows), list);
    EXPECT_EQ(entryIdsOf(list), (Texts{"e", "b", "a", "d", "c"}));
    EXPECT_EQ(textOf(database.requests().at(0)), "delete MissedCalls 17 1 & empty");
    adapter.processMissedCallDbXml("<Schema><ENTRY>", list);
    EXPECT_TRUE(list.empty());
    EXPECT_TRUE(CapturedLog::contains("not readable"));
}

}  // namespace
}  // namespace journaltest
