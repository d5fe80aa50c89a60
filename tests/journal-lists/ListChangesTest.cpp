// Every change a client can make to the lists, as one table: what it answers, what the observers hear, what goes to the
// database, and which entries are gone.

#include <functional>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/journal-lists/JournalRig.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

using journal::JournalLists;
using Ids = std::set<std::string>;
using Operation = std::function<bool(JournalLists&)>;

struct Change {
    const char* name;
    Operation operation;
    bool answer;
    std::string heard;
    std::string written;
    std::string gone;
};

std::ostream& operator<<(std::ostream& out, const Change& change) {
    return out << change.name;
}

/// Three entries a list, newest first: m1 (unique id 11) to m3, d1 (21), r1 (31), f1 (41), c1. Of the missed ones m2
/// is viewed.
class ListChanges : public testing::TestWithParam<Change> {
protected:
    void SetUp() override {
        auto missed = three<MissedCallItem>("m", 11);
        missed[1].setViewed(true);
        rig.startWith(missed, three<DialledCallItem>("d", 21), three<ReceivedCallItem>("r", 31),
                      three<ForwardedCallItem>("f", 41),
                      {callBackOf("c1", "51", timeOf(0)), callBackOf("c2", "52", timeOf(1)),
                       callBackOf("c3", "53", timeOf(2))});
        ASSERT_EQ(rig.entryIds(), "m1 m2 m3 d1 d2 d3 r1 r2 r3 f1 f2 f3 c1 c2 c3");
    }

    static std::string timeOf(int index) { return "2026-11-2" + std::to_string(3 - index) + "T08:00:00Z"; }

    template <typename Item>
    static std::vector<Item> three(const std::string& letter, int firstUniqueId) {
        std::vector<Item> items;
        for (int index = 0; index < 3; ++index) {
            const std::string uniqueId = std::to_string(firstUniqueId + index);
            items.push_back(itemOf<Item>(letter + std::to_string(index + 1), uniqueId,
                                         {{"47" + uniqueId, timeOf(index)}}));
        }
        return items;
    }

    static std::string without(const std::string& ids, const std::string& gone) {
        Texts left;
        std::istringstream words(ids);
        for (std::string id; words >> id;) {
            if (gone.find(id) == std::string::npos) {
                left.push_back(id);
            }
        }
        return joined(left, " ");
    }

    JournalRig rig;
};

TEST_P(ListChanges, AnswersTellsWritesAndLeavesWhatItShould) {
    const Change& change = GetParam();
    const std::string left = without(rig.entryIds(), change.gone);

    EXPECT_EQ(change.operation(rig.lists), change.answer);

    EXPECT_EQ(rig.heard(), change.heard);
    EXPECT_EQ(rig.written(), change.written);
    EXPECT_EQ(rig.entryIds(), left);
    EXPECT_EQ(rig.listContents(), rig.databaseContents());
    EXPECT_EQ(rig.sent(), "") << "the switch keeps no call log";
}

TEST_P(ListChanges, StandsInMemoryWhenTheDatabaseFails) {
    const Change& change = GetParam();
    const std::string left = without(rig.entryIds(), change.gone);
    const Texts rows = rig.databaseContents();
    rig.database.setFailing(true);

    EXPECT_EQ(change.operation(rig.lists), change.answer);

    EXPECT_EQ(rig.heard(), change.heard);
    EXPECT_EQ(rig.entryIds(), left);
    EXPECT_EQ(rig.databaseContents(), rows);
    EXPECT_EQ(CapturedLog::contains("the database refused"), !change.written.empty());
}

Change row(const char* name, const Operation& operation, bool answer, const std::string& heard = {},
           const std::string& written = {}, const std::string& gone = {}) {
    return {name, operation, answer, heard, written, gone};
}

const Change kMissed[] = {
    row(
        "DeletesOneMissed", [](auto& lists) { return lists.deleteMissedCall("m1", false); }, true,
        "missedCount(1); missed(-, 11, 2)", "delete MissedCalls 11", "m1"),
    row(
        "RefusesASwitchRequest", [](auto& lists) { return lists.deleteMissedCall("m1", true); }, false),
    row(
        "RefusesToDeleteWithoutAnId", [](auto& lists) { return lists.deleteMissedCall("", false); }, false),
    row(
        "DoesNotFindAnUnknownMissed", [](auto& lists) { return lists.deleteMissedCall("d1", false); }, false),
    row(
        "DeletesASetOfMissed",
        [](auto& lists) {
            return lists.deleteMissedCallList(Ids{"m3", "m1", "x"});
        },
        true, "missedCount(0); missed(-, -, 3)", "delete MissedCalls 11 13", "m1 m3"),
    row(
        "DeletesNoMissed", [](auto& lists) { return lists.deleteMissedCallList(Ids{}); }, true),
    row(
        "DeletesUnknownMissed", [](auto& lists) { return lists.deleteMissedCallList(Ids{"d1"}); }, true),
    row(
        "ClearsMissedQuietly", [](auto& lists) { return lists.deleteMissedCallList(); }, true, "",
        "delete MissedCalls all", "m1 m2 m3"),
    row(
        "ViewsMissed",
        [](auto& lists) {
            return lists.setMissedCallListAsViewed({"m3", "m1", "x"});
        },
        true, "missedCount(0)", "write MissedCalls 11 13"),
    row(
        "ViewsNoMissed", [](auto& lists) { return lists.setMissedCallListAsViewed({}); }, true),
    row(
        "AgesOneMissed", [](auto& lists) { return lists.ageMissedCall("m3"), true; }, true,
        "missedCount(1); missed(m3, 13, 1)", "write MissedCalls 13"),
    row(
        "AgesNobodyUnknown", [](auto& lists) { return lists.ageMissedCall("d1"), true; }, true),
};

const Change kDialled[] = {
    row(
        "DeletesOneDialled", [](auto& lists) { return lists.deleteDialledCall("d1"); }, true,
        "dialled(d2, 21, 2)", "delete DialledCalls 21", "d1"),
    row(
        "DoesNotFindAnUnknownDialled", [](auto& lists) { return lists.deleteDialledCall("m1"); }, false),
    row(
        "DeletesASetOfDialled",
        [](auto& lists) {
            return lists.deleteDialledCallList(Ids{"d1", "d2"});
        },
        true, "dialled(d3, -, 3)", "delete DialledCalls 21 22", "d1 d2"),
    row(
        "DeletesEveryDialled",
        [](auto& lists) {
            return lists.deleteDialledCallList(Ids{"d1", "d2", "d3"});
        },
        true, "dialled(-, -, 3)", "delete DialledCalls 21 22 23", "d1 d2 d3"),
    row(
        "DeletesNoDialled", [](auto& lists) { return lists.deleteDialledCallList(Ids{}); }, true),
    row(
        "ClearsDialled", [](auto& lists) { return lists.deleteDialledCallList(); }, true, "dialled(-, -, 4)",
        "delete DialledCalls all", "d1 d2 d3"),
};

const Change kReceivedAndForwarded[] = {
    row(
        "DeletesOneReceived", [](auto& lists) { return lists.deleteReceivedCall("r2"); }, true,
        "received(-, 32, 2)", "delete ReceivedCalls 32", "r2"),
    row(
        "DoesNotFindAnUnknownReceived", [](auto& lists) { return lists.deleteReceivedCall("x"); }, false),
    row(
        "DeletesASetOfReceived",
        [](auto& lists) {
            return lists.deleteReceivedCallList(Ids{"r1", "r3"});
        },
        true, "received(-, -, 3)", "delete ReceivedCalls 31 33", "r1 r3"),
    row(
        "DeletesNoReceived", [](auto& lists) { return lists.deleteReceivedCallList(Ids{}); }, true),
    row(
        "ClearsReceivedQuietly", [](auto& lists) { return lists.deleteReceivedCallList(); }, true, "",
        "delete ReceivedCalls all", "r1 r2 r3"),
    row(
        "DeletesOneForwarded", [](auto& lists) { return lists.deleteForwardedCall("f3"); }, true,
        "forwarded(-, 43, 2)", "delete ForwardedCalls 43", "f3"),
    row(
        "DoesNotFindAnUnknownForwarded", [](auto& lists) { return lists.deleteForwardedCall("x"); }, false),
    row(
        "DeletesASetOfForwarded",
        [](auto& lists) {
            return lists.deleteForwardedCallList(Ids{"f1", "f2"});
        },
        true, "forwarded(-, -, 3)", "delete ForwardedCalls 41 42", "f1 f2"),
    row(
        "DeletesNoForwarded", [](auto& lists) { return lists.deleteForwardedCallList(Ids{}); }, true),
    row(
        "ClearsForwarded", [](auto& lists) { return lists.deleteForwardedCallList(); }, true,
        "forwarded(-, -, 3)", "delete ForwardedCalls all", "f1 f2 f3"),
};

const Change kCallBacksAndAll[] = {
    row(
        "DeletesOneCallBack", [](auto& lists) { return lists.deleteCallBack("c1"); }, true,
        "callBacks(-, c1, 2); callBacksCount(2)", "delete CallBacks c1", "c1"),
    row(
        "DoesNotFindAnUnknownCallBack", [](auto& lists) { return lists.deleteCallBack("x"); }, false),
    row(
        "DeletesASetOfCallBacks",
        [](auto& lists) {
            return lists.deleteCallBackList(Ids{"c1", "c3"});
        },
        true, "callBacks(-, -, 3); callBacksCount(1)", "delete CallBacks c1 c3", "c1 c3"),
    row(
        "DeletesNoCallBacks", [](auto& lists) { return lists.deleteCallBackList(Ids{}); }, true),
    row(
        "ClearsCallBacks", [](auto& lists) { return lists.deleteCallBackList(); }, true,
        "callBacks(-, -, 3); callBacksCount(0)", "delete CallBacks all", "c1 c2 c3"),
    row(
        "DeletesOfAnyList",
        [](auto& lists) {
            return lists.deleteCalls({"m1", "r1", "c2", "x"}, false);
        },
        true, "missedCount(1); missed(-, -, 3); received(-, -, 3); callBacks(-, -, 3); callBacksCount(2)",
        "delete MissedCalls 11; delete ReceivedCalls 31; delete CallBacks c2", "m1 r1 c2"),
    row(
        "SparesMissedOfAnyList",
        [](auto& lists) {
            return lists.deleteCalls({"m1", "f1"}, true);
        },
        true, "forwarded(-, -, 3)", "delete ForwardedCalls 41", "f1"),
    row(
        "FindsNoneOfAnyList", [](auto& lists) { return lists.deleteCalls({"x"}, false); }, false),
    row(
        "DeletesAllButCallBacks", [](auto& lists) { return lists.deleteAllCalls(); }, true,
        "dialled(-, -, 4); forwarded(-, -, 3)",
        "delete MissedCalls all; delete DialledCalls all; delete ReceivedCalls all; delete ForwardedCalls "
        "all",
        "m1 m2 m3 d1 d2 d3 r1 r2 r3 f1 f2 f3"),
};

INSTANTIATE_TEST_SUITE_P(Missed, ListChanges, testing::ValuesIn(kMissed), kRowName);
INSTANTIATE_TEST_SUITE_P(Dialled, ListChanges, testing::ValuesIn(kDialled), kRowName);
INSTANTIATE_TEST_SUITE_P(ReceivedAndForwarded, ListChanges, testing::ValuesIn(kReceivedAndForwarded),
                         kRowName);
INSTANTIATE_TEST_SUITE_P(CallBacksAndAll, ListChanges, testing::ValuesIn(kCallBacksAndAll), kRowName);

}  // namespace
}  // namespace journaltest
