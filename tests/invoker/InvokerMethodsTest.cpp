// Which operation each method calls, with which arguments, and what the client is told.

#include <algorithm>
#include <ostream>

#include "tests/invoker/InvokerFixture.h"

namespace journaltest {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using Ids = std::vector<std::string>;

struct Row {
    int id = 0;
    const char* when;
    std::string message;
    bool journalAnswers = true;  // what yes-or-no operations answer
    Ids called;
    const char* told;
};

void PrintTo(const Row& row, std::ostream* out) {
    *out << "method " << row.id << " " << row.when;
}

Row row(int id, const char* when, const Ids& entryIds, bool journalAnswers, const Ids& called,
        const char* told) {
    return {id, when, requestOf(id, entryIds), journalAnswers, called, told};
}

std::string withFlag(bool flag) {
    return journalxml::buildRequest(journalxml::MethodId::eDeleteCalls, {"m1", "d1"}, std::nullopt, flag);
}

std::string withValue(const std::string& value) {
    return journalxml::buildRequest(journalxml::MethodId::eSetJournalServiceCallLogEventsDisabling, {},
                                    value);
}

/// Rows that every single deletion has; `flag` is what stands behind the entry id in the call.
void addDeleteOne(std::vector<Row>& rows, int id, const std::string& operation,
                  const std::string& flag = "") {
    rows.push_back(row(id, "WithAnEntry", {"e1"}, true, {operation + "(e1" + flag + ")"}, "true"));
    rows.push_back(row(id, "ForAnUnknownEntry", {"e1"}, false, {operation + "(e1" + flag + ")"}, "failure"));
    rows.push_back(row(id, "WithTwoEntries", {"e1", "e2"}, true, {operation + "(e1" + flag + ")"}, "true"));
    rows.push_back(row(id, "WithoutEntry", {}, true, {}, "failure"));
}

void addWithAllIds(std::vector<Row>& rows, int id, const std::string& operation) {
    rows.push_back(
        row(id, "WithThreeEntries", {"e3", "e1", "e2"}, true, {operation + "({e1, e2, e3})"}, "true"));
    rows.push_back(row(id, "WithTheSameEntryTwice", {"e1", "e1"}, true, {operation + "({e1})"}, "true"));
    rows.push_back(row(id, "Refused", {"e1"}, false, {operation + "({e1})"}, "false"));
    rows.push_back(row(id, "WithoutEntry", {}, true, {operation + "({})"}, "true"));
}

void addGetOne(std::vector<Row>& rows, int id, const std::string& operation, const std::string& entryId,
               const char* found, const char* nothing) {
    rows.push_back(row(id, "Found", {entryId}, true, {operation + "(" + entryId + ")"}, found));
    rows.push_back(row(id, "NotFound", {"x"}, true, {operation + "(x)"}, nothing));
    rows.push_back(row(id, "WithoutEntry", {}, true, {operation + "()"}, nothing));
}

std::vector<Row> allRows() {
    std::vector<Row> rows;
    addGetOne(rows, 0, "getMissedCall", "m2", "missed m2", "missed -");
    addGetOne(rows, 9, "getDialledCall", "d2", "dialled d2", "dialled -");
    addGetOne(rows, 13, "getReceivedCall", "r2", "received r2", "received -");
    addGetOne(rows, 17, "getForwardedCall", "f2", "forwarded f2", "forwarded -");

    rows.push_back(row(2, "List", {}, true, {"getMissedCallList()"}, "missed m1 m2"));
    rows.push_back(row(10, "List", {}, true, {"getDialledCallList()"}, "dialled d1 d2"));
    rows.push_back(row(14, "List", {}, true, {"getReceivedCallList()"}, "received r1 r2"));
    rows.push_back(row(18, "List", {}, true, {"getForwardedCallList()"}, "forwarded f1 f2"));
    rows.push_back(row(21, "List", {}, true, {"getCallBackList()"}, "callback b1 b2"));
    rows.push_back(row(24, "LastDialled", {}, true, {"getLastDialledNumber()"}, "dialled d1"));

    addWithAllIds(rows, 4, "setMissedCallListAsViewed");
    addWithAllIds(rows, 8, "deleteMissedCallList");
    addWithAllIds(rows, 12, "deleteDialledCallList");
    addWithAllIds(rows, 16, "deleteReceivedCallList");
    addWithAllIds(rows, 20, "deleteForwardedCallList");
    addWithAllIds(rows, 23, "deleteCallBackList");

    addDeleteOne(rows, 7, "deleteMissedCall", ", false");
    addDeleteOne(rows, 11, "deleteDialledCall");
    addDeleteOne(rows, 15, "deleteReceivedCall");
    addDeleteOne(rows, 19, "deleteForwardedCall");
    addDeleteOne(rows, 22, "deleteCallBack");

    rows.push_back(row(5, "WithAnEntry", {"m1"}, true, {"ageMissedCall(m1)"}, "nothing"));
    rows.push_back(row(5, "WithoutEntry", {}, true, {}, "failure"));

    rows.push_back(row(36, "WithoutFlag", {"m1", "d1"}, true, {"deleteCalls({d1, m1}, false)"}, "true"));
    rows.push_back(row(36, "Refused", {"x"}, false, {"deleteCalls({x}, false)"}, "false"));
    rows.push_back({36, "WithTheFlag", withFlag(true), true, {"deleteCalls({d1, m1}, true)"}, "true"});
    rows.push_back({36, "WithTheFlagOff", withFlag(false), true, {"deleteCalls({d1, m1}, false)"}, "true"});
    rows.push_back(row(37, "Done", {}, true, {"deleteAllCalls()"}, "true"));
    rows.push_back(row(37, "Refused", {}, false, {"deleteAllCalls()"}, "false"));

    const Ids disabled = {"setJournalServiceCallLogEventsDisabling(true)"};
    rows.push_back({38, "WithAValue", withValue("true"), true, disabled, "nothing"});
    rows.push_back({38, "RefusedByTheJournal", withValue("true"), false, disabled, "nothing"});
    rows.push_back(row(38, "WithoutValue", {}, true, {}, "failure"));

    rows.push_back(row(27, "Done", {}, true, {"refreshCallLog()"}, "true"));
    rows.push_back(row(27, "Refused", {}, false, {"refreshCallLog()"}, "false"));
    rows.push_back(row(28, "Done", {}, true, {"refreshCallLists()"}, "true"));
    rows.push_back(row(28, "Refused", {}, false, {"refreshCallLists()"}, "false"));
    rows.push_back(row(40, "Done", {}, true, {"resetUserCalls()"}, "nothing"));
    rows.push_back(row(40, "Refused", {}, false, {"resetUserCalls()"}, "nothing"));
    rows.push_back(row(41, "Done", {}, true, {"resetUserContacts()"}, "nothing"));
    rows.push_back(row(41, "Refused", {}, false, {"resetUserContacts()"}, "nothing"));
    return rows;
}

class EachMethod : public InvokerTest, public testing::WithParamInterface<Row> {};

TEST_P(EachMethod, CallsItsOperationAndAnswersOnce) {
    journal.setAnswer(GetParam().journalAnswers);
    EXPECT_EQ(answerTo(GetParam().message), GetParam().told);
    EXPECT_THAT(journal.calls(), ElementsAreArray(GetParam().called));
}

INSTANTIATE_TEST_SUITE_P(Invoker, EachMethod, testing::ValuesIn(allRows()), [](const auto& test) {
    return "Method" + std::to_string(test.param.id) + test.param.when;
});

using InvokerMethods = InvokerTest;

TEST_F(InvokerMethods, AnswerAnEmptyListWithoutItems) {
    journal.lists = {};
    for (const int id : {2, 10, 14, 18, 21}) {
        EXPECT_EQ(answerTo(requestOf(id)), "no items") << id;
    }
}

TEST_F(InvokerMethods, FailWhenNothingWasDialledYet) {
    journal.lists.dialled.clear();
    EXPECT_EQ(answerTo(requestOf(24)), "failure");
}

TEST_F(InvokerMethods, GiveTheWholeItem) {
    MissedCallItem& item = journal.lists.missed.front();
    item.setFirstname("Zo\xC3\xAB");
    item.setSurname("<&\"'\x01\xFF");
    item.setUniqueId("17");
    item.setViewed(true);
    MissedCallItem::MissedCallInfo occurrence;
    occurrence.setNumber("4711");
    occurrence.setLineKey("2");
    item.addCallInfoToList(occurrence);

    RecordingResponse response;
    handle(requestOf(0, {"m1"}), response);

    MissedCallItem read;
    ASSERT_TRUE(JournalServiceHelper::parseXMLMissedCallItem(response.payload(), read));
    EXPECT_TRUE(read.sameContent(item));
}

TEST_F(InvokerMethods, UpdateAnItemAndStillAnswerFailure) {
    auto item = itemWithId<MissedCallItem>("m9");
    item.setSurname("Miller");
    EXPECT_EQ(answerTo(journalxml::buildUpdateMissedCallRequest(item)), "failure");
    ASSERT_EQ(journal.updatedItems().size(), 1U);
    EXPECT_TRUE(journal.updatedItems().front().sameContent(item));
}

TEST_F(InvokerMethods, WithoutANumberInTheTableCallNothing) {
    for (int id = -2; id < 100; ++id) {
        if (std::find(kMethodIds.begin(), kMethodIds.end(), id) == kMethodIds.end()) {
            const std::string message =
                "<R><Method>" + std::to_string(id) + "</Method><EntryId>m1</EntryId><Value>true</Value></R>";
            EXPECT_EQ(answerTo(message), "failure") << id;
        }
    }
    EXPECT_THAT(journal.calls(), IsEmpty());
}

TEST_F(InvokerMethods, ReadTheMessageToItsLengthAndNoFurther) {
    const std::string message = requestOf(7, {"m1"});
    const std::string buffer = message + "<EntryId>m2</EntryId>";
    RecordingResponse response;
    invoker.handleMessage(&journal, buffer.data(), static_cast<int>(message.size()), &response);
    EXPECT_EQ(readBack(response), "true");

    RecordingResponse cut;
    invoker.handleMessage(&journal, message.data(), static_cast<int>(message.size()) - 1, &cut);
    EXPECT_EQ(readBack(cut), "failure");
    EXPECT_THAT(journal.calls(), ElementsAre("deleteMissedCall(m1, false)"));
}

}  // namespace
}  // namespace journaltest
