// The management keys that the journal reads and observes, and what follows from a change of each.

#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "platform/texts/SoftwareTypes.h"
#include "tests/support/ConfigurationFixture.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

/// The settings that the management decides in one line.
std::string valuesOf(const ConfigurationFixture& rig) {
    const auto now = rig.settings.values();
    std::string text = std::to_string(now->m_tzOffset) + " " + std::to_string(now->m_daylightSaveMinutes) +
                       " '" + now->m_callLogControl + "' '" + now->m_regNumber + "'";
    const std::pair<const char*, bool> flags[] = {{"callEvents", now->m_useCSTACallControlEvents},
                                                  {"serverLog", now->m_serverBasedCallLog},
                                                  {"marksMissed", now->m_enterMarkedMissedCall},
                                                  {"serverFeatures", now->m_serverBasedFeatures},
                                                  {"wsi", now->m_wsiAllowUcJournal},
                                                  {"last", now->m_ForwardingPartyDisplayLast},
                                                  {"ringCentral", now->m_ringCentralSyncCallLog},
                                                  {"bluetooth", now->m_btHwOn}};
    for (const auto& [name, on] : flags) {
        text += on ? std::string(" ") + name : "";
    }
    return text;
}

// Each change takes effect at once and nowhere else; the next start reads the same in full.
TEST(PhoneValues, FollowChangesAndAreReadAtTheStart) {
    ConfigurationFixture rig;
    rig.management.set("daylight-save-minutes", "60");
    rig.management.set("software-type", softwareTypes::qorvex);
    rig.managementValues.initEvents(rig);
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
forwarding-party-display | 1    | -90 30 'x' '2001' callEvents marksMissed serverFeatures wsi last
forwarding-party-display | 0    | -90 30 'x' '2001' callEvents marksMissed serverFeatures wsi
bt-hw-state              | on   | -90 30 'x' '2001' callEvents marksMissed serverFeatures wsi bluetooth
ringcentral-api-sync-call-log | true
+   | -90 30 'x' '2001' callEvents marksMissed serverFeatures wsi ringCentral bluetooth
)");
    for (const auto& row : changes) {
        rig.management.change(row[0], row[1]);
        EXPECT_EQ(valuesOf(rig), row[2]) << row[0];
    }

    ConfigurationFixture next;
    next.platform.m_localMgmt = &rig.management;
    rig.management.refuseObserving("sntp-tz-offset");
    next.managementValues.initEvents(next);
    EXPECT_EQ(valuesOf(next), "-90 30 'x' '2001' callEvents marksMissed serverFeatures wsi ringCentral");
    EXPECT_EQ(next.settings.values()->m_softwareType, softwareTypes::qorvex);
    for (const auto& row : changes) {
        rig.management.remove(row[0]);
    }
    next.managementValues.readLocalMgmtData(7);
    EXPECT_EQ(valuesOf(next), "0 0 '' '' callEvents ringCentral") << "all but two fall back";
}

// One change after the other: key | value | what a Qorvex phone asks the switch | what a SIP phone asks | effect: the call
// log is refreshed, everything is reloaded, or it is forgotten that a visitor's log is to be saved.
TEST(ManagementChanges, AreFollowed) {
    ConfigurationFixture qorvex;
    ConfigurationFixture sip;
    qorvex.management.set("software-type", softwareTypes::qorvex);
    sip.management.set("software-type", softwareTypes::sip);
    qorvex.managementValues.initEvents(qorvex);
    sip.managementValues.initEvents(sip);
    const auto effectOf = [](ConfigurationFixture& rig, const std::string& key, const std::string& value) {
        rig.forget();
        rig.persistence.m_visitorCallLogSavePending = true;
        rig.management.change(key, value);
        EXPECT_EQ(rig.read().empty(), rig.heard().empty());
        if (!rig.persistence.m_visitorCallLogSavePending) {
            return "forget";
        }
        return rig.heard().find("callBacks") != std::string::npos ? "reload"
               : rig.heard().empty()                              ? ""
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
mobility-user-data-update | unmanaged | | | reload
mobility-user-data-update | all | | | reload
mobility-user-data-update | some | | |
mobility-activity         | logonFailed | | | reload
mobility-activity         | logoffFailed | | | reload
mobility-activity         | logon | | |
reload-conversations      | true | | | reload
reload-conversations      | false | | |
mobility-current-user     | anybody | | | forget
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

TEST(PhoneValues, ThatSayTheSwitchMarksMissedCallsEndTheWaitForCalls) {
    ConfigurationFixture rig;
    for (const std::string identifier : {"2", "1"}) {
        rig.readiness.m_callLogEventsReady = true;
        static_cast<void>(rig.readiness.m_pendingCallLogEvents.append({}));
        rig.management.set("system-identifier", identifier);
        rig.managementValues.readLocalMgmtData(4);
        EXPECT_EQ(rig.readiness.m_callLogEventsReady, identifier == "2");
        EXPECT_EQ(rig.readiness.m_pendingCallLogEvents.takeFront().has_value(), identifier == "2");
    }
}

TEST(PhoneValues, TellWhetherANumberIsTheVoiceMail) {
    ConfigurationFixture rig;
    rig.digits.spellings = {{"+4989123", "089123"}, {"123", "089123"}};
    EXPECT_FALSE(rig.managementValues.isVoiceMailNumber("")) << "no voice mail is configured";
    rig.management.set("voice-mail-e164", "+4989123");
    EXPECT_TRUE(rig.managementValues.isVoiceMailNumber("123"));
    EXPECT_FALSE(rig.managementValues.isVoiceMailNumber("124"));
    rig.platform.m_digitAnalysisService = nullptr;
    EXPECT_FALSE(rig.managementValues.isVoiceMailNumber("123"));
    EXPECT_TRUE(rig.managementValues.isVoiceMailNumber("+4989123"));
    rig.platform.m_localMgmt = nullptr;
    rig.managementValues.publishCallLogEnableState();
    EXPECT_FALSE(rig.managementValues.isVoiceMailNumber("+4989123"));
}

}  // namespace
}  // namespace journaltest
