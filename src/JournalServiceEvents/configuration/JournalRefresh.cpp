#include "src/JournalServiceEvents/configuration/JournalRefresh.h"

#include "journalservice/ObserverNotifierIfc.h"
#include "platform/services/UCServiceIfc.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/base/PlatformServices.h"
#include "src/JournalService/list-changes/ListDeletion.h"
#include "src/JournalService/lists/ListSourceIfc.h"
#include "src/JournalService/lists/ListTransaction.h"
#include "src/JournalServiceEvents/configuration/JournalSettings.h"
#include "src/JournalServiceEvents/configuration/PhoneValues.h"

namespace journal {

bool JournalRefresh::refreshCallLists() {
    LOG_JOURNAL(6, "refreshCallLists");
    m_source.load();
    return true;
}

bool JournalRefresh::refreshCallLog() {
    LOG_JOURNAL(6, "refreshCallLog");
    m_source.load();
    const bool wasEnabled = m_settings.values()->m_callLogEnabled;
    m_journalSettings.readConfigItemsFromDB();
    if (m_settings.values()->m_callLogEnabled != wasEnabled) {
        m_journalSettings.handleEnabledStateChange();
    }
    ListTransaction(m_lists).commit([this](ObserverNotifierIfc& notifier) {
        notifier.updateAllExceptCallbacks(m_lists.getUnviewedMissedCallsCount());
    });
    return true;
}

void JournalRefresh::reloadEverything() {
    m_source.load();
    m_journalSettings.readConfigItemsFromDB();
    m_journalSettings.handleEnabledStateChange();
    ListTransaction(m_lists).commit(
        [this](ObserverNotifierIfc& notifier) { notifier.updateAll(m_lists.getUnviewedMissedCallsCount()); });
    if (m_settings.values()->isSip()) {
        m_phoneValues.publishCallLogEnableState();
        m_phoneValues.publishMissedLoggingState();
        m_phoneValues.publishDeleteMissedWhenCalledState();
    }
    if (auto* ucService = m_platform.knownUcService()) {
        ucService->refreshJournal();
    }
}

bool JournalRefresh::resetUserData() {
    LOG_JOURNAL(5, "JournalService::resetUserData");
    m_deletion.deleteAllCalls();
    const auto before = m_settings.values();
    if (!before->isSip()) {
        return true;
    }
    RejectReason ignored;
    if (!before->m_callLogEnabled) {
        m_settings.change([](SettingsSnapshot& values) { values.m_callLogEnabled = true; });
        m_journalSettings.updateEnabledState("true", ignored);
        m_phoneValues.publishCallLogEnableState();
    }
    if (!before->m_missedLogging) {
        m_settings.change([](SettingsSnapshot& values) { values.m_missedLogging = true; });
        m_journalSettings.updateMissedLoggingState("true", ignored);
        m_phoneValues.publishMissedLoggingState();
    }
    if (before->m_deleteMissedWhenCalled) {
        m_settings.change([](SettingsSnapshot& values) { values.m_deleteMissedWhenCalled = false; });
        m_journalSettings.updateDeleteMissedWhenCalledState("false", ignored);
        m_phoneValues.publishDeleteMissedWhenCalledState();
    }
    return true;
}

bool JournalRefresh::setJournalServiceCallLogEventsDisabling(const std::string& value) {
    LOG_JOURNAL(5, "Broadsoft service prevents some events");
    m_settings.change([&value](SettingsSnapshot& values) { values.m_xsiConfigured = value == "true"; });
    return true;
}

}  // namespace journal
