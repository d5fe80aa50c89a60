#include <string>

#include <gtest/gtest.h>

#include "platform/texts/SoftwareTypes.h"
#include "tests/management/ManagementRig.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

class JournalRefresh : public testing::Test {
protected:
    /// The database holds an unviewed missed row m1 and a dialled row d1 that no list knows yet.
    JournalRefresh() {
        rig.database.addRow(CallListDatabaseAdapterHelper::DAS_CALLLOGMISSEDCALLS,
                            itemOf<MissedCallItem>("m1", "11", {{"4711", "t"}}));
        rig.database.addRow(CallListDatabaseAdapterHelper::DAS_CALLLOGDIALLEDCALLS,
                            itemOf<DialledCallItem>("d1", "21", {{"4711", "t"}}));
    }
    void becomesQorvex() {
        rig.phoneIs(softwareTypes::qorvex);
        rig.notifier.init(&rig.reader, softwareTypes::qorvex);
    }

    ManagementRig rig;
};

TEST_F(JournalRefresh, OfTheListsLoadsThemQuietly) {
    EXPECT_TRUE(rig.refresh.refreshCallLists());
    EXPECT_EQ(rig.entryIds(), "m1 d1");
    EXPECT_EQ(rig.heard(), "");
}

TEST_F(JournalRefresh, OfTheCallLogTellsOfEverythingButCallBacks) {
    EXPECT_TRUE(rig.refresh.refreshCallLog());
    EXPECT_EQ(rig.entryIds(), "m1 d1");
    EXPECT_EQ(rig.heard(),
              "missedCount(1); missed(-, -, 3); dialled(-, -, 3); received(-, -, 3); forwarded(-, -, 3)");
}

TEST_F(JournalRefresh, OfTheCallLogEmptiesItWhenItWasSwitchedOffMeanwhile) {
    rig.database.setSetting("call-log-enabled", "false");
    rig.refresh.refreshCallLog();
    EXPECT_EQ(rig.entryIds(), "");
    EXPECT_EQ(rig.databaseContents(), Texts{});
    EXPECT_EQ(rig.observer.callbacks(Callback::Kind::eMissedCallsCountUpdate).back().count, 0);
}

TEST_F(JournalRefresh, OfEverythingTellsObserversManagementAndTheUcService) {
    rig.context.addService("UCServiceIfc", &rig.uc);
    rig.refresh.reloadEverything();
    EXPECT_EQ(rig.uc.refreshes(), 0) << "it was never looked for";
    static_cast<void>(rig.gate.handleCSTAEvent());
    rig.forget();
    rig.refresh.reloadEverything();
    EXPECT_EQ(rig.uc.refreshes(), 1);
    EXPECT_EQ(rig.heard(),
              "missedCount(1); missed(-, -, 3); dialled(d1, -, 3); received(-, -, 3); forwarded(-, -, 3); "
              "callBacks(-, -, 3); callBacksCount(0)");
    EXPECT_EQ(rig.published(),
              "call-log-enabled=true; missed-logging=0; delete-missed-when-called=0; call-log-enabled=true; "
              "missed-logging=0; delete-missed-when-called=0");
}

TEST_F(JournalRefresh, OfEverythingPublishesNothingOnOtherPhones) {
    becomesQorvex();
    rig.refresh.reloadEverything();
    EXPECT_EQ(rig.published(), "");
    EXPECT_EQ(rig.heard().find("forwarded"), std::string::npos) << rig.heard();
    EXPECT_NE(rig.heard().find("received(-, -, 3); callBacks(-, -, 3)"), std::string::npos);
}

TEST_F(JournalRefresh, OfEverythingEmptiesADisabledJournal) {
    becomesQorvex();
    rig.setOwn(false, true, false);
    rig.refresh.reloadEverything();
    EXPECT_EQ(rig.entryIds(), "");
}

TEST_F(JournalRefresh, ByAResetBringsWhatDiffersBackAndPublishesIt) {
    for (const auto& row : table(3, R"(
enabled missed | |
missed         | call-log-enabled=true            | ; set call-log-enabled=true
enabled        | missed-logging=0                 | ; set missed-logging=true
enabled missed delete | delete-missed-when-called=0 | ; set delete-missed-when-called=false
delete         | call-log-enabled=true; missed-logging=0; delete-missed-when-called=0
+   | ; set call-log-enabled=true; set missed-logging=true; set delete-missed-when-called=false
)")) {
        ManagementRig phone;
        phone.startWith({itemOf<MissedCallItem>("m1", "11", {{"4711", "t"}})});
        const auto isOn = [&row](const char* name) { return row[0].find(name) != std::string::npos; };
        phone.setOwn(isOn("enabled"), isOn("missed"), isOn("delete"));
        EXPECT_TRUE(phone.resetUserData());
        EXPECT_EQ(phone.entryIds(), "");
        EXPECT_EQ(phone.own(), "enabled missed");
        EXPECT_EQ(phone.published(), row[1]);
        EXPECT_EQ(phone.written(),
                  "delete MissedCalls all; delete DialledCalls all; delete ReceivedCalls all; delete "
                  "ForwardedCalls all" +
                      row[2]);
    }
}

TEST_F(JournalRefresh, ByAResetOnlyEmptiesTheListsOfOtherPhones) {
    becomesQorvex();
    rig.refresh.refreshCallLists();
    rig.setOwn(false, false, true);
    EXPECT_TRUE(rig.resetUserData());
    EXPECT_EQ(rig.entryIds(), "");
    EXPECT_EQ(rig.own(), "delete");
    EXPECT_EQ(rig.published(), "");
}

TEST_F(JournalRefresh, TakesOnlyTrueForAnOutsideCallServer) {
    for (const char* value : {"true", "false", "true", "1"}) {
        EXPECT_TRUE(rig.refresh.setJournalServiceCallLogEventsDisabling(value));
        EXPECT_EQ(rig.settings.values()->m_xsiConfigured, std::string(value) == "true");
    }
}

}  // namespace
}  // namespace journaltest
