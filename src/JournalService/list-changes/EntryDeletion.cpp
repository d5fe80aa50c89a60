#include "src/JournalService/list-changes/EntryDeletion.h"

#include "journalservice/ObserverNotifierIfc.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"

namespace journal {

namespace {

bool isGroupCall(const MissedCallItem& item) {
    const auto& infos = item.getMissedCallInfoList();
    return !infos.empty() && !infos.front().getLineKey().empty();
}

}  // namespace

// --- the report to the switch ---

void reportDeleted(ListTransaction& transaction, const SettingsSnapshot& settings,
                   const MissedCallItem& item) {
    if (settings.m_serverBasedCallLog) {
        transaction.requests().sendMissedCallLogEntryRequests(item.getMissedCallInfoList());
    } else if (settings.m_systemIdentifier == kGroupCallSystem && isGroupCall(item)) {
        LOG_JOURNAL(5, "send CSTAEscapeRequest for group call");
        transaction.requests().sendMissedGroupCallLogEntryRequest(&item.getMissedCallInfoList().front());
    }
}

void reportDeleted(ListTransaction& transaction, const SettingsSnapshot& settings,
                   const DialledCallItem& item) {
    if (settings.m_serverBasedCallLog) {
        transaction.requests().sendDialledCallLogEntryRequests(item.getDialledCallInfoList());
    }
}

void reportDeleted(ListTransaction& transaction, const SettingsSnapshot& settings,
                   const ReceivedCallItem& item) {
    if (settings.m_serverBasedCallLog) {
        transaction.requests().sendReceivedCallLogEntryRequests(item.getReceivedCallInfoList());
    }
}

void reportDeleted(ListTransaction& /*transaction*/, const SettingsSnapshot& /*settings*/,
                   const ForwardedCallItem& /*item*/) {}
void reportDeleted(ListTransaction& /*transaction*/, const SettingsSnapshot& /*settings*/,
                   const CallBackItem& /*item*/) {}

// --- the notification of the observers ---

void notifyDeleted(ObserverNotifierIfc& notifier, JournalLists& lists, const MissedCallItem& deleted) {
    notifier.updateMissedCallCountAndCalls(lists.getUnviewedMissedCallsCount(), deleted.getUniqueId());
}
void notifyDeleted(ObserverNotifierIfc& notifier, JournalLists& lists, const DialledCallItem& deleted) {
    notifier.updateDialledCalls(lists.front<DialledCallItem>(), deleted.getUniqueId());
}
void notifyDeleted(ObserverNotifierIfc& notifier, JournalLists& /*lists*/, const ReceivedCallItem& deleted) {
    notifier.updateReceivedCalls(deleted.getUniqueId());
}
void notifyDeleted(ObserverNotifierIfc& notifier, JournalLists& /*lists*/, const ForwardedCallItem& deleted) {
    notifier.updateForwardedCalls(deleted.getUniqueId());
}
void notifyDeleted(ObserverNotifierIfc& notifier, JournalLists& /*lists*/, const CallBackItem& deleted) {
    notifier.updateCallbacksAndCount(deleted.getEntryId());
}

}  // namespace journal
