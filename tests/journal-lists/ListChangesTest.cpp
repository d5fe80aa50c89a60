// Every change a client can make to the lists, as one table: what it answers, what the observers hear, what goes to the
// database, and which entries are gone.

#include <algorithm>
#include <functional>
#include <ostream>
#include <set>
#include <string>

#include "tests/journal-lists/JournalRig.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

using journal::JournalLists;
using Ids = std::set<std::string>;

struct Change {
    const char* name;
    std::function<bool(JournalLists&)> operation;
    bool answer;
    const char* heard;
    const char* written;
    const char* left;  // of "m1 m2 m3 d1 d2 d3 r1 r2 r3 f1 f2 f3 c1 c2 c3"
};

std::ostream& operator<<(std::ostream& out, const Change& change) {
    return out << change.name;
}

MissedCallItem missed(const std::string& entryId, const std::string& uniqueId, const std::string& time,
                      bool viewed) {
    auto item = itemOf<MissedCallItem>(entryId, uniqueId, {{"47" + uniqueId, time}});
    item.setViewed(viewed);
    return item;
}

template <typename Item>
std::vector<Item> three(const std::string& letter, int firstUniqueId) {
    std::vector<Item> items;
    for (int index = 0; index < 3; ++index) {
        const std::string time = "2026-11-2" + std::to_string(3 - index) + "T08:00:00Z";
        const std::string uniqueId = std::to_string(firstUniqueId + index);
        items.push_back(
            itemOf<Item>(letter + std::to_string(index + 1), uniqueId, {{"47" + uniqueId, time}}));
    }
    return items;
}

/// Three entries a list, newest first: m1 (unique id 11) to m3, d1 (21), r1 (31), f1 (41), c1. Of the missed ones m2
/// is viewed.
class ListChanges : public testing::TestWithParam<Change> {
protected:
    void SetUp() override {
        rig.startWith(
            {missed("m1", "11", "2026-11-23T08:00:00Z", false),
             missed("m2", "12", "2026-11-22T08:00:00Z", true),
             missed("m3", "13", "2026-11-21T08:00:00Z", false)},
            three<DialledCallItem>("d", 21), three<ReceivedCallItem>("r", 31),
            three<ForwardedCallItem>("f", 41),
            {callBackOf("c1", "51", "2026-11-23T08:00:00Z"), callBackOf("c2", "52", "2026-11-22T08:00:00Z"),
             callBackOf("c3", "53", "2026-11-21T08:00:00Z")});
        ASSERT_EQ(rig.entryIds(), "m1 m2 m3 d1 d2 d3 r1 r2 r3 f1 f2 f3 c1 c2 c3");
    }

    static Texts without(Texts ids, const Texts& gone) {
        std::erase_if(ids, [&gone](const std::string& id) {
            return std::find(gone.begin(), gone.end(), id) != gone.end();
        });
        return ids;
    }

    JournalRig rig;
};

TEST_P(ListChanges, AnswersTellsWritesAndLeavesWhatItShould) {
    const Change& change = GetParam();
    const Texts left = without(rig.entryIds(), change.gone);

    EXPECT_EQ(change.operation(rig.lists), change.answer);

    EXPECT_EQ(rig.heard(), change.heard);
    EXPECT_EQ(rig.written(), change.written);
    EXPECT_EQ(rig.entryIds(), left);
    EXPECT_EQ(rig.listContents(), rig.databaseContents());
    EXPECT_EQ(rig.sent(), "") << "the switch keeps no call log";
}

TEST_P(ListChanges, StandsInMemoryWhenTheDatabaseFails) {
    const Change& change = GetParam();
    const Texts left = without(rig.entryIds(), change.gone);
    const Texts rows = rig.databaseContents();
    rig.database.setFailing(true);

    EXPECT_EQ(change.operation(rig.lists), change.answer);

    EXPECT_EQ(rig.heard(), change.heard);
    EXPECT_EQ(rig.entryIds(), left);
    EXPECT_EQ(rig.databaseContents(), rows);
    EXPECT_EQ(CapturedLog::count("the database refused"), static_cast<int>(change.written.size()));
}

const Texts kNothing;
const Texts kDialledCleared{"dialledCallsUpdate(item -, entryId -, action 4)"};
const Texts kForwardedChanged{"forwardedCallsUpdate(item -, entryId -, action 3)"};

const Change kMissed[] = {
    {"DeletesOneMissed",
     [](JournalLists& lists) { return lists.deleteMissedCall("m1", false); },
     true,
     {"missedCallsCountUpdate(1)", "missedCallsUpdate(item -, entryId 11, action 2)"},
     {"delete MissedCalls 11"},
     {"m1"}},
    {"RefusesToDeleteMissedWithASwitchRequest",
     [](JournalLists& lists) { return lists.deleteMissedCall("m1", true); },
     false,
     kNothing,
     kNothing,
     {}},
    {"RefusesToDeleteMissedWithoutAnId",
     [](JournalLists& lists) { return lists.deleteMissedCall("", false); },
     false,
     kNothing,
     kNothing,
     {}},
    {"DoesNotFindAnUnknownMissed",
     [](JournalLists& lists) { return lists.deleteMissedCall("d1", false); },
     false,
     kNothing,
     kNothing,
     {}},
    {"DeletesASetOfMissed",
     [](JournalLists& lists) {
         return lists.deleteMissedCallList(Ids{"m3", "m1", "nobody"});
     },
     true,
     {"missedCallsCountUpdate(0)", "missedCallsUpdate(item -, entryId -, action 3)"},
     {"delete MissedCalls 11 13"},
     {"m1", "m3"}},
    {"DeletesNoMissed",
     [](JournalLists& lists) { return lists.deleteMissedCallList(Ids{}); },
     true,
     kNothing,
     kNothing,
     {}},
    {"DeletesUnknownMissedOnly",
     [](JournalLists& lists) { return lists.deleteMissedCallList(Ids{"d1"}); },
     true,
     kNothing,
     kNothing,
     {}},
    {"ClearsMissedWithoutTellingAnybody",
     [](JournalLists& lists) { return lists.deleteMissedCallList(); },
     true,
     kNothing,
     {"delete MissedCalls all"},
     {"m1", "m2", "m3"}},
    {"ViewsMissed",
     [](JournalLists& lists) {
         return lists.setMissedCallListAsViewed({"m3", "m1", "x"});
     },
     true,
     {"missedCallsCountUpdate(0)"},
     {"write MissedCalls 11 13"},
     {}},
    {"ViewsNoMissed",
     [](JournalLists& lists) { return lists.setMissedCallListAsViewed({}); },
     true,
     kNothing,
     kNothing,
     {}},
    {"AgesOneMissed",
     [](JournalLists& lists) {
         lists.ageMissedCall("m3");
         return true;
     },
     true,
     {"missedCallsCountUpdate(1)", "missedCallsUpdate(item m3, entryId 13, action 1)"},
     {"write MissedCalls 13"},
     {}},
    {"AgesNobodyUnknown",
     [](JournalLists& lists) {
         lists.ageMissedCall("d1");
         return true;
     },
     true,
     kNothing,
     kNothing,
     {}},
};

const Change kDialled[] = {
    {"DeletesOneDialled",
     [](JournalLists& lists) { return lists.deleteDialledCall("d1"); },
     true,
     {"dialledCallsUpdate(item d2, entryId 21, action 2)"},
     {"delete DialledCalls 21"},
     {"d1"}},
    {"DoesNotFindAnUnknownDialled",
     [](JournalLists& lists) { return lists.deleteDialledCall("m1"); },
     false,
     kNothing,
     kNothing,
     {}},
    {"DeletesASetOfDialled",
     [](JournalLists& lists) {
         return lists.deleteDialledCallList(Ids{"d1", "d2"});
     },
     true,
     {"dialledCallsUpdate(item d3, entryId -, action 3)"},
     {"delete DialledCalls 21 22"},
     {"d1", "d2"}},
    {"DeletesEveryDialledByItsId",
     [](JournalLists& lists) {
         return lists.deleteDialledCallList(Ids{"d1", "d2", "d3"});
     },
     true,
     {"dialledCallsUpdate(item -, entryId -, action 3)"},
     {"delete DialledCalls 21 22 23"},
     {"d1", "d2", "d3"}},
    {"DeletesNoDialled",
     [](JournalLists& lists) { return lists.deleteDialledCallList(Ids{}); },
     true,
     kNothing,
     kNothing,
     {}},
    {"ClearsDialled",
     [](JournalLists& lists) { return lists.deleteDialledCallList(); },
     true,
     kDialledCleared,
     {"delete DialledCalls all"},
     {"d1", "d2", "d3"}},
};

const Change kReceivedAndForwarded[] = {
    {"DeletesOneReceived",
     [](JournalLists& lists) { return lists.deleteReceivedCall("r2"); },
     true,
     {"receivedCallsUpdate(item -, entryId 32, action 2)"},
     {"delete ReceivedCalls 32"},
     {"r2"}},
    {"DoesNotFindAnUnknownReceived",
     [](JournalLists& lists) { return lists.deleteReceivedCall("x"); },
     false,
     kNothing,
     kNothing,
     {}},
    {"DeletesASetOfReceived",
     [](JournalLists& lists) {
         return lists.deleteReceivedCallList(Ids{"r1", "r3"});
     },
     true,
     {"receivedCallsUpdate(item -, entryId -, action 3)"},
     {"delete ReceivedCalls 31 33"},
     {"r1", "r3"}},
    {"DeletesNoReceived",
     [](JournalLists& lists) { return lists.deleteReceivedCallList(Ids{}); },
     true,
     kNothing,
     kNothing,
     {}},
    {"ClearsReceivedWithoutTellingAnybody",
     [](JournalLists& lists) { return lists.deleteReceivedCallList(); },
     true,
     kNothing,
     {"delete ReceivedCalls all"},
     {"r1", "r2", "r3"}},
    {"DeletesOneForwarded",
     [](JournalLists& lists) { return lists.deleteForwardedCall("f3"); },
     true,
     {"forwardedCallsUpdate(item -, entryId 43, action 2)"},
     {"delete ForwardedCalls 43"},
     {"f3"}},
    {"DoesNotFindAnUnknownForwarded",
     [](JournalLists& lists) { return lists.deleteForwardedCall("x"); },
     false,
     kNothing,
     kNothing,
     {}},
    {"DeletesASetOfForwarded",
     [](JournalLists& lists) {
         return lists.deleteForwardedCallList(Ids{"f1", "f2"});
     },
     true,
     kForwardedChanged,
     {"delete ForwardedCalls 41 42"},
     {"f1", "f2"}},
    {"DeletesNoForwarded",
     [](JournalLists& lists) { return lists.deleteForwardedCallList(Ids{}); },
     true,
     kNothing,
     kNothing,
     {}},
    {"ClearsForwarded",
     [](JournalLists& lists) { return lists.deleteForwardedCallList(); },
     true,
     kForwardedChanged,
     {"delete ForwardedCalls all"},
     {"f1", "f2", "f3"}},
};

const Change kCallBacksAndAll[] = {
    {"DeletesOneCallBack",
     [](JournalLists& lists) { return lists.deleteCallBack("c1"); },
     true,
     {"callBacksUpdate(item -, entryId c1, action 2)", "callBacksCountUpdate(2)"},
     {"delete CallBacks c1"},
     {"c1"}},
    {"DoesNotFindAnUnknownCallBack",
     [](JournalLists& lists) { return lists.deleteCallBack("x"); },
     false,
     kNothing,
     kNothing,
     {}},
    {"DeletesASetOfCallBacks",
     [](JournalLists& lists) {
         return lists.deleteCallBackList(Ids{"c1", "c3"});
     },
     true,
     {"callBacksUpdate(item -, entryId -, action 3)", "callBacksCountUpdate(1)"},
     {"delete CallBacks c1 c3"},
     {"c1", "c3"}},
    {"DeletesNoCallBacks",
     [](JournalLists& lists) { return lists.deleteCallBackList(Ids{}); },
     true,
     kNothing,
     kNothing,
     {}},
    {"ClearsCallBacks",
     [](JournalLists& lists) { return lists.deleteCallBackList(); },
     true,
     {"callBacksUpdate(item -, entryId -, action 3)", "callBacksCountUpdate(0)"},
     {"delete CallBacks all"},
     {"c1", "c2", "c3"}},
    {"DeletesEntriesOfAnyList",
     [](JournalLists& lists) {
         return lists.deleteCalls({"m1", "r1", "c2", "x"}, false);
     },
     true,
     {"missedCallsCountUpdate(1)", "missedCallsUpdate(item -, entryId -, action 3)",
      "receivedCallsUpdate(item -, entryId -, action 3)", "callBacksUpdate(item -, entryId -, action 3)",
      "callBacksCountUpdate(2)"},
     {"delete MissedCalls 11", "delete ReceivedCalls 31", "delete CallBacks c2"},
     {"m1", "r1", "c2"}},
    {"SparesMissedAmongEntriesOfAnyList",
     [](JournalLists& lists) {
         return lists.deleteCalls({"m1", "f1"}, true);
     },
     true,
     kForwardedChanged,
     {"delete ForwardedCalls 41"},
     {"f1"}},
    {"FindsNoneOfTheEntries",
     [](JournalLists& lists) { return lists.deleteCalls({"x"}, false); },
     false,
     kNothing,
     kNothing,
     {}},
    {"DeletesAllCallsButNoCallBacks",
     [](JournalLists& lists) { return lists.deleteAllCalls(); },
     true,
     {kDialledCleared.front(), kForwardedChanged.front()},
     {"delete MissedCalls all", "delete DialledCalls all", "delete ReceivedCalls all",
      "delete ForwardedCalls all"},
     {"m1", "m2", "m3", "d1", "d2", "d3", "r1", "r2", "r3", "f1", "f2", "f3"}},
};

INSTANTIATE_TEST_SUITE_P(Missed, ListChanges, testing::ValuesIn(kMissed), kRowName);
INSTANTIATE_TEST_SUITE_P(Dialled, ListChanges, testing::ValuesIn(kDialled), kRowName);
INSTANTIATE_TEST_SUITE_P(ReceivedAndForwarded, ListChanges, testing::ValuesIn(kReceivedAndForwarded),
                         kRowName);
INSTANTIATE_TEST_SUITE_P(CallBacksAndAll, ListChanges, testing::ValuesIn(kCallBacksAndAll), kRowName);

}  // namespace
}  // namespace journaltest
