// Every change a client can make to the lists, as one table: what it answers, what the observers hear, what goes to the
// database, and which entries are gone.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/journal-lists/JournalRig.h"
#include "tests/journal-lists/ListOperations.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

std::string timeOf(int index) {
    return "2026-11-2" + std::to_string(3 - index) + "T08:00:00Z";
}

template <typename Item>
std::vector<Item> three(const std::string& letter, int firstUniqueId) {
    std::vector<Item> items;
    for (int index = 0; index < 3; ++index) {
        const std::string uniqueId = std::to_string(firstUniqueId + index);
        items.push_back(
            itemOf<Item>(letter + std::to_string(index + 1), uniqueId, {{"47" + uniqueId, timeOf(index)}}));
    }
    return items;
}

/// Three entries a list, newest first: m1 (unique id 11) to m3, d1 (21), r1 (31), f1 (41), c1. Of the missed ones m2
/// is viewed.
void start(JournalRig& rig) {
    auto missed = three<MissedCallItem>("m", 11);
    missed[1].setViewed(true);
    rig.startWith(missed, three<DialledCallItem>("d", 21), three<ReceivedCallItem>("r", 31),
                  three<ForwardedCallItem>("f", 41),
                  {callBackOf("c1", "51", timeOf(0)), callBackOf("c2", "52", timeOf(1)),
                   callBackOf("c3", "53", timeOf(2))});
}

std::string without(const std::string& ids, const std::string& gone) {
    Texts left;
    for (const std::string& id : split(ids, ' ')) {
        if (gone.find(id) == std::string::npos) {
            left.push_back(id);
        }
    }
    return joined(left, " ");
}

// operation | answer | heard | written | gone
constexpr const char* kChanges = R"(
one missed m1             | yes | missedCount(1); missed(-, 11, 2) | delete MissedCalls 11 | m1
one missed m1 switch      | no  | | |
one missed                | no  | | |
one missed d1             | no  | | |
set missed m3 m1 x        | yes | missedCount(0); missed(-, -, 3) | delete MissedCalls 11 13 | m1 m3
set missed                | yes | | |
set missed d1             | yes | | |
all missed                | yes | | delete MissedCalls all | m1 m2 m3
view m3 m1 x              | yes | missedCount(0) | write MissedCalls 11 13 |
view                      | yes | | |
age m3                    | yes | missedCount(1); missed(m3, 13, 1) | write MissedCalls 13 |
age d1                    | yes | | |
one dialled d1            | yes | dialled(d2, 21, 2) | delete DialledCalls 21 | d1
one dialled m1            | no  | | |
set dialled d1 d2         | yes | dialled(d3, -, 3) | delete DialledCalls 21 22 | d1 d2
set dialled d1 d2 d3      | yes | dialled(-, -, 3) | delete DialledCalls 21 22 23 | d1 d2 d3
set dialled               | yes | | |
all dialled               | yes | dialled(-, -, 4) | delete DialledCalls all | d1 d2 d3
one received r2           | yes | received(-, 32, 2) | delete ReceivedCalls 32 | r2
one received x            | no  | | |
set received r1 r3        | yes | received(-, -, 3) | delete ReceivedCalls 31 33 | r1 r3
set received              | yes | | |
all received              | yes | | delete ReceivedCalls all | r1 r2 r3
one forwarded f3          | yes | forwarded(-, 43, 2) | delete ForwardedCalls 43 | f3
one forwarded x           | no  | | |
set forwarded f1 f2       | yes | forwarded(-, -, 3) | delete ForwardedCalls 41 42 | f1 f2
set forwarded             | yes | | |
all forwarded             | yes | forwarded(-, -, 3) | delete ForwardedCalls all | f1 f2 f3
one callback c1           | yes | callBacks(-, c1, 2); callBacksCount(2) | delete CallBacks c1 | c1
one callback x            | no  | | |
set callback c1 c3        | yes | callBacks(-, -, 3); callBacksCount(1) | delete CallBacks c1 c3 | c1 c3
set callback              | yes | | |
all callback              | yes | callBacks(-, -, 3); callBacksCount(0) | delete CallBacks all | c1 c2 c3
any m1 r1 c2 x            | yes | missedCount(1); missed(-, -, 3); received(-, -, 3); callBacks(-, -, 3); callBacksCount(2)
+   | delete MissedCalls 11; delete ReceivedCalls 31; delete CallBacks c2 | m1 r1 c2
any-switch m1 f1          | yes | forwarded(-, -, 3) | delete ForwardedCalls 41 | f1
any x                     | no  | | |
everything                | yes | dialled(-, -, 4); forwarded(-, -, 3) | delete MissedCalls all; delete DialledCalls all;
+ delete ReceivedCalls all; delete ForwardedCalls all | m1 m2 m3 d1 d2 d3 r1 r2 r3 f1 f2 f3
)";

TEST(ListChanges, AnswerTellWriteAndLeaveWhatTheyShould) {
    for (const auto& row : table(5, kChanges)) {
        SCOPED_TRACE(row[0]);
        JournalRig rig;
        start(rig);
        const std::string left = without(rig.entryIds(), row[4]);
        EXPECT_EQ(perform(rig.lists, row[0]), row[1] == "yes");
        EXPECT_EQ(rig.heard(), row[2]);
        EXPECT_EQ(rig.written(), row[3]);
        EXPECT_EQ(rig.entryIds(), left);
        EXPECT_EQ(rig.listContents(), rig.databaseContents());
        EXPECT_EQ(rig.sent(), "") << "the switch keeps no call log";
    }
}

TEST(ListChanges, StandInMemoryWhenTheDatabaseFails) {
    for (const auto& row : table(5, kChanges)) {
        SCOPED_TRACE(row[0]);
        JournalRig rig;
        start(rig);
        const std::string left = without(rig.entryIds(), row[4]);
        const Texts rows = rig.databaseContents();
        rig.database.setFailing(true);
        EXPECT_EQ(perform(rig.lists, row[0]), row[1] == "yes");
        EXPECT_EQ(rig.heard(), row[2]);
        EXPECT_EQ(rig.entryIds(), left);
        EXPECT_EQ(rig.databaseContents(), rows);
        EXPECT_EQ(CapturedLog::contains("the database refused"), !row[3].empty());
    }
}

}  // namespace
}  // namespace journaltest
