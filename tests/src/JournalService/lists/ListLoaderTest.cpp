// Filling the lists from the database: the lists that are read, and the effect of a failed or an empty
// response.

#include <string>

#include <gtest/gtest.h>

#include "platform/journal-library/DataResponse.h"
#include "platform/texts/SoftwareTypes.h"
#include "tests/support/ListsFixture.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

using Helper = CallListDatabaseAdapterHelper;

/// A row a table: m1, d1, r1, f1 and c1 for "1". Later numbers are newer.
void addRows(FakeDataAccess& database, const std::string& number) {
    const std::string time = "2026-11-2" + number;
    const std::vector<Occurrence> calls{{"4711", time}};
    database.addRow(Helper::DAS_CALLLOGMISSEDCALLS, itemOf<MissedCallItem>("m" + number, "", calls));
    database.addRow(Helper::DAS_CALLLOGDIALLEDCALLS, itemOf<DialledCallItem>("d" + number, "", calls));
    database.addRow(Helper::DAS_CALLLOGRECEIVEDCALLS, itemOf<ReceivedCallItem>("r" + number, "", calls));
    database.addRow(Helper::DAS_CALLLOGFORWARDEDCALLS, itemOf<ForwardedCallItem>("f" + number, "", calls));
    database.addRow(Helper::DAS_CALLLOGCALLBACKS, callBackOf("c" + number, "4711", time));
}

TEST(ListLoader, AsksForEveryListOnceAndForForwardedCallsOnASipPhoneOnly) {
    for (const std::string type : {softwaretypes::sip, softwaretypes::qorvex, "norlith sip"}) {
        ListsFixture fixture;
        fixture.phoneIs(type);
        fixture.load();
        EXPECT_EQ(fixture.read(), type == softwaretypes::sip
                                      ? "MissedCalls DialledCalls ReceivedCalls ForwardedCalls CallBacks"
                                      : "MissedCalls DialledCalls ReceivedCalls CallBacks")
            << type;
        EXPECT_EQ(fixture.heard(), "") << "a load notifies no observer";
    }
}

// A failed read keeps the list, an empty or unreadable response empties it; the others are loaded in any
// case.
TEST(ListLoader, AppliesTheResponseOfEachListAlone) {
    for (const auto& row : table(3, R"(
CallLogMissedCalls    | m1 d2 d1 r2 r1 f2 f1 c2 c1 | d2 d1 r2 r1 f2 f1 c2 c1
CallLogDialledCalls   | m2 m1 d1 r2 r1 f2 f1 c2 c1 | m2 m1 r2 r1 f2 f1 c2 c1
CallLogReceivedCalls  | m2 m1 d2 d1 r1 f2 f1 c2 c1 | m2 m1 d2 d1 f2 f1 c2 c1
CallLogForwardedCalls | m2 m1 d2 d1 r2 r1 f1 c2 c1 | m2 m1 d2 d1 r2 r1 c2 c1
CallLogCallBacks      | m2 m1 d2 d1 r2 r1 f2 f1 c1 | m2 m1 d2 d1 r2 r1 f2 f1
CallLog               | m1 d1 r1 f1 c1             |
)")) {
        const std::string empty = journalxml::ListDocument(row[0]).text();
        for (const std::string& response :
             {std::string(Helper::FAILED), empty, std::string("not a document")}) {
            ListsFixture fixture;
            addRows(fixture.database, "1");
            EXPECT_TRUE(fixture.loader.subscriptionNeedsLoad());
            fixture.load();
            FakeDataAccess usual;
            addRows(usual, "1");
            addRows(usual, "2");
            fixture.database.setResponse([&](const std::string& document) {
                const bool isOfTable = document.find("\"" + row[0]) != std::string::npos;
                return isOfTable ? response : usual.processRequest(document);
            });
            fixture.load();
            EXPECT_EQ(fixture.entryIds(), row[response == Helper::FAILED ? 1 : 2])
                << row[0] << ": " << response;
        }
    }
    ListsFixture bare;
    bare.startWith({itemOf<MissedCallItem>("m1", "11", {})}, {itemOf<DialledCallItem>("d1", "21", {})});
    EXPECT_EQ(bare.entryIds(), "") << "an entry without calls is none";
    EXPECT_EQ(bare.databaseContents(), Texts());
    ListsFixture failing;
    failing.database.setFailing(true);
    failing.load();
    EXPECT_FALSE(failing.loader.subscriptionNeedsLoad()) << "and is not tried again at the next subscription";
}

}  // namespace
}  // namespace journaltest
