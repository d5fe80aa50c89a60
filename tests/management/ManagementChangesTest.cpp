// Changes of the management keys that the journal observes, and what follows from each.

#include <functional>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "platform/management/UlmoTags.h"
#include "platform/texts/SoftwareTypes.h"
#include "tests/management/ManagementRig.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

using journal::SettingValues;

struct Row {
    const char* name;
    const char* key;
    const char* value;
    std::function<bool(const SettingValues&)> holds;
};

std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << row.name;
}

class ManagementChanges : public testing::TestWithParam<Row> {
protected:
    void startAs(const std::string& softwareType) {
        rig.management.set("software-type", softwareType);
        rig.managementValues.initEvents(rig);
        rig.forget();
        CapturedLog::reset();
    }

    ManagementRig rig;
};

TEST_P(ManagementChanges, TakeEffectAtOnce) {
    startAs(softwareTypes::sip);
    rig.management.set("daylight-save", "true");
    rig.management.set("daylight-save-minutes", "60");
    ASSERT_FALSE(GetParam().holds(*rig.settings.values()));
    rig.management.change(GetParam().key, GetParam().value);
    EXPECT_TRUE(GetParam().holds(*rig.settings.values()));
    EXPECT_TRUE(CapturedLog::contains("manageableDataChanged [" + std::string(GetParam().key) + "]=[" +
                                      GetParam().value + "]"));
}

const Row kRows[] = {
    {"TimeZone", "sntp-tz-offset", "-90", [](const SettingValues& now) { return now.m_tzOffset == -90; }},
    {"DaylightSaving", "daylight-save", "true",
     [](const SettingValues& now) { return now.m_daylightSaveMinutes == 60; }},
    {"DaylightMinutes", "daylight-save-minutes", "30",
     [](const SettingValues& now) { return now.m_daylightSaveMinutes == 30; }},
    {"ServerCallLog", "system-identifier", "2",
     [](const SettingValues& now) { return now.m_serverBasedCallLog && !now.m_useCSTACallControlEvents; }},
    {"MarkedMissedCalls", "system-identifier", "1",
     [](const SettingValues& now) { return now.m_enterMarkedMissedCall && now.m_useCSTACallControlEvents; }},
    {"CallLogControl", "call-log-control", "x",
     [](const SettingValues& now) { return now.m_callLogControl == "x"; }},
    {"RegNumber", "reg-number", "2001", [](const SettingValues& now) { return now.m_regNumber == "2001"; }},
    {"ServerBasedFeatures", "server-based-features", "true",
     [](const SettingValues& now) { return now.m_serverBasedFeatures; }},
    {"WsiAllowed", "wsi-allow-uc-journal", "true",
     [](const SettingValues& now) { return now.m_wsiAllowUcJournal; }},
    {"DisplayFirst", "forwarding-party-display", "0",
     [](const SettingValues& now) { return !now.m_ForwardingPartyDisplayLast; }},
    {"RingCentral", UlmoTags::RINGCENTRAL_API_SYNC_CALL_LOG, "true",
     [](const SettingValues& now) { return now.m_ringCentralSyncCallLog; }},
    {"Bluetooth", "bt-hw-state", "on", [](const SettingValues& now) { return now.m_btHwOn; }},
};
INSTANTIATE_TEST_SUITE_P(Table, ManagementChanges, testing::ValuesIn(kRows), kRowName);

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

class CallLogState : public ManagementChanges {
protected:
    /// The lines of the component that say what is done, without those that repeat requests and answers.
    [[nodiscard]] static std::string decisions() {
        Texts texts;
        for (const std::string& line : CapturedLog::lines("Journal Service Events")) {
            for (const char* known :
                 {"startQorvexEvents", "stopQorvexEvents", "startMonitoringBluetoothEvents",
                  "stopMonitoringBluetoothEvents", "Events already stopped",
                  "Bluetooth events already stopped", "Invalid Call log data state",
                  "manageableDataChanged() : Call log data state - events already started"}) {
                if (line == known) {
                    texts.push_back(line);
                }
            }
        }
        return joined(texts);
    }
};

TEST_F(CallLogState, StopsAndStartsTheMonitorsOfAQorvexPhone) {
    startAs(softwareTypes::qorvex);
    rig.monitors.startQorvexEvents();
    rig.management.change("bt-hw-state", "on");
    rig.forget();
    CapturedLog::reset();

    rig.management.change("disable-access-calllog", "1");
    rig.management.change("disable-access-calllog", "2");
    EXPECT_EQ(rig.asked(), "stop 1; stop 2");
    EXPECT_EQ(rig.heard(), "");
    rig.management.change("disable-access-calllog", "0");
    EXPECT_EQ(rig.asked(), "stop 1; stop 2; start localDeviceID; start bluetoothDeviceID");
    EXPECT_FALSE(rig.heard().empty()) << "the call log is refreshed";
    rig.management.change("disable-access-calllog", "0");
    rig.management.change("disable-access-calllog", "3");
    EXPECT_EQ(decisions(),
              "stopQorvexEvents; stopMonitoringBluetoothEvents; Events already stopped; Bluetooth events "
              "already stopped; startQorvexEvents; startMonitoringBluetoothEvents; manageableDataChanged() : "
              "Call log data state - events already started; Invalid Call log data state");
    EXPECT_EQ(CapturedLog::count("Call log data state changed. State = "), 5);
}

TEST_F(CallLogState, LeavesTheLineOfASipPhoneAlone) {
    startAs(softwareTypes::sip);
    rig.management.change("disable-access-calllog", "0");
    rig.management.change("disable-access-calllog", "1");
    EXPECT_EQ(rig.asked(), "");
    EXPECT_EQ(decisions(),
              "manageableDataChanged() : Call log data state - events already started; Events already "
              "stopped; Bluetooth events already stopped");
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
    EXPECT_EQ(CapturedLog::count("manageableDataChanged():stopMonitoringBluetoothEvents"), 2);
    EXPECT_EQ(CapturedLog::count("stopMonitoringBluetoothEvents(): - monitor not started, do nothing"), 1);
}

}  // namespace
}  // namespace journaltest
