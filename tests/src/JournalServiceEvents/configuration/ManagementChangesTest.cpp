// The management keys that the journal reads and observes, and the effect of a change of each.

#include <string>

#include <gtest/gtest.h>

#include "platform/texts/SoftwareTypes.h"
#include "tests/src/JournalServiceEvents/configuration/ConfigurationFixture.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

/// Returns the settings that depend on the management as one text.
std::string valuesOf(const ConfigurationFixture& fixture) {
    const auto now = fixture.settings.values();
    std::string text = std::to_string(now->m_tzOffset) + " " + std::to_string(now->m_daylightSaveMinutes) +
                       " '" + now->m_callLogControl + "' '" + now->m_regNumber + "'";
    text += now->m_useCSTACallControlEvents ? " callEvents" : "";
    text += now->m_serverBasedCallLog ? " serverLog" : "";
    text += now->m_enterMarkedMissedCall ? " marksMissed" : "";
    text += now->m_serverBasedFeatures ? " serverFeatures" : "";
    text += now->m_wsiAllowUcJournal ? " wsi" : "";
    text += now->m_ForwardingPartyDisplayLast ? " last" : "";
    text += now->m_ringCentralSyncCallLog ? " ringCentral" : "";
    return text + (now->m_btHwOn ? " bluetooth" : "");
}

// Each change takes effect at once and nowhere else; the next start reads the same in full.
TEST(PhoneValues, FollowChangesAndAreReadAtTheStart) {
    ConfigurationFixture fixture;
    fixture.management.set("daylight-save-minutes", "60");
    fixture.management.set("software-type", softwaretypes::qorvex);
    fixture.phoneValues.initEvents(fixture);
    const auto changes = table(3, R"(
sntp-tz-offset           | -90  | -90 0 '' '' callEvents last
daylight-save            | no   | -90 0 '' '' callEvents last
daylight-save            | true | -90 60 '' '' callEvents last
daylight-save-minutes    | 30   | -90 30 '' '' callEvents last
system-identifier        | 2    | -90 30 '' '' serverLog last
system-identifier        | 1    | -90 30 '' '' callEvents marksMissed last
call-log-control         | x    | -90 30 'x' '' callEvents marksMissed last
reg-number               | 2001 | -90 30 'x' '2001' callEvents marksMissed last
wsi-allow-uc-journal     | true | -90 30 'x' '2001' callEvents marksMissed wsi last
server-based-features    | true | -90 30 'x' '2001' callEvents marksMissed serverFeatures wsi last
forwarding-party-display | 0    | -90 30 'x' '2001' callEvents marksMissed serverFeatures wsi
bt-hw-state              | on   | -90 30 'x' '2001' callEvents marksMissed serverFeatures wsi bluetooth
ringcentral-api-sync-call-log | true
+   | -90 30 'x' '2001' callEvents marksMissed serverFeatures wsi ringCentral bluetooth
)");
    for (const auto& row : changes) {
        fixture.management.change(row[0], row[1]);
        EXPECT_EQ(valuesOf(fixture), row[2]) << row[0];
    }

    ConfigurationFixture next;
    next.platform.m_localMgmt = &fixture.management;
    fixture.management.refuseObserving("sntp-tz-offset");
    next.phoneValues.initEvents(next);
    EXPECT_EQ(valuesOf(next), "-90 30 'x' '2001' callEvents marksMissed serverFeatures wsi ringCentral");
    EXPECT_EQ(next.settings.values()->m_softwareType, softwaretypes::qorvex);
    for (const auto& row : changes) {
        fixture.management.remove(row[0]);
    }
    next.phoneValues.readLocalMgmtData(7);
    EXPECT_EQ(valuesOf(next), "0 0 '' '' callEvents ringCentral") << "all but two fall back";
}

// Successive changes: key | value | requests of a Qorvex phone to the switch | requests of a SIP phone |
// effect: the call log is refreshed, everything is reloaded, or the pending save of the visitor call log is
// cancelled.
TEST(ManagementChanges, AreFollowed) {
    ConfigurationFixture qorvex;
    ConfigurationFixture sip;
    qorvex.management.set("software-type", softwaretypes::qorvex);
    sip.management.set("software-type", softwaretypes::sip);
    qorvex.phoneValues.initEvents(qorvex);
    sip.phoneValues.initEvents(sip);
    const auto effectOf = [](ConfigurationFixture& fixture, const std::string& key,
                             const std::string& value) {
        fixture.forget();
        fixture.visitorCallLog.setSavePending();
        fixture.management.change(key, value);
        EXPECT_EQ(fixture.read().empty(), fixture.heard().empty());
        if (!fixture.visitorCallLog.isSavePending()) {
            return "cancel";
        }
        return fixture.heard().find("callBacks") != std::string::npos ? "reload"
               : fixture.heard().empty()                              ? ""
                                                                      : "refresh";
    };
    for (const auto& row : table(5, R"(
system-identifier         | 2   | change localDeviceID | |
disable-access-calllog    | 1   | | |
disable-access-calllog    | 0   | start localDeviceID | | refresh
bt-hw-state               | on  | start bluetoothDeviceID | start bluetoothDeviceID |
disable-access-calllog    | 1   | stop 1; stop 2 | stop 1 |
disable-access-calllog    | 0   | start localDeviceID; start bluetoothDeviceID | start bluetoothDeviceID | refresh
disable-access-calllog    | 0   | | | refresh
disable-access-calllog    | 3   | | |
disable-access-calllog    | 2   | stop 3; stop 4 | stop 2 |
bt-hw-state               | on  | start bluetoothDeviceID | start bluetoothDeviceID |
bt-hw-state               | off | stop 5 | stop 3 |
mobility-user-data-update | all | | | reload
mobility-user-data-update | some | | |
mobility-activity         | logoffFailed | | | reload
mobility-activity         | logon | | |
reload-conversations      | true | | | reload
reload-conversations      | false | | |
mobility-current-user     | 17 | | | cancel
)")) {
        SCOPED_TRACE(row[0] + "=" + row[1]);
        EXPECT_EQ(effectOf(qorvex, row[0], row[1]), row[4]);
        EXPECT_EQ(effectOf(sip, row[0], row[1]), row[4]);
        EXPECT_EQ(qorvex.exchange.asked(), row[2]);
        EXPECT_EQ(sip.exchange.asked(), row[3]);
    }
    EXPECT_EQ(qorvex.management.written(), "reload-conversations=false")
        << "it is taken back when it is done";
}

TEST(PhoneValues, DiscardPendingCallLogEventsWhenTheSwitchMarksMissedCalls) {
    ConfigurationFixture fixture;
    for (const std::string identifier : {"2", "1"}) {
        fixture.readiness.m_callLogEventsReady = true;
        static_cast<void>(fixture.readiness.m_pendingCallLogEvents.append({}));
        fixture.management.set("system-identifier", identifier);
        fixture.phoneValues.readLocalMgmtData(4);
        EXPECT_EQ(fixture.readiness.m_callLogEventsReady, identifier == "2");
        EXPECT_EQ(fixture.readiness.m_pendingCallLogEvents.takeFront().has_value(), identifier == "2");
    }
}

TEST(PhoneValues, RecogniseTheVoiceMailNumber) {
    ConfigurationFixture fixture;
    fixture.digits.spellings = {{"+4989123", "089123"}, {"123", "089123"}};
    EXPECT_FALSE(fixture.phoneValues.isVoiceMailNumber("")) << "no voice mail is configured";
    fixture.management.set("voice-mail-e164", "+4989123");
    EXPECT_TRUE(fixture.phoneValues.isVoiceMailNumber("123"));
    EXPECT_FALSE(fixture.phoneValues.isVoiceMailNumber("124"));
    fixture.platform.m_digitAnalysisService = nullptr;
    EXPECT_FALSE(fixture.phoneValues.isVoiceMailNumber("123"));
    fixture.platform.m_localMgmt = nullptr;
    fixture.phoneValues.publishCallLogEnableState();
    fixture.phoneValues.initEvents(fixture);
    EXPECT_EQ(CapturedLog::count("localManagement not available"), 1);
    EXPECT_FALSE(fixture.phoneValues.isVoiceMailNumber("+4989123"));
}

}  // namespace
}  // namespace journaltest
