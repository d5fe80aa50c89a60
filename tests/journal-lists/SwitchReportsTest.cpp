// What a switch that keeps the call log is told when the user deletes entries: one request a number in server call-log
// mode (system identifier 2), the group's request for calls on a line under identifier 1, nothing otherwise. The switch
// of the rig reads every list while it answers, so no list may be held meanwhile.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/texts/SoftwareTypes.h"
#include "tests/journal-lists/JournalRig.h"
#include "tests/journal-lists/ListOperations.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

void start(JournalRig& rig, const std::string& systemIdentifier) {
    constexpr const char* kNewest = "2026-11-23";
    constexpr const char* kMiddle = "2026-11-22";
    constexpr const char* kOldest = "2026-11-21";
    rig.phoneIs(softwareTypes::qorvex, std::stoi(systemIdentifier));
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

TEST(SwitchReports, SayWhatWasDeletedAndDoNotDecideWhetherItStands) {
    for (const auto& row : table(3, R"(
2 | one missed m1         | one 1 4711 2026-11-23; one 1 4712 2026-11-22
2 | one missed m2         | one 1 4713 2026-11-22
2 | one missed m1 switch  |
2 | set missed m1 m3      | one 1 4711 2026-11-23; one 1 4712 2026-11-22; one 1 4714 2026-11-21
2 | all missed            | all 1
2 | one dialled d1        | one 4 4711 2026-11-23; one 4  2026-11-22
2 | set dialled d1 d2     | one 4 4711 2026-11-23; one 4  2026-11-22; one 4 4720 2026-11-21
2 | all dialled           | all 4
2 | one received r1       | one 0 4711 2026-11-23; one 0  2026-11-22
2 | set received r1       | one 0 4711 2026-11-23; one 0  2026-11-22
2 | all received          | all 0
2 | one forwarded f1      |
2 | all forwarded         |
2 | all callback          |
2 | everything            | all 1; all 4; all 0
1 | one missed m2         | group 3 4713 sales
1 | one missed m1         |
1 | set missed m1 m2 m3   | group 3 4713 sales; group 3 4714 help
1 | everything            | group 3 4713 sales; group 3 4714 help
0 | one missed m2         |
0 | everything            |
3 | everything            |
)")) {
        SCOPED_TRACE(row[1] + ", identifier " + row[0]);
        CapturedLog::reset();
        JournalRig rig;
        start(rig, row[0]);
        perform(rig.lists, row[1]);
        EXPECT_EQ(rig.sent(), row[2]);
        EXPECT_EQ(rig.listContents(), rig.databaseContents());

        JournalRig refused;
        start(refused, row[0]);
        refused.exchange.fail(FakeCstaService::Kind::eEscape);
        perform(refused.lists, row[1]);
        EXPECT_EQ(refused.listContents(), rig.listContents());
        EXPECT_EQ(refused.sent(), row[2].substr(0, row[2].find(';')))
            << "nothing is tried twice, and the switch is waited for once";
        EXPECT_EQ(CapturedLog::contains("response code is error"), !row[2].empty());
    }
}

TEST(SwitchReports, AreSpareWhereTheListIsEmptyOrTheSwitchOrderedItsClearing) {
    JournalRig rig;
    start(rig, "2");
    rig.lists.deleteMissedCallList();
    rig.lists.deleteMissedCallList();
    EXPECT_EQ(rig.sent(), "all 1");
    rig.settings.change([](journal::SettingValues& values) { values.m_serverBasedCallLog = false; });
    rig.lists.deleteDialledCallList();
    rig.lists.deleteReceivedCallList();
    EXPECT_EQ(rig.sent(), "all 1");
}

}  // namespace
}  // namespace journaltest
