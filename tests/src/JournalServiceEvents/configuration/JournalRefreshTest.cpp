#include <string>

#include <gtest/gtest.h>

#include "tests/support/CapturedLog.h"
#include "tests/support/ConfigurationFixture.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

void becomes(ConfigurationFixture& rig, const std::string& softwareType) {
    rig.phoneIs(softwareType);
    rig.notifier.init(&rig.reader, softwareType);
}

// The database holds an unviewed missed row m1 and a dialled row d1 that no list knows yet.
// What is refreshed | phone | on before | stored call-log-enabled | entries | heard | published
TEST(JournalRefresh, LoadsTellsAndPublishes) {
    for (const auto& row : table(7, R"(
lists      | Norlith SIP    | enabled missed | true | m1 d1 | |
log        | Norlith SIP    | enabled missed | true | m1 d1
+   | missedCount(1); missed(-, -, 3); dialled(-, -, 3); received(-, -, 3); forwarded(-, -, 3) |
log        | Norlith SIP    | enabled missed | false |
+   | dialled(-, -, 4); forwarded(-, -, 3); missedCount(0); missed(-, -, 3); dialled(-, -, 3); received(-, -, 3);
+ forwarded(-, -, 3) |
everything | Norlith SIP    | missed delete | true | m1 d1
+   | missedCount(1); missed(-, -, 3); dialled(d1, -, 3); received(-, -, 3); forwarded(-, -, 3); callBacks(-, -, 3);
+ callBacksCount(0) | call-log-enabled=true; missed-logging=0; delete-missed-when-called=0
everything | Norlith Qorvex | enabled | false |
+   | dialled(-, -, 4); forwarded(-, -, 3); missedCount(0); missed(-, -, 3); dialled(-, -, 3); received(-, -, 3);
+ callBacks(-, -, 3); callBacksCount(0) |
)")) {
        SCOPED_TRACE(row[0] + " of a " + row[1] + ", enabled " + row[3]);
        ConfigurationFixture rig;
        rig.database.addRow(CallListDatabaseAdapterHelper::DAS_CALLLOGMISSEDCALLS,
                            itemOf<MissedCallItem>("m1", "11", {{"4711", "t"}}));
        rig.database.addRow(CallListDatabaseAdapterHelper::DAS_CALLLOGDIALLEDCALLS,
                            itemOf<DialledCallItem>("d1", "21", {{"4711", "t"}}));
        rig.database.settings["call-log-enabled"] = row[3];
        rig.context.addService("UCServiceIfc", &rig.uc);
        static_cast<void>(rig.gate.handleCSTAEvent());  // which looks for the service
        becomes(rig, row[1]);
        rig.setOwn(row[2]);
        if (row[0] == "everything") {
            rig.refresh.reloadEverything();
        } else {
            EXPECT_TRUE(row[0] == "log" ? rig.refresh.refreshCallLog() : rig.refresh.refreshCallLists());
        }
        EXPECT_EQ(rig.entryIds(), row[4]);
        EXPECT_EQ(rig.listContents(), rig.databaseContents());
        EXPECT_EQ(rig.heard(), row[5]);
        EXPECT_EQ(rig.management.published(), row[6]);
        EXPECT_EQ(rig.uc.refreshes, row[0] == "everything" ? 1 : 0);
    }
}

// Phone | on before | on after | published | stored, after the lists that are emptied
TEST(JournalRefresh, ByAResetEmptiesTheListsAndBringsWhatDiffersBackOnASipPhone) {
    for (const auto& row : table(5, R"(
Norlith SIP    | enabled missed | enabled missed | |
Norlith SIP    | missed delete | enabled missed | call-log-enabled=true; delete-missed-when-called=0
+   | ; set call-log-enabled=true; set delete-missed-when-called=false
Norlith SIP    | enabled | enabled missed | missed-logging=0 | ; set missed-logging=true
Norlith Qorvex | delete | delete | |
)")) {
        SCOPED_TRACE(row[0] + ", on: " + row[1]);
        ConfigurationFixture rig;
        becomes(rig, row[0]);
        rig.startWith({itemOf<MissedCallItem>("m1", "11", {{"4711", "t"}})});
        rig.setOwn(row[1]);
        EXPECT_TRUE(rig.resetUserData());
        EXPECT_EQ(rig.entryIds(), "");
        EXPECT_EQ(rig.own(), row[2]);
        EXPECT_EQ(rig.management.published(), row[3]);
        EXPECT_EQ(rig.written(),
                  "delete MissedCalls all; delete DialledCalls all; delete ReceivedCalls all; "
                  "delete ForwardedCalls all" +
                      row[4]);
    }
}

// Phone | on before | stored before, "fails" where it cannot be read | on after | stored after
TEST(JournalSettings, AreReadAndOnASipPhoneGetDefaultsWhereNoneIsStored) {
    for (const auto& row : table(5, R"(
Norlith SIP    | enabled missed | call-log-enabled=false missed-logging=0 delete-missed-when-called=true | delete |
Norlith SIP    | delete | missed-logging=false | enabled
+   | set call-log-enabled=true; set delete-missed-when-called=false
Norlith SIP    | delete | fails | enabled missed
+   | set call-log-enabled=true; set missed-logging=true; set delete-missed-when-called=false
Norlith Qorvex | delete | missed-logging=true | missed delete |
Norlith Qorvex | delete | fails | delete |
)")) {
        SCOPED_TRACE(row[0] + ": " + row[2]);
        ConfigurationFixture rig;
        rig.phoneIs(row[0]);
        rig.setOwn(row[1]);
        rig.database.setFailing(row[2] == "fails");
        for (const std::string& stored : split(row[2], ' ')) {
            rig.database.settings[stored.substr(0, stored.find('='))] = stored.substr(stored.find('=') + 1);
        }
        rig.ownSettings.readConfigItemsFromDB();
        EXPECT_EQ(rig.own(), row[3]);
        EXPECT_EQ(rig.written(), row[4]);
        EXPECT_EQ(rig.management.published(), "");
    }
}

TEST(JournalRefresh, TakesOnlyTrueForAnOutsideCallServer) {
    ConfigurationFixture rig;
    for (const std::string value : {"true", "1"}) {
        EXPECT_TRUE(rig.refresh.setJournalServiceCallLogEventsDisabling(value));
        EXPECT_EQ(rig.settings.values()->m_xsiConfigured, value == "true");
    }
}

}  // namespace
}  // namespace journaltest
