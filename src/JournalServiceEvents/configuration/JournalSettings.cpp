#include "src/JournalServiceEvents/configuration/JournalSettings.h"

#include "platform/client-utils/ClientUtils.h"
#include "platform/journal-library/CallListDatabaseAdapter.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/sync/CriticalSection.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/list-changes/ListDeletion.h"

namespace journal {

struct JournalSettings::SettingDescriptor {
    const char* key;
    Member member;
    bool byDefault;
};

const JournalSettings::SettingDescriptor JournalSettings::kOwnSettings[] = {
    {"call-log-enabled", &SettingsSnapshot::m_callLogEnabled, true},
    {"missed-logging", &SettingsSnapshot::m_missedLogging, true},
    {"delete-missed-when-called", &SettingsSnapshot::m_deleteMissedWhenCalled, false},
};

bool JournalSettings::store(const char* key, const std::string& value) {
    return m_adapter.processRequest(JournalServiceHelper::updateSettings(key, value)) !=
           CallListDatabaseAdapterHelper::FAILED;
}

bool JournalSettings::updateBoolConfigItem(Member member, const char* key, const std::string& value) {
    if (!ClientUtils::isStringBool(value)) {
        LOG_EVENTS(2, "JournalService::updateEnabledState -> invalid input");
        return false;
    }
    const CriticalSection<Semaphore> section(m_recordLock);
    if (!store(key, value)) {
        return false;
    }
    const bool next = ClientUtils::stob(value);
    bool changed = false;
    m_settings.change([member, next, &changed](SettingsSnapshot& values) {
        changed = values.*member != next;
        values.*member = next;
    });
    return changed;
}

bool JournalSettings::update(Member member, const char* key, const std::string& value, RejectReason& reason) {
    const bool changed = updateBoolConfigItem(member, key, value);
    if (!changed && (*m_settings.values()).*member == ClientUtils::stob(value)) {
        setRejectReason(eRejectValueNotChanged, reason, "%s value is not changed", key);
    }
    return changed;
}

bool JournalSettings::updateEnabledState(const std::string& value, RejectReason& reason) {
    const bool changed = update(&SettingsSnapshot::m_callLogEnabled, "call-log-enabled", value, reason);
    if (changed) {
        handleEnabledStateChange();
    }
    return changed;
}

bool JournalSettings::updateMissedLoggingState(const std::string& value, RejectReason& reason) {
    return update(&SettingsSnapshot::m_missedLogging, "missed-logging", value, reason);
}

bool JournalSettings::updateDeleteMissedWhenCalledState(const std::string& value, RejectReason& reason) {
    return update(&SettingsSnapshot::m_deleteMissedWhenCalled, "delete-missed-when-called", value, reason);
}

void JournalSettings::handleEnabledStateChange() {
    if (!m_settings.values()->m_callLogEnabled) {
        m_deletion.deleteAllCalls();
    }
}

bool JournalSettings::readItem(const std::string& response, const char* key, Member member) {
    bool value = false;
    if (!JournalServiceHelper::getXMLValue(response, key, value)) {
        return false;
    }
    m_settings.change([member, value](SettingsSnapshot& values) { values.*member = value; });
    return true;
}

// One lock for all three, so that a concurrent update is not taken for an absent setting and replaced by the
// default.
void JournalSettings::readConfigItemsFromDB() {
    const CriticalSection<Semaphore> section(m_recordLock);
    const std::string response = m_adapter.processRequest(JournalServiceHelper::readSettings());
    const bool storesDefaults = m_settings.values()->isSip();
    for (const SettingDescriptor& setting : kOwnSettings) {
        const bool found = response != CallListDatabaseAdapterHelper::FAILED &&
                           readItem(response, setting.key, setting.member);
        if (!found && storesDefaults) {
            m_settings.change(
                [&setting](SettingsSnapshot& values) { values.*setting.member = setting.byDefault; });
            static_cast<void>(store(setting.key, setting.byDefault ? "true" : "false"));
        }
    }
}

}  // namespace journal
