// Every change a client can make to the lists: its result, the updates for the observers, the requests to the
// database and to a switch that keeps the call log, and the entries that are deleted.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/csta/CSTARequest.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/ListOperations.h"
#include "tests/support/ListsFixture.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

std::string dayOf(int index) {
    return "2026-11-2" + std::to_string(3 - index);
}

/// The first with three calls of two numbers, the others with one call on a line that belongs to a group.
template <typename Item>
std::vector<Item> three(const std::string& letter, int uniqueId) {
    const std::string number = "47" + std::to_string(uniqueId);
    const std::vector<Occurrence> calls[] = {{{number, dayOf(0)}, {"", dayOf(1)}, {number, dayOf(2)}},
                                             {{number + "2", dayOf(1), "line 1", "sales"}},
                                             {{number + "3", dayOf(2), "line 2", "help"}}};
    std::vector<Item> items;
    for (int index = 0; index < 3; ++index) {
        items.push_back(
            itemOf<Item>(letter + std::to_string(index + 1), std::to_string(uniqueId + index), calls[index]));
    }
    return items;
}

/// Three entries a list, newest first: m1 (unique id 11) to m3, d1 (21), r1 (31), f1 (41), c1. Of the missed
/// ones m2 is viewed.
void start(ListsFixture& fixture, int systemIdentifier) {
    fixture.phoneIs("", systemIdentifier);
    auto missed = three<MissedCallItem>("m", 11);
    missed[1].setViewed(true);
    fixture.startWith(missed, three<DialledCallItem>("d", 21), three<ReceivedCallItem>("r", 31),
                      three<ForwardedCallItem>("f", 41),
                      {callBackOf("c1", "51", dayOf(0)), callBackOf("c2", "52", dayOf(1)),
                       callBackOf("c3", "53", dayOf(2))});
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

// operation | result | heard | written | sent to a switch that keeps the call log | deleted
constexpr const char* kChanges = R"(
one missed m1             | yes | missedCount(1); missed(-, 11, 2) | delete MissedCalls 11
+   | one 1 4711 2026-11-23; one 1  2026-11-22 | m1
one missed                | no  | | | |
set missed m3 m1 x        | yes | missedCount(0); missed(-, -, 3) | delete MissedCalls 11 13
+   | one 1 4711 2026-11-23; one 1  2026-11-22; one 1 47113 2026-11-21 | m1 m3
set missed                | yes | | | |
all missed                | yes | | delete MissedCalls all | all 1 | m1 m2 m3
view m3 m1 x              | yes | missedCount(0) | write MissedCalls 11 13 | |
age m3                    | yes | missedCount(1); missed(m3, 13, 1) | write MissedCalls 13 | |
age d1                    | yes | | | |
set dialled d1 d2         | yes | dialled(d3, -, 3) | delete DialledCalls 21 22
+   | one 4 4721 2026-11-23; one 4  2026-11-22; one 4 47212 2026-11-22 | d1 d2
all dialled               | yes | dialled(-, -, 4) | delete DialledCalls all | all 4 | d1 d2 d3
one received r1           | yes | received(-, 31, 2) | delete ReceivedCalls 31
+   | one 0 4731 2026-11-23; one 0  2026-11-22 | r1
one received x            | no  | | | |
set forwarded f1 f2       | yes | forwarded(-, -, 3) | delete ForwardedCalls 41 42 | | f1 f2
all forwarded             | yes | forwarded(-, -, 3) | delete ForwardedCalls all | | f1 f2 f3
one callback c1           | yes | callBacks(-, c1, 2); callBacksCount(2) | delete CallBacks c1 | | c1
set callback c1 c3        | yes | callBacks(-, -, 3); callBacksCount(1) | delete CallBacks c1 c3 | | c1 c3
any m2 r2 c2 x            | yes | missedCount(2); missed(-, -, 3); received(-, -, 3); callBacks(-, -, 3); callBacksCount(2)
+   | delete MissedCalls 12; delete ReceivedCalls 32; delete CallBacks c2
+   | one 1 47112 2026-11-22; one 0 47312 2026-11-22 | m2 r2 c2
any-switch m1 f1          | yes | forwarded(-, -, 3) | delete ForwardedCalls 41 | | f1
any x                     | no  | | | |
everything                | yes | dialled(-, -, 4); forwarded(-, -, 3) | delete MissedCalls all; delete DialledCalls all;
+ delete ReceivedCalls all; delete ForwardedCalls all | all 1; all 4; all 0 | m1 m2 m3 d1 d2 d3 r1 r2 r3 f1 f2 f3
)";

// The switch of the fixture reads every list during a request, so no list may be locked meanwhile.
TEST(ListChanges, NotifyWriteAndSendAlsoWhenTheDatabaseOrTheSwitchFails) {
    const struct {
        const char* name;
        int systemIdentifier;
        bool databaseFails;
        bool switchFails;
    } phones[] = {{"the switch keeps no log", 0, false, false},
                  {"the switch keeps the log", 2, false, false},
                  {"the switch fails", 2, false, true},
                  {"the database fails", 0, true, false}};
    for (const auto& row : table(6, kChanges)) {
        for (const auto& phone : phones) {
            SCOPED_TRACE(row[0] + ", " + phone.name);
            ListsFixture fixture;
            start(fixture, phone.systemIdentifier);
            const std::string left = without(fixture.entryIds(), row[5]);
            const Texts rows = fixture.databaseContents();
            fixture.database.setFailing(phone.databaseFails);
            if (phone.switchFails) {
                fixture.exchange.respond(FakeCstaService::Kind::eEscape,
                                         [](CSTARequest& request) { request.setOutcome(1, nullptr); });
            }
            EXPECT_EQ(perform(fixture.deletion, fixture.missedCallUpdates, row[0]), row[1] == "yes");
            EXPECT_EQ(fixture.heard(), row[2]);
            EXPECT_EQ(fixture.written(), row[3]);
            EXPECT_EQ(fixture.entryIds(), left);
            EXPECT_EQ(fixture.databaseContents(), phone.databaseFails ? rows : fixture.listContents());
            EXPECT_EQ(CapturedLog::contains("the database refused"), phone.databaseFails && !row[3].empty());
            EXPECT_EQ(fixture.sent(), phone.systemIdentifier == 2 ? row[4] : "");
            EXPECT_EQ(CapturedLog::contains("response code is error"), phone.switchFails && !row[4].empty());
        }
    }
}

// System identifier | operations | sent: under identifier 1 the switch keeps the calls of groups.
TEST(ListChanges, AreSentByWhatTheSwitchKeeps) {
    for (const auto& row : table(3, R"(
1 | one missed m2          | group 3 47112 1 sales
1 | one missed m1          |
1 | set missed m1 m2 m3    | group 3 47112 1 sales; group 3 47113 1 help
1 | everything             | group 3 47112 1 sales; group 3 47113 1 help
3 | everything             |
2 | all missed, all missed | all 1
)")) {
        SCOPED_TRACE(row[1] + ", identifier " + row[0]);
        ListsFixture fixture;
        start(fixture, std::stoi(row[0]));
        for (const std::string& operation : split(row[1], ',')) {
            perform(fixture.deletion, fixture.missedCallUpdates, operation);
        }
        EXPECT_EQ(fixture.sent(), row[2]);
    }
    ListsFixture unread;
    unread.phoneIs("Norlith Qorvex", 2);
    unread.database.setFailing(true);
    EXPECT_TRUE(unread.deletion.deleteMissedCallList());
    EXPECT_EQ(unread.sent(), "") << "what cannot be read is not there";

    unread.platform.m_cstaService = nullptr;
    const CallLogEntryRequest request;
    EXPECT_FALSE(unread.requests.sendCSTAEscapeRequest(&request));
}

}  // namespace
}  // namespace journaltest
