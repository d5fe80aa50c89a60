// What a switch that keeps the call log is told when the user deletes entries: one request a number in server call-log
// mode (system identifier 2), the group's request for calls on a line under identifier 1, nothing otherwise. The switch
// of the rig reads every list while it answers, so no list may be held meanwhile.

#include <functional>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/texts/SoftwareTypes.h"
#include "tests/journal-lists/JournalRig.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

using journal::JournalLists;
using Ids = std::set<std::string>;
using Operation = std::function<void(JournalLists&)>;

constexpr const char* kNewest = "2026-11-23T08:00:00Z";
constexpr const char* kMiddle = "2026-11-22T08:00:00Z";
constexpr const char* kOldest = "2026-11-21T08:00:00Z";

struct Report {
    const char* name;
    int systemIdentifier;
    Operation operation;
    std::string sent;
};

std::ostream& operator<<(std::ostream& out, const Report& report) {
    return out << report.name;
}

class SwitchReports : public testing::TestWithParam<Report> {
protected:
    static void start(JournalRig& rig, int systemIdentifier) {
        rig.phoneIs(softwareTypes::qorvex, systemIdentifier);
        const std::vector<Occurrence> calls{{"4711", kNewest}, {"", kMiddle}, {"4711", kOldest}};
        rig.startWith(
            {itemOf<MissedCallItem>("m1", "11", {{"4711", kNewest}, {"4712", kMiddle}, {"4711", kOldest}}),
             itemOf<MissedCallItem>("m2", "12", {{"4713", kMiddle, "line 1", "sales"}}),
             itemOf<MissedCallItem>("m3", "13", {{"4714", kOldest, "line 2", "help"}})},
            {itemOf<DialledCallItem>("d1", "21", calls),
             itemOf<DialledCallItem>("d2", "22", {{"4720", kOldest}})},
            {itemOf<ReceivedCallItem>("r1", "31", calls)}, {itemOf<ForwardedCallItem>("f1", "41", calls)},
            {callBackOf("c1", "4711", kNewest)});
    }

    JournalRig rig;
};

TEST_P(SwitchReports, SayWhatWasDeleted) {
    start(rig, GetParam().systemIdentifier);
    GetParam().operation(rig.lists);
    EXPECT_EQ(rig.sent(), GetParam().sent);
    EXPECT_EQ(rig.listContents(), rig.databaseContents());
}

TEST_P(SwitchReports, DoNotDecideWhetherADeletionStands) {
    start(rig, GetParam().systemIdentifier);
    GetParam().operation(rig.lists);
    JournalRig refused;
    start(refused, GetParam().systemIdentifier);
    refused.exchange.fail(FakeCstaService::Kind::eEscape);
    GetParam().operation(refused.lists);
    EXPECT_EQ(refused.listContents(), rig.listContents());
    EXPECT_EQ(refused.sent(), rig.sent()) << "nothing is tried twice";
    EXPECT_EQ(CapturedLog::contains("response code is error"), !GetParam().sent.empty());
}

const std::string kOfM1 = "one 1 4711 2026-11-23T08:00:00Z; one 1 4712 2026-11-22T08:00:00Z";
const std::string kOfD1 = "one 4 4711 2026-11-23T08:00:00Z; one 4  2026-11-22T08:00:00Z";
const std::string kOfR1 = "one 0 4711 2026-11-23T08:00:00Z; one 0  2026-11-22T08:00:00Z";

Report row(const char* name, int systemIdentifier, const Operation& operation, const std::string& sent) {
    return {name, systemIdentifier, operation, sent};
}

const Report kReports[] = {
    // server call-log mode
    row(
        "OneMissed", 2, [](auto& lists) { lists.deleteMissedCall("m1", false); }, kOfM1),
    row(
        "OneMissedOnALine", 2, [](auto& lists) { lists.deleteMissedCall("m2", false); },
        "one 1 4713 2026-11-22T08:00:00Z"),
    row(
        "NothingOfARefusedDeletion", 2, [](auto& lists) { lists.deleteMissedCall("m1", true); }, ""),
    row(
        "ASetOfMissed", 2,
        [](auto& lists) {
            lists.deleteMissedCallList(Ids{"m1", "m3"});
        },
        kOfM1 + "; one 1 4714 2026-11-21T08:00:00Z"),
    row(
        "AllMissed", 2, [](auto& lists) { lists.deleteMissedCallList(); }, "all 1"),
    row(
        "NothingOfAnEmptyList", 2,
        [](auto& lists) { lists.deleteMissedCallList(), lists.deleteMissedCallList(); }, "all 1"),
    row(
        "OneDialled", 2, [](auto& lists) { lists.deleteDialledCall("d1"); }, kOfD1),
    row(
        "ASetOfDialled", 2,
        [](auto& lists) {
            lists.deleteDialledCallList(Ids{"d1", "d2"});
        },
        kOfD1 + "; one 4 4720 2026-11-21T08:00:00Z"),
    row(
        "AllDialled", 2, [](auto& lists) { lists.deleteDialledCallList(); }, "all 4"),
    row(
        "OneReceived", 2, [](auto& lists) { lists.deleteReceivedCall("r1"); }, kOfR1),
    row(
        "ASetOfReceived", 2, [](auto& lists) { lists.deleteReceivedCallList(Ids{"r1"}); }, kOfR1),
    row(
        "AllReceived", 2, [](auto& lists) { lists.deleteReceivedCallList(); }, "all 0"),
    row(
        "NothingOfForwarded", 2, [](auto& lists) { lists.deleteForwardedCall("f1"); }, ""),
    row(
        "NothingOfAllForwarded", 2, [](auto& lists) { lists.deleteForwardedCallList(); }, ""),
    row(
        "NothingOfCallBacks", 2, [](auto& lists) { lists.deleteCallBackList(); }, ""),
    row(
        "AllCalls", 2, [](auto& lists) { lists.deleteAllCalls(); }, "all 1; all 4; all 0"),
    // calls of groups
    row(
        "OneMissedOfAGroup", 1, [](auto& lists) { lists.deleteMissedCall("m2", false); },
        "group 3 4713 sales"),
    row(
        "NothingOfAMissedCallOnNoLine", 1, [](auto& lists) { lists.deleteMissedCall("m1", false); }, ""),
    row(
        "ASetOfMissedOfGroups", 1,
        [](auto& lists) {
            lists.deleteMissedCallList(Ids{"m1", "m2", "m3"});
        },
        "group 3 4713 sales; group 3 4714 help"),
    row(
        "AllCallsOfGroups", 1, [](auto& lists) { lists.deleteAllCalls(); },
        "group 3 4713 sales; group 3 4714 help"),
    // every other identifier
    row(
        "NothingOfOneWithoutALog", 0, [](auto& lists) { lists.deleteMissedCall("m2", false); }, ""),
    row(
        "NothingWithoutALog", 0, [](auto& lists) { lists.deleteAllCalls(); }, ""),
    row(
        "NothingUnderAnUnknownIdentifier", 3, [](auto& lists) { lists.deleteAllCalls(); }, ""),
};
INSTANTIATE_TEST_SUITE_P(Table, SwitchReports, testing::ValuesIn(kReports), kRowName);

TEST_F(SwitchReports, OfAClearingThatTheSwitchOrderedAreSuspended) {
    start(rig, 2);
    rig.settings.change([](journal::SettingValues& values) { values.m_serverBasedCallLog = false; });
    rig.lists.deleteMissedCallList();
    rig.lists.deleteDialledCallList();
    rig.lists.deleteReceivedCallList();
    EXPECT_EQ(rig.sent(), "");
}

TEST_F(SwitchReports, OfAGroupCallSayInTheLogThatTheyGoOut) {
    start(rig, 1);
    rig.lists.deleteMissedCall("m2", false);
    EXPECT_TRUE(CapturedLog::contains("send CSTAEscapeRequest for group call"));
}

}  // namespace
}  // namespace journaltest
