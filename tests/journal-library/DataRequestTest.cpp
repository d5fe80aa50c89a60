#include "platform/journal-library/DataRequest.h"

#include <string>

#include <gtest/gtest.h>

#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/JournalServiceHelper.h"

namespace {

using journalxml::DataRequest;
using journalxml::parseDataRequest;

std::string request(const std::string& schema, const std::string& reason, const std::string& fields) {
    return "<Schema name=\"" + schema + "\"><ReasonForMessage>" + reason + "</ReasonForMessage>" + fields +
           "</Schema>";
}

TEST(DataRequest, ReadsAListWithItsRows) {
    const auto read = parseDataRequest(JournalServiceHelper::readDialledCallList(50));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->reason, DataRequest::Reason::eRead);
    EXPECT_EQ(read->schema, "CallLogDialledCalls");
    EXPECT_EQ(read->offset, 0U);
    EXPECT_EQ(read->rowLimit, 50U);
    EXPECT_EQ(read->resultCols, "");
}

TEST(DataRequest, ReadsTheCombinedRequest) {
    const auto read = parseDataRequest(
        "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"Conversations\">"
        "<ReasonForMessage>read_request</ReasonForMessage><ResultCols>CALL_LOG.* PHONE_BOOK.*</ResultCols>"
        "<Offset>3</Offset><RowLimit>200</RowLimit></Schema>");
    ASSERT_TRUE(read);
    EXPECT_EQ(read->schema, "Conversations");
    EXPECT_EQ(read->resultCols, "CALL_LOG.* PHONE_BOOK.*");
    EXPECT_EQ(read->offset, 3U);
    EXPECT_EQ(read->rowLimit, 200U);
}

TEST(DataRequest, ReadsWithoutALimitWhereNoneIsGivenOrNoneMakesSense) {
    for (const char* fields : {"", "<RowLimit>-1</RowLimit>", "<RowLimit>many</RowLimit>",
                               "<RowLimit>99999999999</RowLimit>", "<RowLimit/>"}) {
        const auto read = parseDataRequest(request("CallLogMissedCalls", "read_request", fields));
        ASSERT_TRUE(read) << fields;
        EXPECT_EQ(read->rowLimit, DataRequest::kNoRowLimit) << fields;
    }
}

TEST(DataRequest, WritesSeveralItemsInOrder) {
    const auto read = parseDataRequest(request(
        "CallLogReceivedCalls", "write_request",
        "<ENTRY><Type>received</Type><EntryId>1</EntryId></ENTRY><ENTRY><EntryId>2</EntryId></ENTRY>"));
    ASSERT_TRUE(read);
    ASSERT_EQ(read->items.size(), 2U);
    EXPECT_EQ(std::get<ReceivedCallItem>(read->items[0]).getEntryId(), "1");
    EXPECT_EQ(std::get<ReceivedCallItem>(read->items[1]).getEntryId(), "2");
}

TEST(DataRequest, DeletesTheRowsThatItNames) {
    const auto read = parseDataRequest(request(
        "CallLogMissedCalls", "delete_request",
        "<ENTRY><UniqueId>17</UniqueId><EntryId>a</EntryId></ENTRY><ENTRY><EntryId>b</EntryId></ENTRY>"));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->keys, (std::vector<DataRequest::Key>{{"17", "a"}, {"", "b"}}));
    EXPECT_FALSE(read->allEntries);
}

TEST(DataRequest, EmptiesATableOnlyWhenItSaysSo) {
    const auto read = parseDataRequest(
        request("CallLogMissedCalls", "delete_request", CallListDatabaseAdapterHelper::allEntries()));
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->allEntries);
    EXPECT_TRUE(read->keys.empty());
}

TEST(DataRequest, ChangesSettings) {
    const auto read = parseDataRequest(JournalServiceHelper::updateSettings("missed-logging", "false"));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->reason, DataRequest::Reason::eUpdate);
    EXPECT_EQ(read->schema, JournalServiceHelper::SETTINGS_SCHEMA);
    EXPECT_EQ(read->settings,
              (std::vector<std::pair<std::string, std::string>>{{"missed-logging", "false"}}));
}

TEST(DataRequest, TakesTheSchemaNameAsItWasMeant) {
    const auto read = parseDataRequest(CallListDatabaseAdapterHelper::addXMLHeaderFooter(
        "<ReasonForMessage>read_request</ReasonForMessage>", "a\"b'<c>&\xFF"));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->schema, "a\"b'<c>&\xFF");
}

struct Refused {
    const char* why;
    std::string request;
};

class RefusedDataRequest : public ::testing::TestWithParam<Refused> {};

TEST_P(RefusedDataRequest, IsNotUnderstood) {
    EXPECT_FALSE(parseDataRequest(GetParam().request)) << GetParam().why;
}

INSTANTIATE_TEST_SUITE_P(
    Table, RefusedDataRequest,
    ::testing::Values(
        Refused{"not XML", "read_request"}, Refused{"empty", ""},
        Refused{"another outermost element",
                "<Other><ReasonForMessage>read_request</ReasonForMessage></Other>"},
        Refused{"no reason", "<Schema name='CallLogMissedCalls'/>"},
        Refused{"an unknown reason", request("CallLogMissedCalls", "drop_request", "")},
        Refused{"a reason with a blank", request("CallLogMissedCalls", "read_request ", "")},
        Refused{"a delete of nothing", request("CallLogMissedCalls", "delete_request", "")},
        Refused{"a delete of not all",
                request("CallLogMissedCalls", "delete_request", "<AllEntries>false</AllEntries>")},
        Refused{"a delete of all, misspelt",
                request("CallLogMissedCalls", "delete_request", "<AllEntries>yes</AllEntries>")},
        Refused{"all, but only inside an entry", request("CallLogMissedCalls", "delete_request",
                                                         "<ENTRY><AllEntries>true</AllEntries></ENTRY>")},
        Refused{"a delete that names no row",
                request("CallLogMissedCalls", "delete_request", "<ENTRY><Surname>x</Surname></ENTRY>")},
        Refused{"one nameless row among others", request("CallLogMissedCalls", "delete_request",
                                                         "<ENTRY><EntryId>a</EntryId></ENTRY><ENTRY/>")},
        Refused{"a delete of settings",
                request("JournalSettings", "delete_request", "<AllEntries>true</AllEntries>")},
        Refused{"a write of another kind",
                request("CallLogMissedCalls", "write_request", "<ENTRY><Type>dialled</Type></ENTRY>")},
        Refused{"one of another kind among others", request("CallLogMissedCalls", "write_request",
                                                            "<ENTRY/><ENTRY><Type>contact</Type></ENTRY>")},
        Refused{"a write to no table", request("Conversations", "write_request", "<ENTRY/>")},
        Refused{"an update without a setting", request("JournalSettings", "update_request", "")},
        Refused{"an update of a list", request("CallLogMissedCalls", "update_request", "<a>b</a>")}));

}  // namespace
