#include <string>

#include <gtest/gtest.h>

#include "platform/management/UlmoTags.h"
#include "platform/texts/SoftwareTypes.h"
#include "tests/management/ManagementRig.h"
#include "tests/support/CapturedLog.h"

namespace journaltest {
namespace {

class ManagementValues : public testing::Test {
protected:
    void set(const KeysAndValues& values) {
        for (const auto& [key, value] : values) {
            rig.management.set(key, value);
        }
    }
    [[nodiscard]] journal::SettingValues now() const { return *rig.settings.values(); }

    ManagementRig rig;
};

const KeysAndValues kEverything{{"sntp-tz-offset", "60"},
                                {"daylight-save", "true"},
                                {"daylight-save-minutes", "30"},
                                {"system-identifier", "2"},
                                {"software-type", softwareTypes::qorvex},
                                {"call-log-control", "local"},
                                {"reg-number", "2001"},
                                {"server-based-features", "true"},
                                {"wsi-allow-uc-journal", "true"},
                                {"forwarding-party-display", "0"},
                                {UlmoTags::RINGCENTRAL_API_SYNC_CALL_LOG, "true"}};

TEST_F(ManagementValues, AreReadInFullAtTheStartAndObservedInOrder) {
    set(kEverything);
    rig.managementValues.initEvents(rig);
    EXPECT_EQ(rig.management.observedBy(rig),
              (Texts{"sntp-tz-offset", "daylight-save", "daylight-save-minutes", "disable-access-calllog",
                     "mobility-user-data-update", "mobility-current-user", "mobility-activity",
                     "server-based-features", "bt-hw-state", "wsi-allow-uc-journal", "system-identifier",
                     "call-log-control", "reg-number", "forwarding-party-display", "reload-conversations",
                     UlmoTags::RINGCENTRAL_API_SYNC_CALL_LOG}));
    EXPECT_EQ(now().m_tzOffset, 60);
    EXPECT_EQ(now().m_daylightSaveMinutes, 30);
    EXPECT_EQ(now().m_systemIdentifier, 2);
    EXPECT_EQ(now().m_softwareType, softwareTypes::qorvex);
    EXPECT_EQ(now().m_callLogControl, "local");
    EXPECT_EQ(now().m_regNumber, "2001");
    EXPECT_TRUE(now().m_serverBasedFeatures);
    EXPECT_TRUE(now().m_wsiAllowUcJournal);
    EXPECT_FALSE(now().m_ForwardingPartyDisplayLast);
    EXPECT_TRUE(now().m_ringCentralSyncCallLog);
    EXPECT_TRUE(now().m_serverBasedCallLog);
}

TEST_F(ManagementValues, ThatAreGoneFallBackButForTwoThatKeepTheirs) {
    set(kEverything);
    rig.managementValues.readLocalMgmtData(7);
    for (const auto& [key, value] : kEverything) {
        rig.management.remove(key);
    }
    rig.managementValues.readLocalMgmtData(7);
    EXPECT_EQ(now().m_tzOffset, 0);
    EXPECT_EQ(now().m_daylightSaveMinutes, 0);
    EXPECT_EQ(now().m_systemIdentifier, 0);
    EXPECT_EQ(now().m_softwareType, "");
    EXPECT_EQ(now().m_callLogControl + now().m_regNumber, "");
    EXPECT_FALSE(now().m_serverBasedFeatures || now().m_wsiAllowUcJournal || now().m_serverBasedCallLog);
    EXPECT_FALSE(now().m_ForwardingPartyDisplayLast);
    EXPECT_TRUE(now().m_ringCentralSyncCallLog);
}

TEST_F(ManagementValues, AreReadByGroup) {
    set(kEverything);
    rig.managementValues.readLocalMgmtData(1);
    EXPECT_EQ(now().m_tzOffset, 60);
    EXPECT_EQ(now().m_daylightSaveMinutes, 0);
    rig.managementValues.readLocalMgmtData(2);
    EXPECT_EQ(now().m_daylightSaveMinutes, 30);
    EXPECT_EQ(now().m_regNumber, "");
    rig.management.set("daylight-save", "false");
    rig.managementValues.readLocalMgmtData(2);
    EXPECT_EQ(now().m_daylightSaveMinutes, 0) << "whatever the minutes say";
    EXPECT_EQ(rig.asked(), "") << "the filter follows the last group";
    rig.managementValues.readLocalMgmtData(4);
    EXPECT_EQ(rig.asked(), "change localDeviceID");
}

TEST_F(ManagementValues, ThatSayTheSwitchMarksMissedCallsEndTheWaitForCalls) {
    for (const char* identifier : {"2", "1"}) {
        rig.readiness.m_callLogEventsReady = true;
        static_cast<void>(rig.readiness.m_pendingCallLogEvents.append({}));
        rig.management.set("system-identifier", identifier);
        rig.managementValues.readLocalMgmtData(4);
        const bool keeps = std::string(identifier) == "2";
        EXPECT_EQ(rig.readiness.m_callLogEventsReady, keeps);
        EXPECT_EQ(rig.readiness.m_pendingCallLogEvents.takeFront().has_value(), keeps);
    }
}

TEST_F(ManagementValues, WithoutALocalManagementKeepTheirDefaults) {
    rig.collaborators.m_localMgmt = nullptr;
    rig.phoneIs("unchanged");
    rig.managementValues.initEvents(rig);
    std::string value = "before";
    EXPECT_FALSE(rig.managementValues.getUlmoValue("reg-number", value));
    EXPECT_EQ(value, "before");
    EXPECT_EQ(now().m_softwareType, "unchanged");
    rig.managementValues.publishCallLogEnableState();
    EXPECT_EQ(rig.published(), "");
    EXPECT_EQ(CapturedLog::lines("Journal Service Events"),
              Texts{"initEvents(): localManagement not available "});
}

TEST_F(ManagementValues, ThatCannotBeObservedAreNamedInTheLog) {
    rig.management.refuseObserving("reg-number");
    rig.managementValues.initEvents(rig);
    EXPECT_TRUE(CapturedLog::contains("observeManageableData():'reg-number' not observeable"));
    EXPECT_EQ(CapturedLog::count("not observeable"), 1);
}

TEST_F(ManagementValues, TellWhetherANumberIsTheVoiceMail) {
    rig.digits.addSpelling("+4989123", "089123");
    rig.digits.addSpelling("123", "089123");
    EXPECT_FALSE(rig.managementValues.isVoiceMailNumber("")) << "no voice mail is configured";
    rig.management.set("voice-mail-e164", "+4989123");
    EXPECT_TRUE(rig.managementValues.isVoiceMailNumber("123"));
    EXPECT_TRUE(rig.managementValues.isVoiceMailNumber("089123"));
    EXPECT_FALSE(rig.managementValues.isVoiceMailNumber("124"));
    rig.collaborators.m_digitAnalysisService = nullptr;
    EXPECT_FALSE(rig.managementValues.isVoiceMailNumber("123"));
    EXPECT_TRUE(rig.managementValues.isVoiceMailNumber("+4989123"));
}

TEST_F(ManagementValues, ArePublishedInTheManagementsForms) {
    for (const bool on : {true, false}) {
        rig.setOwn(on, on, on);
        rig.managementValues.publishCallLogEnableState();
        rig.managementValues.publishMissedLoggingState();
        rig.managementValues.publishDeleteMissedWhenCalledState();
    }
    EXPECT_EQ(rig.published(),
              "call-log-enabled=true; missed-logging=0; delete-missed-when-called=1; call-log-enabled=false; "
              "missed-logging=1; delete-missed-when-called=0");
}

}  // namespace
}  // namespace journaltest
