#include "src/JournalServiceEvents/configuration/JournalRefresh.h"

#include "journalservice/ObserverNotifierIfc.h"
#include "platform/services/UCServiceIfc.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/base/PlatformServices.h"
#include "src/JournalService/lists/JournalLists.h"
#include "src/JournalServiceEvents/configuration/JournalSettings.h"
#include "src/JournalServiceEvents/configuration/PhoneValues.h"

namespace journal {

bool JournalRefresh::refreshCallLists() {
    LOG_JOURNAL(6, "refreshCallLists");
    m_loadLists();
    return true;
}

bool JournalRefresh::refreshCallLog() {
    LOG_JOURNAL(6, "refreshCallLog");
    m_loadLists();
    const bool wasEnabled = m_parts.settings.values()->m_callLogEnabled;
    m_parts.ownSettings.readConfigItemsFromDB();
    if (m_parts.settings.values()->m_callLogEnabled != wasEnabled) {
        m_parts.ownSettings.handleEnabledStateChange();
    }
    const JournalLists::Change change(m_parts.lists);
    m_parts.notifier.updateAllExceptCallbacks(m_parts.lists.getUnviewedMissedCallsCount());
    return true;
}

void JournalRefresh::reloadEverything() {
    m_loadLists();
    m_parts.ownSettings.readConfigItemsFromDB();
    m_parts.ownSettings.handleEnabledStateChange();
    {
        const JournalLists::Change change(m_parts.lists);
        m_parts.notifier.updateAll(m_parts.lists.getUnviewedMissedCallsCount());
    }
    if (m_parts.settings.values()->isSip()) {
        m_parts.management.publishCallLogEnableState();
        m_parts.management.publishMissedLoggingState();
        m_parts.management.publishDeleteMissedWhenCalledState();
    }
    if (auto* ucService = m_parts.platform.knownUcService()) {
        ucService->refreshJournal();
    }
}

bool JournalRefresh::resetUserData() {
    LOG_JOURNAL(5, "JournalService::resetUserData");
    m_parts.lists.deleteAllCalls();
    const auto before = m_parts.settings.values();
    if (!before->isSip()) {
        return true;
    }
    RejectReason ignored;
    if (!before->m_callLogEnabled) {
        m_parts.settings.change([](SettingsSnapshot& values) { values.m_callLogEnabled = true; });
        m_parts.ownSettings.updateEnabledState("true", ignored);
        m_parts.management.publishCallLogEnableState();
    }
    if (!before->m_missedLogging) {
        m_parts.settings.change([](SettingsSnapshot& values) { values.m_missedLogging = true; });
        m_parts.ownSettings.updateMissedLoggingState("true", ignored);
        m_parts.management.publishMissedLoggingState();
    }
    if (before->m_deleteMissedWhenCalled) {
        m_parts.settings.change([](SettingsSnapshot& values) { values.m_deleteMissedWhenCalled = false; });
        m_parts.ownSettings.updateDeleteMissedWhenCalledState("false", ignored);
        m_parts.management.publishDeleteMissedWhenCalledState();
    }
    return true;
}

bool JournalRefresh::setJournalServiceCallLogEventsDisabling(const std::string& value) {
    LOG_JOURNAL(5, "Broadsoft service prevents some events");
    m_parts.settings.change([&value](SettingsSnapshot& values) { values.m_xsiConfigured = value == "true"; });
    return true;
}

}  // namespace journal
