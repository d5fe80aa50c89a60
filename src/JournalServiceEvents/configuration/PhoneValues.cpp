#include "src/JournalServiceEvents/configuration/PhoneValues.h"

#include <cstdlib>

#include "platform/digits/DigitAnalysisServiceIfc.h"
#include "platform/management/LocalMgmtIfc.h"
#include "platform/management/ManageableData.h"
#include "platform/management/UlmoTags.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/base/PlatformServices.h"
#include "src/JournalServiceEvents/monitoring/CstaMonitors.h"
#include "src/JournalServiceEvents/switch-log/CallLogReadiness.h"

namespace journal {

namespace {

constexpr const char* kObservedKeys[] = {
    "sntp-tz-offset",
    "daylight-save",
    "daylight-save-minutes",
    "disable-access-calllog",
    "mobility-user-data-update",
    "mobility-current-user",
    "mobility-activity",
    "server-based-features",
    "bt-hw-state",
    "wsi-allow-uc-journal",
    "system-identifier",
    "call-log-control",
    "reg-number",
    "forwarding-party-display",
    "reload-conversations",
    UlmoTags::RINGCENTRAL_API_SYNC_CALL_LOG,
};

std::int32_t toNumber(const std::string& text) {
    return static_cast<std::int32_t>(std::strtol(text.c_str(), nullptr, 10));
}

}  // namespace

void PhoneValues::initEvents(MgmtAgentIfc& agent) {
    if (m_platform.m_localMgmt == nullptr) {
        LOG_EVENTS(5, "%s(): localManagement not available ", "initEvents");
        return;
    }
    for (const char* key : kObservedKeys) {
        observeManageableData(key, agent);
    }
    readLocalMgmtData(eAllGroups);
}

void PhoneValues::observeManageableData(const char* tagName, MgmtAgentIfc& agent) const {
    if (m_platform.m_localMgmt == nullptr || tagName == nullptr) {
        LOG_EVENTS(5, "%s(): localManagement not available or tagName is NULL", "observeManageableData");
        return;
    }
    if (!m_platform.m_localMgmt->observe(tagName, agent)) {
        LOG_EVENTS(5, "%s():'%s' not observeable", "observeManageableData", tagName);
    }
}

bool PhoneValues::getUlmoValue(const char* tagName, std::string& value) const {
    if (m_platform.m_localMgmt == nullptr) {
        return false;
    }
    ManageableData data;
    data.setRootId(tagName, nullptr);
    if (!m_platform.m_localMgmt->read(data)) {
        return false;
    }
    const DataNode* node = data.interogate(tagName);
    if (node == nullptr) {
        return false;
    }
    value = node->getValue();
    return true;
}

void PhoneValues::readLocalMgmtData(unsigned groups) {
    std::string value;
    if ((groups & eTimeZone) != 0) {
        const std::int32_t offset = getUlmoValue("sntp-tz-offset", value) ? toNumber(value) : 0;
        m_settings.change([offset](SettingsSnapshot& values) { values.m_tzOffset = offset; });
    }
    if ((groups & eDaylightSaving) != 0) {
        std::string minutes;
        const bool saving = getUlmoValue("daylight-save", value) && value == "true" &&
                            getUlmoValue("daylight-save-minutes", minutes);
        m_settings.change([saving, &minutes](SettingsSnapshot& values) {
            values.m_daylightSaveMinutes = saving ? toNumber(minutes) : 0;
        });
    }
    if ((groups & eSystem) != 0) {
        readSystemGroup();
        m_monitors.changeMonitorFilter();
    }
}

// NOLINTNEXTLINE(readability-function-size): a flat list of values, in the order of their log texts.
void PhoneValues::readSystemGroup() {
    constexpr const char* kLogName = "readLocalMgmtData";
    const auto textOf = [this](const char* key) {
        std::string text;
        getUlmoValue(key, text);
        return text;
    };
    // Read all values before the change: a read may block in the management, a change must not.
    const std::int32_t systemIdentifier = toNumber(textOf("system-identifier"));
    LOG_EVENTS(5, "%s():system-identifier = %d", kLogName, systemIdentifier);
    const std::string softwareType = textOf("software-type");
    LOG_EVENTS(5, "%s():software-type = %s", kLogName, softwareType.c_str());
    const std::string callLogControl = textOf("call-log-control");
    LOG_EVENTS(5, "%s():call-log-control = %s", kLogName, callLogControl.c_str());
    const std::string regNumber = textOf("reg-number");
    LOG_EVENTS(5, "%s():reg-number = %s", kLogName, regNumber.c_str());
    const bool serverBasedFeatures = textOf("server-based-features") == "true";
    LOG_EVENTS(5, "%s():server-based-features = %d", kLogName, serverBasedFeatures ? 1 : 0);
    const bool wsiAllowUcJournal = textOf("wsi-allow-uc-journal") == "true";
    LOG_EVENTS(5, "%s():%s = %d", kLogName, "wsi-allow-uc-journal", wsiAllowUcJournal ? 1 : 0);

    // These two keep their previous values if the management has none.
    const auto before = m_settings.values();
    bool displayLast = before->m_ForwardingPartyDisplayLast;
    std::string value;
    if (getUlmoValue("forwarding-party-display", value)) {
        displayLast = value == "1";
        LOG_EVENTS(5, "%s():%s = %d", kLogName, "forwarding-party-display", displayLast ? 1 : 0);
    }
    bool ringCentralSync = before->m_ringCentralSyncCallLog;
    if (getUlmoValue(UlmoTags::RINGCENTRAL_API_SYNC_CALL_LOG, value)) {
        ringCentralSync = value == "true";
        LOG_EVENTS(5, "%s():%s = %d", kLogName, UlmoTags::RINGCENTRAL_API_SYNC_CALL_LOG,
                   ringCentralSync ? 1 : 0);
    }

    m_settings.change([&](SettingsSnapshot& values) {
        values.m_systemIdentifier = systemIdentifier;
        values.m_softwareType = softwareType;
        values.m_callLogControl = callLogControl;
        values.m_regNumber = regNumber;
        values.m_serverBasedFeatures = serverBasedFeatures;
        values.m_wsiAllowUcJournal = wsiAllowUcJournal;
        values.m_ForwardingPartyDisplayLast = displayLast;
        values.m_ringCentralSyncCallLog = ringCentralSync;
        values.deriveEventModes();
    });
    // Calls are tracked by their events again, so no event of the switch's call log is waiting for one to
    // end.
    if (m_settings.values()->m_enterMarkedMissedCall) {
        m_readiness.m_callLogEventsReady = false;
        m_readiness.m_pendingCallLogEvents.discard();
    }
}

bool PhoneValues::isVoiceMailNumber(std::string number) const {
    std::string voiceMail;
    if (!getUlmoValue("voice-mail-e164", voiceMail)) {
        return false;
    }
    if (auto* digits = m_platform.m_digitAnalysisService) {
        digits->normalise(voiceMail);
        digits->normalise(number);
    }
    return voiceMail == number;
}

void PhoneValues::publishManageableDataChange(const char* key, const char* value) const {
    if (m_platform.m_localMgmt == nullptr) {
        return;
    }
    ManageableData data;
    data.populate(key, key, value);
    m_platform.m_localMgmt->publish(data);
}

void PhoneValues::publishCallLogEnableState() const {
    publishManageableDataChange("call-log-enabled",
                                managementvalue::enabled(m_settings.values()->m_callLogEnabled));
}

void PhoneValues::publishMissedLoggingState() const {
    publishManageableDataChange("missed-logging",
                                managementvalue::missedLogging(m_settings.values()->m_missedLogging));
}

void PhoneValues::publishDeleteMissedWhenCalledState() const {
    publishManageableDataChange(
        "delete-missed-when-called",
        managementvalue::deleteWhenCalled(m_settings.values()->m_deleteMissedWhenCalled));
}

void PhoneValues::writeValue(const char* key, const char* value) const {
    if (m_platform.m_localMgmt == nullptr) {
        return;
    }
    ManageableData data;
    data.populate(key, key, value);
    m_platform.m_localMgmt->write(data);
}

}  // namespace journal
