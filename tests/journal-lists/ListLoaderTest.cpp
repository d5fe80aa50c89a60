// Filling the lists from the database: which lists are asked for, what a failed or an empty answer does, and the order
// of what was read.

#include <string>

#include <gtest/gtest.h>

#include "platform/journal-library/DataAnswer.h"
#include "platform/texts/SoftwareTypes.h"
#include "src/JournalService/ListOrder.h"
#include "tests/journal-lists/JournalRig.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

using Helper = CallListDatabaseAdapterHelper;
constexpr const char* kTime = "2026-11-21T08:00:00Z";

class ListLoader : public testing::Test {
public:
    /// An entry a list: m1, d1, r1, f1, c1.
    void startWithOneEach() {
        rig.startWith({itemOf<MissedCallItem>("m1", "11", {{"4711", kTime}})},
                      {itemOf<DialledCallItem>("d1", "21", {{"4711", kTime}})},
                      {itemOf<ReceivedCallItem>("r1", "31", {{"4711", kTime}})},
                      {itemOf<ForwardedCallItem>("f1", "41", {{"4711", kTime}})},
                      {callBackOf("c1", "4711", kTime)});
    }
    /// A newer row a table that the lists do not know yet: m2, d2, r2, f2, c2.
    void addOneRowEach() {
        const std::string newer = "2026-11-22T08:00:00Z";
        rig.database.addRow(Helper::DAS_CALLLOGMISSEDCALLS,
                            itemOf<MissedCallItem>("m2", "", {{"4712", newer}}));
        rig.database.addRow(Helper::DAS_CALLLOGDIALLEDCALLS,
                            itemOf<DialledCallItem>("d2", "", {{"4712", newer}}));
        rig.database.addRow(Helper::DAS_CALLLOGRECEIVEDCALLS,
                            itemOf<ReceivedCallItem>("r2", "", {{"4712", newer}}));
        rig.database.addRow(Helper::DAS_CALLLOGFORWARDEDCALLS,
                            itemOf<ForwardedCallItem>("f2", "", {{"4712", newer}}));
        rig.database.addRow(Helper::DAS_CALLLOGCALLBACKS, callBackOf("c2", "4712", newer));
    }
    void answerReadsOf(const std::string& table, const std::string& answer) {
        rig.database.setAnswer([this, table, answer](const std::string& document) {
            if (document.find("\"" + table + "\"") != std::string::npos) {
                return answer;
            }
            rig.database.setAnswer({});
            std::string usual = rig.database.processRequest(document);
            answerReadsOf(table, answer);
            return usual;
        });
    }

    void TestBody() override {}

    JournalRig rig;
};

TEST_F(ListLoader, AsksForEveryListOnceAndForForwardedCallsOnASipPhoneOnly) {
    rig.phoneIs(softwareTypes::sip);
    rig.load();
    EXPECT_EQ(rig.read(), "MissedCalls DialledCalls ReceivedCalls ForwardedCalls CallBacks");
    for (const char* other : {softwareTypes::qorvex, "", "norlith sip"}) {
        rig.forget();
        rig.phoneIs(other);
        rig.load();
        EXPECT_EQ(rig.read(), "MissedCalls DialledCalls ReceivedCalls CallBacks") << other;
    }
}

TEST_F(ListLoader, CountsAsLoadedEvenWhenEveryRequestFailed) {
    startWithOneEach();
    const Texts before = rig.listContents();
    JournalRig fresh;
    EXPECT_FALSE(fresh.loader.listsLoaded());
    fresh.database.setFailing(true);
    fresh.load();
    EXPECT_TRUE(fresh.loader.listsLoaded());

    rig.database.setFailing(true);
    rig.load();
    EXPECT_EQ(rig.listContents(), before);
    EXPECT_EQ(rig.heard(), "") << "loading tells nobody";
}

// A failed read keeps the list, an empty or unreadable answer empties it; the others are loaded in any case.
TEST_F(ListLoader, TakesEachListsAnswerForItself) {
    for (const auto& row : table(3, R"(
CallLogMissedCalls    | m1 d2 d1 r2 r1 f2 f1 c2 c1 | d2 d1 r2 r1 f2 f1 c2 c1
CallLogDialledCalls   | m2 m1 d1 r2 r1 f2 f1 c2 c1 | m2 m1 r2 r1 f2 f1 c2 c1
CallLogReceivedCalls  | m2 m1 d2 d1 r1 f2 f1 c2 c1 | m2 m1 d2 d1 f2 f1 c2 c1
CallLogForwardedCalls | m2 m1 d2 d1 r2 r1 f1 c2 c1 | m2 m1 d2 d1 r2 r1 c2 c1
CallLogCallBacks      | m2 m1 d2 d1 r2 r1 f2 f1 c1 | m2 m1 d2 d1 r2 r1 f2 f1
)")) {
        const std::string empty = journalxml::ListDocument(row[0]).text();
        for (const std::string& answer :
             {std::string(Helper::FAILED), empty, std::string("not a document")}) {
            ListLoader loader;
            loader.startWithOneEach();
            loader.addOneRowEach();
            loader.answerReadsOf(row[0], answer);
            loader.rig.load();
            EXPECT_EQ(loader.rig.entryIds(), row[answer == Helper::FAILED ? 1 : 2])
                << row[0] << ": " << answer;
        }
    }
}

TEST_F(ListLoader, DropsItemsWithoutOccurrencesHereAndInTheDatabase) {
    rig.startWith(
        {itemOf<MissedCallItem>("m1", "11", {}), itemOf<MissedCallItem>("m2", "12", {{"1", kTime}})},
        {itemOf<DialledCallItem>("d1", "21", {}), itemOf<DialledCallItem>("d2", "22", {{"1", kTime}}),
         itemOf<DialledCallItem>("d3", "23", {})},
        {itemOf<ReceivedCallItem>("r1", "31", {})}, {itemOf<ForwardedCallItem>("f1", "41", {})});
    EXPECT_EQ(rig.entryIds(), "m2 d2");
    EXPECT_EQ(rig.listContents(), rig.databaseContents());
}

TEST_F(ListLoader, PutsTheNewestFirstByTheTimeOfTheFrontOccurrence) {
    // Answered in an order of the database's own.
    journalxml::ListDocument document(Helper::DAS_CALLLOGDIALLEDCALLS);
    const auto add = [&document](const std::string& entryId, const std::string& newest) {
        ASSERT_TRUE(document.add(itemOf<DialledCallItem>(entryId, entryId, {{"1", newest}, {"1", "9999"}})));
    };
    add("second", "2026-11-21T08:00:00Z");
    add("fourth", "2025-11-21T08:00:00Z");
    add("first", "2026-11-21T08:00:00Z+");
    add("third", "2026-11-21T08:00:00");
    rig.loader.processDialledCallDbXml(document.text());
    EXPECT_EQ(rig.entryIds(), "first second third fourth");
}

TEST_F(ListLoader, OrdersKeysAsUnsignedBytes) {
    const auto dialled = [](const std::string& time) {
        return itemOf<DialledCallItem>("e", "", {{"1", time}});
    };
    EXPECT_TRUE(journal::isDialledCallOrdered(dialled("2\xff"), dialled("2z")));
    EXPECT_FALSE(journal::isDialledCallOrdered(dialled("2z"), dialled("2\xff")));
    EXPECT_TRUE(journal::isDialledCallOrdered(dialled("20"), dialled("2")));
    EXPECT_FALSE(journal::isDialledCallOrdered(dialled("2"), dialled("2")));
    const auto empty = itemOf<ReceivedCallItem>("2026-11-21T08:00:00Z00000001", "", {});
    const auto older = itemOf<ReceivedCallItem>("z", "", {{"1", "2026-11-20T08:00:00Z"}});
    EXPECT_TRUE(journal::isReceivedCallOrdered(empty, older)) << "the entry id stands in for the time";
    EXPECT_TRUE(journal::isForwardedCallOrdered(itemOf<ForwardedCallItem>("a", "", {{"1", "3"}}),
                                                itemOf<ForwardedCallItem>("b", "", {{"1", "2"}})));
}

}  // namespace
}  // namespace journaltest
