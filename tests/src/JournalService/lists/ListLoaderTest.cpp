// Filling the lists from the database: which lists are asked for, what a failed or an empty answer does, and
// the order of what was read.

#include <string>

#include <gtest/gtest.h>

#include "platform/journal-library/DataResponse.h"
#include "platform/texts/SoftwareTypes.h"
#include "src/JournalService/lists/ListOrder.h"
#include "tests/support/ListsFixture.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

using Helper = CallListDatabaseAdapterHelper;
constexpr const char* kTime = "2026-11-21T08:00:00Z";

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
    for (const std::string type : {softwareTypes::sip, softwareTypes::qorvex, "norlith sip"}) {
        ListsFixture rig;
        rig.phoneIs(type);
        rig.load();
        EXPECT_EQ(rig.read(), type == softwareTypes::sip
                                  ? "MissedCalls DialledCalls ReceivedCalls ForwardedCalls CallBacks"
                                  : "MissedCalls DialledCalls ReceivedCalls CallBacks")
            << type;
        EXPECT_EQ(rig.heard(), "") << "loading tells nobody";
    }
}

// A failed read keeps the list, an empty or unreadable answer empties it; the others are loaded in any case.
TEST(ListLoader, TakesEachListsAnswerForItself) {
    for (const auto& row : table(3, R"(
CallLogMissedCalls    | m1 d2 d1 r2 r1 f2 f1 c2 c1 | d2 d1 r2 r1 f2 f1 c2 c1
CallLogDialledCalls   | m2 m1 d1 r2 r1 f2 f1 c2 c1 | m2 m1 r2 r1 f2 f1 c2 c1
CallLogReceivedCalls  | m2 m1 d2 d1 r1 f2 f1 c2 c1 | m2 m1 d2 d1 f2 f1 c2 c1
CallLogForwardedCalls | m2 m1 d2 d1 r2 r1 f1 c2 c1 | m2 m1 d2 d1 r2 r1 c2 c1
CallLogCallBacks      | m2 m1 d2 d1 r2 r1 f2 f1 c1 | m2 m1 d2 d1 r2 r1 f2 f1
CallLog               | m1 d1 r1 f1 c1             |
)")) {
        const std::string empty = journalxml::ListDocument(row[0]).text();
        for (const std::string& answer :
             {std::string(Helper::FAILED), empty, std::string("not a document")}) {
            ListsFixture rig;
            addRows(rig.database, "1");
            EXPECT_TRUE(rig.loader.subscriptionNeedsLoad());
            rig.load();
            FakeDataAccess usual;
            addRows(usual, "1");
            addRows(usual, "2");
            rig.database.setResponse([&](const std::string& document) {
                const bool isOfTable = document.find("\"" + row[0]) != std::string::npos;
                return isOfTable ? answer : usual.processRequest(document);
            });
            rig.load();
            EXPECT_EQ(rig.entryIds(), row[answer == Helper::FAILED ? 1 : 2]) << row[0] << ": " << answer;
        }
    }
    ListsFixture failing;
    failing.database.setFailing(true);
    failing.load();
    EXPECT_FALSE(failing.loader.subscriptionNeedsLoad()) << "and is not tried again at the next subscription";
}

TEST(ListLoader, DropsItemsWithoutOccurrencesHereAndInTheDatabase) {
    ListsFixture rig;
    rig.startWith(
        {itemOf<MissedCallItem>("m1", "11", {}), itemOf<MissedCallItem>("m2", "12", {{"1", kTime}})},
        {itemOf<DialledCallItem>("d1", "21", {}), itemOf<DialledCallItem>("d2", "22", {{"1", kTime}}),
         itemOf<DialledCallItem>("d3", "23", {})},
        {itemOf<ReceivedCallItem>("r1", "31", {})}, {itemOf<ForwardedCallItem>("f1", "41", {})});
    EXPECT_EQ(rig.entryIds(), "m2 d2");
    EXPECT_EQ(rig.listContents(), rig.databaseContents());
}

TEST(ListLoader, PutsTheNewestFirstByTheTimeOfTheFrontOccurrence) {
    // Answered in an order of the database's own.
    ListsFixture rig;
    journalxml::ListDocument document(Helper::DAS_CALLLOGDIALLEDCALLS);
    for (const auto& row : table(2, R"(
second | 2026-11-21T08:00:00Z
fourth | 2025-11-21T08:00:00Z
first  | 2026-11-21T08:00:00Z+
third  | 2026-11-21T08:00:00
)")) {
        ASSERT_TRUE(document.add(itemOf<DialledCallItem>(row[0], row[0], {{"1", row[1]}, {"1", "9999"}})));
    }
    rig.loader.processDialledCallDbXml(document.text());
    EXPECT_EQ(rig.entryIds(), "first second third fourth");

    const auto dialled = [](const std::string& time) {
        return itemOf<DialledCallItem>("e", "", {{"1", time}});
    };
    EXPECT_TRUE(journal::isDialledCallOrdered(dialled("2\xff"), dialled("2z"))) << "as unsigned bytes";
    EXPECT_FALSE(journal::isDialledCallOrdered(dialled("2z"), dialled("2\xff")));
    EXPECT_TRUE(
        journal::isReceivedCallOrdered(itemOf<ReceivedCallItem>("2026-11-21T08:00:00Z00000001", "", {}),
                                       itemOf<ReceivedCallItem>("z", "", {{"1", "2026-11-20T08:00:00Z"}})))
        << "the entry id stands in for the time";
}

}  // namespace
}  // namespace journaltest
