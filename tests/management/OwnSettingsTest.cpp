#include <string>

#include <gtest/gtest.h>

#include "platform/texts/SoftwareTypes.h"
#include "tests/management/ManagementRig.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

class OwnSettings : public testing::Test {
protected:
    ManagementRig rig;
};

TEST_F(OwnSettings, AreReadFromTheSettingsRecord) {
    rig.database.setSetting("call-log-enabled", "false");
    rig.database.setSetting("missed-logging", "0");
    rig.database.setSetting("delete-missed-when-called", "true");
    rig.ownSettings.readConfigItemsFromDB();
    EXPECT_EQ(rig.own(), "delete");
    EXPECT_EQ(rig.written(), "") << "what is stored is not stored again";
    EXPECT_EQ(rig.published(), "");
}

TEST_F(OwnSettings, ThatAreMissingGetTheirDefaultsOnASipPhoneAndAreStored) {
    rig.setOwn(false, false, true);
    rig.database.setSetting("missed-logging", "false");
    rig.ownSettings.readConfigItemsFromDB();
    EXPECT_EQ(rig.own(), "enabled");
    EXPECT_EQ(rig.written(), "set call-log-enabled=true; set delete-missed-when-called=false");
}

TEST_F(OwnSettings, ThatCannotBeReadGetTheirDefaultsOnASipPhone) {
    rig.setOwn(false, false, true);
    rig.database.setFailing(true);
    rig.ownSettings.readConfigItemsFromDB();
    EXPECT_EQ(rig.own(), "enabled missed");
    EXPECT_EQ(rig.written(),
              "set call-log-enabled=true; set missed-logging=true; set delete-missed-when-called=false");
}

TEST_F(OwnSettings, ThatAreMissingStayOnEveryOtherPhone) {
    rig.phoneIs(softwareTypes::qorvex);
    rig.setOwn(false, false, true);
    rig.database.setSetting("missed-logging", "true");
    rig.ownSettings.readConfigItemsFromDB();
    EXPECT_EQ(rig.own(), "missed delete");
    rig.database.setFailing(true);
    rig.ownSettings.readConfigItemsFromDB();
    EXPECT_EQ(rig.own(), "missed delete");
    EXPECT_EQ(rig.written(), "");
}

TEST_F(OwnSettings, AreRefusedWithAReasonWhereverTheyStayAsTheyAre) {
    const struct {
        const char* value;
        bool enabledBefore;
        bool changed;
        const char* reason;
    } rows[] = {
        {"true", false, true, ""},
        {"0", true, true, ""},
        {"1", true, false, "call-log-enabled value is not changed"},
        {"yes", true, false, ""},  // nothing that would be true
        {"yes", false, false, "call-log-enabled value is not changed"},
    };
    for (const auto& row : rows) {
        rig.setOwn(row.enabledBefore, true, false);
        RejectReason reason;
        EXPECT_EQ(rig.ownSettings.updateEnabledState(row.value, reason), row.changed) << row.value;
        EXPECT_EQ(reason.text, row.reason) << row.value;
        EXPECT_EQ(reason.code, reason.empty() ? eRejectNone : eRejectValueNotChanged);
    }
}

TEST_F(OwnSettings, EmptyTheJournalOnlyWhenTheCallLogGoesOff) {
    rig.startWith({itemOf<MissedCallItem>("m1", "11", {{"4711", "t"}})});
    RejectReason reason;
    rig.ownSettings.updateMissedLoggingState("false", reason);
    rig.ownSettings.handleEnabledStateChange();
    EXPECT_EQ(rig.entryIds(), "m1");
    rig.ownSettings.updateEnabledState("false", reason);
    EXPECT_EQ(rig.entryIds(), "");
}

}  // namespace
}  // namespace journaltest
