// Changes of the management keys that the journal observes, and what follows from each.

#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "platform/management/UlmoTags.h"
#include "platform/texts/SoftwareTypes.h"
#include "tests/management/ManagementRig.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

using journal::SettingValues;

class ManagementChanges : public testing::Test {
protected:
    void startAs(const std::string& softwareType) {
        rig.management.set("software-type", softwareType);
        rig.managementValues.initEvents(rig);
        rig.forget();
    }

    ManagementRig rig;
};

/// The settings in one line.
std::string textOf(const SettingValues& now) {
    std::string text = std::to_string(now.m_tzOffset) + " min, summer " +
                       std::to_string(now.m_daylightSaveMinutes) + ", log '" + now.m_callLogControl +
                       "', number '" + now.m_regNumber + "'";
    const std::pair<const char*, bool> flags[] = {{"callEvents", now.m_useCSTACallControlEvents},
                                                  {"serverLog", now.m_serverBasedCallLog},
                                                  {"marksMissed", now.m_enterMarkedMissedCall},
                                                  {"serverFeatures", now.m_serverBasedFeatures},
                                                  {"wsi", now.m_wsiAllowUcJournal},
                                                  {"last", now.m_ForwardingPartyDisplayLast},
                                                  {"ringCentral", now.m_ringCentralSyncCallLog},
                                                  {"bluetooth", now.m_btHwOn}};
    for (const auto& [name, on] : flags) {
        text += on ? std::string(" ") + name : "";
    }
    return text;
}

TEST_F(ManagementChanges, TakeEffectAtOnceAndNowhereElse) {
    startAs(softwareTypes::sip);
    rig.management.set("daylight-save-minutes", "60");
    ASSERT_EQ(textOf(*rig.settings.values()), "0 min, summer 0, log '', number '' callEvents last");
    for (const auto& row : table(3, R"(
sntp-tz-offset           | -90 | -90 min, summer 0, log '', number '' callEvents last
daylight-save            | true | -90 min, summer 60, log '', number '' callEvents last
daylight-save-minutes    | 30 | -90 min, summer 30, log '', number '' callEvents last
system-identifier        | 2 | -90 min, summer 30, log '', number '' serverLog last
system-identifier        | 1 | -90 min, summer 30, log '', number '' callEvents marksMissed last
call-log-control         | x | -90 min, summer 30, log 'x', number '' callEvents marksMissed last
reg-number               | 2001 | -90 min, summer 30, log 'x', number '2001' callEvents marksMissed last
server-based-features    | true | -90 min, summer 30, log 'x', number '2001' callEvents marksMissed serverFeatures last
server-based-features    | no | -90 min, summer 30, log 'x', number '2001' callEvents marksMissed last
wsi-allow-uc-journal     | true | -90 min, summer 30, log 'x', number '2001' callEvents marksMissed wsi last
forwarding-party-display | 0 | -90 min, summer 30, log 'x', number '2001' callEvents marksMissed wsi
bt-hw-state              | on | -90 min, summer 30, log 'x', number '2001' callEvents marksMissed wsi bluetooth
)")) {
        rig.management.change(row[0], row[1]);
        EXPECT_EQ(textOf(*rig.settings.values()), row[2]) << row[0];
    }
    rig.management.change(UlmoTags::RINGCENTRAL_API_SYNC_CALL_LOG, "true");
    EXPECT_TRUE(rig.settings.values()->m_ringCentralSyncCallLog);
}

TEST_F(ManagementChanges, OfTheIdentifierBackFromTwoRestoreTheEventModes) {
    startAs(softwareTypes::qorvex);
    rig.management.change("system-identifier", "2");
    rig.management.change("system-identifier", "3");
    const auto now = rig.settings.values();
    EXPECT_TRUE(now->m_useCSTACallControlEvents);
    EXPECT_FALSE(now->m_serverBasedCallLog);
    EXPECT_FALSE(now->m_enterMarkedMissedCall);
    EXPECT_EQ(rig.asked(), "change localDeviceID; change localDeviceID");
}

TEST_F(ManagementChanges, OfTheVisitorForgetThatASaveIsDue) {
    startAs(softwareTypes::qorvex);
    rig.mirror.m_visitorCallLogSavePending = true;
    rig.management.change("mobility-current-user", "anybody");
    EXPECT_FALSE(rig.mirror.m_visitorCallLogSavePending);
}

TEST_F(ManagementChanges, OfTheUserReloadEverythingForSomeValuesOnly) {
    startAs(softwareTypes::qorvex);
    const struct {
        const char* key;
        const char* value;
        bool reloads;
    } changes[] = {
        {"mobility-user-data-update", "unmanaged", true}, {"mobility-user-data-update", "all", true},
        {"mobility-user-data-update", "some", false},     {"mobility-activity", "logonFailed", true},
        {"mobility-activity", "logoffFailed", true},      {"mobility-activity", "logon", false},
        {"reload-conversations", "true", true},           {"reload-conversations", "false", false},
    };
    for (const auto& change : changes) {
        rig.forget();
        rig.management.change(change.key, change.value);
        EXPECT_EQ(!rig.read().empty(), change.reloads) << change.key << "=" << change.value;
        EXPECT_EQ(!rig.heard().empty(), change.reloads) << change.key << "=" << change.value;
    }
    EXPECT_EQ(rig.writtenValues(), "reload-conversations=false");
    EXPECT_EQ(rig.management.value("reload-conversations"), "false");
}

using CallLogState = ManagementChanges;

TEST_F(CallLogState, StopsAndStartsTheMonitorsOfAQorvexPhone) {
    startAs(softwareTypes::qorvex);
    rig.monitors.startQorvexEvents();
    rig.management.change("bt-hw-state", "on");
    rig.forget();

    rig.management.change("disable-access-calllog", "1");
    rig.management.change("disable-access-calllog", "2");
    EXPECT_EQ(rig.asked(), "stop 1; stop 2");
    EXPECT_EQ(rig.heard(), "");
    rig.management.change("disable-access-calllog", "0");
    EXPECT_EQ(rig.asked(), "stop 1; stop 2; start localDeviceID; start bluetoothDeviceID");
    EXPECT_FALSE(rig.heard().empty()) << "the call log is refreshed";
    rig.management.change("disable-access-calllog", "0");
    rig.management.change("disable-access-calllog", "3");
    EXPECT_EQ(rig.asked(), "stop 1; stop 2; start localDeviceID; start bluetoothDeviceID")
        << "they run already";
}

TEST_F(CallLogState, LeavesTheLineOfASipPhoneAlone) {
    startAs(softwareTypes::sip);
    rig.management.change("disable-access-calllog", "0");
    rig.management.change("disable-access-calllog", "1");
    EXPECT_EQ(rig.asked(), "");
    EXPECT_FALSE(rig.heard().empty());
}

TEST_F(CallLogState, TriesAgainAfterAFailedStart) {
    startAs(softwareTypes::qorvex);
    rig.exchange.fail(FakeCstaService::Kind::eMonitorStart);
    rig.management.change("disable-access-calllog", "0");
    rig.management.change("disable-access-calllog", "0");
    EXPECT_EQ(rig.asked(), "start localDeviceID; start localDeviceID");
}

TEST_F(ManagementChanges, OfTheBluetoothHardwareStartAndStopItsMonitor) {
    startAs(softwareTypes::sip);
    rig.management.change("bt-hw-state", "on");
    rig.management.change("bt-hw-state", "on");
    rig.management.change("bt-hw-state", "off");
    rig.management.change("bt-hw-state", "gone");
    EXPECT_EQ(rig.asked(), "start bluetoothDeviceID; start bluetoothDeviceID; stop 2");
}

}  // namespace
}  // namespace journaltest
