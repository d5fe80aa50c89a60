#include "src/JournalServiceEvents/configuration/ManagementAgent.h"

#include "platform/client-utils/ClientUtils.h"
#include "platform/management/ManageableData.h"
#include "platform/management/UlmoTags.h"
#include "platform/sync/CriticalSection.h"
#include "src/JournalService/base/JournalPolicy.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/list-changes/ListDeletion.h"
#include "src/JournalServiceEvents/configuration/JournalRefresh.h"
#include "src/JournalServiceEvents/configuration/JournalSettings.h"
#include "src/JournalServiceEvents/configuration/PhoneValues.h"
#include "src/JournalServiceEvents/configuration/VisitorCallLog.h"
#include "src/JournalServiceEvents/monitoring/CstaMonitors.h"

namespace journal {

namespace {

std::string valueOf(const ManageableData& data, const std::string& key) {
    const DataNode* node = data.interogate(key);
    return node == nullptr ? std::string() : node->getValue();
}

/// True if the change replaces the phone's user or the user's data.
bool requiresReload(const std::string& key, const std::string& value) {
    return (key == "mobility-user-data-update" && (value == "unmanaged" || value == "all")) ||
           (key == "mobility-activity" && (value == "logonFailed" || value == "logoffFailed")) ||
           (key == "reload-conversations" && value == "true");
}

}  // namespace

bool ManagementAgent::setData(ManageableData& data) {
    const CriticalSection<Semaphore> section(m_configLock);
    bool result = true;
    const auto keys = data.getRootIds();
    for (const std::string& key : keys) {
        RejectReason reason;
        result = setKey(key, valueOf(data, key), reason, result);
        if (!reason.empty()) {
            data.addRejectReason(key, reason);
        }
    }
    return result;
}

bool ManagementAgent::setKey(const std::string& key, const std::string& value, RejectReason& reason,
                             bool result) {
    if (key == "clear-calllog") {
        if (value == "true") {
            clearCallLog();
        }
        return result;
    }
    if (key == "call-log-enabled") {
        return m_journalSettings.updateEnabledState(value, reason);
    }
    if (key == "missed-logging") {
        return setFlag(key, value, "0", &JournalSettings::updateMissedLoggingState, reason);
    }
    if (key == "delete-missed-when-called") {
        return setFlag(key, value, "1", &JournalSettings::updateDeleteMissedWhenCalledState, reason);
    }
    setRejectReason(eRejectDataInvalid, reason, "Data invalid (%s) for JournalService", key.c_str());
    LOG_EVENTS(5, "%s is not available from this service.", key.c_str());
    return false;
}

bool ManagementAgent::setFlag(const std::string& key, const std::string& value, const char* trueValue,
                              bool (JournalSettings::*update)(const std::string&, RejectReason&),
                              RejectReason& reason) {
    if (!ClientUtils::isStringBool(value)) {
        LOG_EVENTS(2, "JournalService::setData -> %s - invalid value\n", key.c_str());
        setRejectReason(eRejectDataInvalid, reason, "Data invalid for %s", key.c_str());
        return false;
    }
    return (m_journalSettings.*update)(value == trueValue ? "true" : "false", reason);
}

void ManagementAgent::clearCallLog() {
    if (m_policy.isUCServiceRunning() || m_settings.values()->m_ringCentralSyncCallLog) {
        LOG_EVENTS(6, "setData() ignore clear-calllog in UC/RingCentral mode");
        return;
    }
    m_deletion.deleteAllCalls();
}

bool ManagementAgent::getData(ManageableData& data) {
    const CriticalSection<Semaphore> section(m_configLock);
    const auto settings = m_settings.values();
    bool result = true;
    const auto keys = data.getRootIds();
    for (const std::string& key : keys) {
        const char* value = nullptr;
        if (key == "clear-calllog") {
            value = "false";
        } else if (key == "call-log-enabled") {
            value = managementvalue::enabled(settings->m_callLogEnabled);
        } else if (key == "missed-logging") {
            value = managementvalue::missedLogging(settings->m_missedLogging);
        } else if (key == "delete-missed-when-called") {
            value = managementvalue::deleteWhenCalled(settings->m_deleteMissedWhenCalled);
        } else {
            LOG_EVENTS(5, "%s is not available from this service.", key.c_str());
            result = false;
        }
        if (result && value != nullptr) {
            data.populate(key, key, value);
        }
    }
    return result;
}

void ManagementAgent::manageableDataChanged(ManageableData& data) {
    const std::string key = data.getRootId();
    const std::string value = valueOf(data, key);
    LOG_EVENTS(5, "manageableDataChanged [%s]=[%s]", key.c_str(), value.c_str());
    const bool isTrue = value == "true";
    if (key == "sntp-tz-offset") {
        m_phoneValues.readLocalMgmtData(PhoneValues::eTimeZone);
    } else if (key == "daylight-save" || key == "daylight-save-minutes") {
        m_phoneValues.readLocalMgmtData(PhoneValues::eDaylightSaving);
    } else if (requiresReload(key, value)) {
        m_refresh.reloadEverything();
        if (key == "reload-conversations") {
            m_phoneValues.writeValue("reload-conversations", "false");
        }
    } else if (key == "mobility-current-user") {
        m_visitorCallLog.clearSavePending();
    } else if (key == "disable-access-calllog") {
        applyCallLogState(value);
    } else if (key == "server-based-features") {
        m_settings.change([isTrue](SettingsSnapshot& values) { values.m_serverBasedFeatures = isTrue; });
    } else if (key == "system-identifier" || key == "call-log-control" || key == "reg-number") {
        m_phoneValues.readLocalMgmtData(PhoneValues::eSystem);
    } else if (key == "bt-hw-state") {
        applyBluetoothState(value == "on");
    } else if (key == "wsi-allow-uc-journal") {
        m_settings.change([isTrue](SettingsSnapshot& values) { values.m_wsiAllowUcJournal = isTrue; });
    } else if (key == "forwarding-party-display") {
        m_settings.change(
            [&value](SettingsSnapshot& values) { values.m_ForwardingPartyDisplayLast = value == "1"; });
    } else if (key == UlmoTags::RINGCENTRAL_API_SYNC_CALL_LOG) {
        m_settings.change([isTrue](SettingsSnapshot& values) { values.m_ringCentralSyncCallLog = isTrue; });
    }
}

void ManagementAgent::applyCallLogState(const std::string& state) {
    LOG_EVENTS(5, "Call log data state changed. State = %s", state.c_str());
    if (state == "0") {
        allowCallLog();
    } else if (state == "1" || state == "2") {
        disableCallLog();
    } else {
        LOG_EVENTS(2, "Invalid Call log data state");
    }
}

void ManagementAgent::allowCallLog() {
    const auto settings = m_settings.values();
    if (!settings->isSip() && !m_monitors.qorvexEventsStarted()) {
        LOG_EVENTS(5, "startQorvexEvents");
        m_monitors.startQorvexEvents();
    } else {
        LOG_EVENTS(5, "manageableDataChanged() : Call log data state - events already started");
    }
    if (settings->m_btHwOn && !m_monitors.bluetoothEventsStarted()) {
        LOG_EVENTS(5, "startMonitoringBluetoothEvents");
        m_monitors.startMonitoringBluetoothEvents();
    }
    m_refresh.refreshCallLog();
}

void ManagementAgent::disableCallLog() {
    if (!m_settings.values()->isSip() && m_monitors.qorvexEventsStarted()) {
        LOG_EVENTS(5, "stopQorvexEvents");
        m_monitors.stopQorvexEvents();
    } else {
        LOG_EVENTS(5, "Events already stopped");
    }
    if (m_monitors.bluetoothEventsStarted()) {
        LOG_EVENTS(5, "stopMonitoringBluetoothEvents");
        m_monitors.stopMonitoringBluetoothEvents();
    } else {
        LOG_EVENTS(5, "Bluetooth events already stopped");
    }
}

void ManagementAgent::applyBluetoothState(bool on) {
    m_settings.change([on](SettingsSnapshot& values) { values.m_btHwOn = on; });
    if (on) {
        LOG_EVENTS(5, "%s():startMonitoringBluetoothEvents", "manageableDataChanged");
        m_monitors.startMonitoringBluetoothEvents();
    } else {
        LOG_EVENTS(5, "%s():stopMonitoringBluetoothEvents", "manageableDataChanged");
        m_monitors.stopMonitoringBluetoothEvents();
    }
}

}  // namespace journal
