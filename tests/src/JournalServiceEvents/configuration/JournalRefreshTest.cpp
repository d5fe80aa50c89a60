#include <string>

#include <gtest/gtest.h>

#include "tests/src/JournalServiceEvents/configuration/ConfigurationFixture.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

void becomes(ConfigurationFixture& fixture, const std::string& softwareType) {
    fixture.phoneIs(softwareType);
    fixture.notifier.init(&fixture.reader, softwareType);
}

// The database contains an unviewed missed row m1 and a dialled row d1 that are not loaded.
// Refreshed | phone | on before | stored call-log-enabled | entries after | callbacks | published
TEST(JournalRefresh, LoadsNotifiesAndPublishes) {
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
        ConfigurationFixture fixture;
        fixture.database.addRow(CallListDatabaseAdapterHelper::DAS_CALLLOGMISSEDCALLS,
                                itemOf<MissedCallItem>("m1", "11", {{"4711", "t"}}));
        fixture.database.addRow(CallListDatabaseAdapterHelper::DAS_CALLLOGDIALLEDCALLS,
                                itemOf<DialledCallItem>("d1", "21", {{"4711", "t"}}));
        fixture.database.settings["call-log-enabled"] = row[3];
        fixture.context.addService("UCServiceIfc", &fixture.uc);
        static_cast<void>(fixture.policy.handleCSTAEvent());  // which looks for the service
        becomes(fixture, row[1]);
        fixture.setOwn(row[2]);
        if (row[0] == "everything") {
            fixture.refresh.reloadEverything();
        } else {
            EXPECT_TRUE(row[0] == "log" ? fixture.refresh.refreshCallLog()
                                        : fixture.refresh.refreshCallLists());
        }
        EXPECT_EQ(fixture.entryIds(), row[4]);
        EXPECT_EQ(fixture.listContents(), fixture.databaseContents());
        EXPECT_EQ(fixture.heard(), row[5]);
        EXPECT_EQ(fixture.management.published(), row[6]);
        EXPECT_EQ(fixture.uc.refreshes, row[0] == "everything" ? 1 : 0);
    }
}

// A reset, or the stored values that are read; "fails" where they cannot be read | phone | on before |
// on after | published | stored, for a reset after the lists that are emptied
TEST(JournalRefresh, RestoresDefaultsOnASipPhoneByAResetOrByAFailedRead) {
    for (const auto& row : table(6, R"(
reset | Norlith SIP    | enabled missed | enabled missed | |
reset | Norlith SIP    | missed delete | enabled missed | call-log-enabled=true; delete-missed-when-called=0
+     | set call-log-enabled=true; set delete-missed-when-called=false
reset | Norlith SIP    | enabled | enabled missed | missed-logging=0 | set missed-logging=true
reset | Norlith Qorvex | delete | delete | |
call-log-enabled=false missed-logging=0 delete-missed-when-called=true | Norlith SIP | enabled missed | delete | |
fails | Norlith SIP    | delete | enabled missed |
+     | set call-log-enabled=true; set missed-logging=true; set delete-missed-when-called=false
fails | Norlith Qorvex | delete | delete | |
)")) {
        SCOPED_TRACE(row[0] + " on a " + row[1] + ", on: " + row[2]);
        ConfigurationFixture fixture;
        becomes(fixture, row[1]);
        fixture.startWith({itemOf<MissedCallItem>("m1", "11", {{"4711", "t"}})});
        fixture.setOwn(row[2]);
        const bool resets = row[0] == "reset";
        if (resets) {
            EXPECT_TRUE(fixture.resetUserData());
        } else {
            fixture.database.setFailing(row[0] == "fails");
            for (const std::string& stored : split(row[0], ' ')) {
                fixture.database.settings[stored.substr(0, stored.find('='))] =
                    stored.substr(stored.find('=') + 1);
            }
            fixture.journalSettings.readConfigItemsFromDB();
        }
        const std::string emptied =
            "delete MissedCalls all; delete DialledCalls all; "
            "delete ReceivedCalls all; delete ForwardedCalls all";
        EXPECT_EQ(fixture.entryIds(), resets ? "" : "m1");
        EXPECT_EQ(fixture.own(), row[3]);
        EXPECT_EQ(fixture.management.published(), row[4]);
        EXPECT_EQ(fixture.written(), (resets ? emptied + (row[5].empty() ? "" : "; ") : "") + row[5]);
    }
}

}  // namespace
}  // namespace journaltest
