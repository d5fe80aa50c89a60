#include "src/JournalService/list-changes/ListDeletion.h"

#include <type_traits>
#include <vector>

#include "journalservice/ObserverNotifierIfc.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/list-changes/EntryDeletion.h"
#include "src/JournalService/lists/ListTransaction.h"

namespace journal {

namespace {

using ActionType = JournalServiceObserverIfc::ActionType;

// --- the report to the switch ---

constexpr int kNoLog = -1;
template <typename Item>
constexpr int kLogTarget = kNoLog;
template <>
constexpr int kLogTarget<MissedCallItem> = CallLogEntryEvent::eMissed;
template <>
constexpr int kLogTarget<DialledCallItem> = CallLogEntryEvent::eDialled;
template <>
constexpr int kLogTarget<ReceivedCallItem> = CallLogEntryEvent::eReceived;

template <typename Item>
bool hasEntries(ListTransaction& transaction, JournalLists& lists) {
    const bool listed = !lists.read<Item>()->empty();
    return listed || !transaction.unloaded<Item>().empty();
}

template <typename Item>
void reportCleared(ListTransaction& transaction, JournalLists& lists, const SettingsSnapshot& settings) {
    if constexpr (kLogTarget<Item> != kNoLog) {
        if (settings.m_serverBasedCallLog && hasEntries<Item>(transaction, lists)) {
            transaction.requests().sendDeleteAllCallLogEntryRequest(
                static_cast<CallLogEntryEvent::_LogTarget>(kLogTarget<Item>));
        }
    }
    if constexpr (std::is_same_v<Item, MissedCallItem>) {
        if (settings.m_systemIdentifier == kGroupCallSystem) {
            std::deque<MissedCallItem> missed = *lists.read<MissedCallItem>();
            const std::deque<MissedCallItem>& unloaded = transaction.unloaded<MissedCallItem>();
            missed.insert(missed.end(), unloaded.begin(), unloaded.end());
            for (const MissedCallItem& item : missed) {
                reportDeleted(transaction, settings, item);
            }
        }
    }
}

// --- the notification of the observers ---

template <typename Item>
void notifySetDeleted(ObserverNotifierIfc& notifier, JournalLists& lists) {
    if constexpr (std::is_same_v<Item, MissedCallItem>) {
        notifier.updateMissedCallCountAndCalls(lists.getUnviewedMissedCallsCount());
    } else if constexpr (std::is_same_v<Item, DialledCallItem>) {
        notifier.updateDialledCalls(lists.front<DialledCallItem>());
    } else if constexpr (std::is_same_v<Item, ReceivedCallItem>) {
        notifier.updateReceivedCalls();
    } else if constexpr (std::is_same_v<Item, ForwardedCallItem>) {
        notifier.updateForwardedCalls();
    } else {
        notifier.updateCallbacksAndCount();
    }
}

// Clearing the missed or the received list notifies no observer. The switch's log notifies them itself, and
// the host's HTTP API lets its clients read again.
template <typename Item>
void notifyCleared(ObserverNotifierIfc& notifier) {
    if constexpr (std::is_same_v<Item, DialledCallItem>) {
        notifier.updateDialledCalls(ActionType::eListCleared);
    } else if constexpr (std::is_same_v<Item, ForwardedCallItem>) {
        notifier.updateForwardedCalls();
    } else if constexpr (std::is_same_v<Item, CallBackItem>) {
        notifier.updateCallbacksAndCount();
    }
}

template <typename Item>
std::vector<Item> copiesOf(JournalLists& lists, const std::set<std::string>& entryIds) {
    std::vector<Item> copies;
    const auto items = lists.read<Item>();
    for (const Item& item : *items) {
        if (entryIds.contains(item.getEntryId())) {
            copies.push_back(item);
        }
    }
    return copies;
}

}  // namespace

// --- the sequence of a deletion ---

template <typename Item>
bool ListDeletion::deleteOne(const char* operation, const std::string& entryId) {
    ListTransaction transaction(m_lists);
    const std::vector<Item> deleted = copiesOf<Item>(m_lists, {entryId});
    if (deleted.empty()) {
        return false;
    }
    LOG_JOURNAL(5, "JournalService::%s: entry found", operation);
    reportDeleted(transaction, *m_settings.values(), deleted.front());
    deleteEntry(transaction, m_lists, deleted.front());
    return true;
}

template <typename Item>
std::size_t ListDeletion::deleteSet(const std::set<std::string>& entryIds) {
    ListTransaction transaction(m_lists);
    const std::vector<Item> deleted = copiesOf<Item>(m_lists, entryIds);
    if (deleted.empty()) {
        return 0;
    }
    for (const Item& item : deleted) {
        reportDeleted(transaction, *m_settings.values(), item);
    }
    transaction.removeSet(transaction.open<Item>(), entryIds, deleted);
    transaction.commit([&](ObserverNotifierIfc& notifier) { notifySetDeleted<Item>(notifier, m_lists); });
    return deleted.size();
}

template <typename Item>
void ListDeletion::deleteWhole() {
    ListTransaction transaction(m_lists);
    reportCleared<Item>(transaction, m_lists, *m_settings.values());
    transaction.clear(transaction.open<Item>());
    transaction.commit([](ObserverNotifierIfc& notifier) { notifyCleared<Item>(notifier); });
}

// --- one entry ---

bool ListDeletion::deleteMissedCall(const std::string& entryId, bool isSendDeleteMissedCallRequest) {
    LOG_JOURNAL(5, "JournalService::deleteMissedCall: entryId = %s, isSendDeleteMissedCallRequest: %s ",
                entryId.c_str(), isSendDeleteMissedCallRequest ? "true" : "false");
    if (entryId.empty() || isSendDeleteMissedCallRequest) {
        return false;
    }
    return deleteOne<MissedCallItem>("deleteMissedCall", entryId);
}

bool ListDeletion::deleteDialledCall(const std::string& entryId) {
    LOG_JOURNAL(5, "JournalService::deleteDialledCall: entryId = %s", entryId.c_str());
    return deleteOne<DialledCallItem>("deleteDialledCall", entryId);
}

bool ListDeletion::deleteReceivedCall(const std::string& entryId) {
    LOG_JOURNAL(5, "JournalService::deleteReceivedCall: entryId = %s", entryId.c_str());
    return deleteOne<ReceivedCallItem>("deleteReceivedCall", entryId);
}

bool ListDeletion::deleteForwardedCall(const std::string& entryId) {
    LOG_JOURNAL(5, "JournalService::deleteForwardedCall: entryId = %s", entryId.c_str());
    return deleteOne<ForwardedCallItem>("deleteForwardedCall", entryId);
}

bool ListDeletion::deleteCallBack(const std::string& entryId) {
    LOG_JOURNAL(5, "JournalService::deleteCallBack: entryId = %s", entryId.c_str());
    return deleteOne<CallBackItem>("deleteCallBack", entryId);
}

// --- a set of entries ---

bool ListDeletion::deleteMissedCallList(const std::set<std::string>& entryIds) {
    LOG_JOURNAL(5, "JournalService::deleteMissedCallList");
    deleteSet<MissedCallItem>(entryIds);
    return true;
}

bool ListDeletion::deleteDialledCallList(const std::set<std::string>& entryIds) {
    LOG_JOURNAL(5, "JournalService::deleteDialledCallList by set");
    deleteSet<DialledCallItem>(entryIds);
    return true;
}

bool ListDeletion::deleteReceivedCallList(const std::set<std::string>& entryIds) {
    LOG_JOURNAL(5, "JournalService::deleteReceivedCallList");
    deleteSet<ReceivedCallItem>(entryIds);
    return true;
}

bool ListDeletion::deleteForwardedCallList(const std::set<std::string>& entryIds) {
    LOG_JOURNAL(5, "JournalService::deleteForwardedCallList");
    deleteSet<ForwardedCallItem>(entryIds);
    return true;
}

bool ListDeletion::deleteCallBackList(const std::set<std::string>& entryIds) {
    LOG_JOURNAL(5, "JournalService::deleteCallBackList by set");
    deleteSet<CallBackItem>(entryIds);
    return true;
}

bool ListDeletion::deleteCalls(const std::set<std::string>& entryIds, bool isSendDeleteMissedCallRequest) {
    const ListTransaction transaction(m_lists);
    std::size_t deleted = 0;
    if (!isSendDeleteMissedCallRequest) {
        deleted += deleteSet<MissedCallItem>(entryIds);
    }
    deleted += deleteSet<DialledCallItem>(entryIds);
    deleted += deleteSet<ReceivedCallItem>(entryIds);
    deleted += deleteSet<ForwardedCallItem>(entryIds);
    deleted += deleteSet<CallBackItem>(entryIds);
    return deleted != 0;
}

// --- whole lists ---

bool ListDeletion::deleteMissedCallList() {
    LOG_JOURNAL(5, "CallListDatabaseAdapterHelper::deleteMissedCallList");
    deleteWhole<MissedCallItem>();
    return true;
}

bool ListDeletion::deleteDialledCallList() {
    LOG_JOURNAL(5, "CallListDatabaseAdapterHelper::deleteDialledCallList all");
    deleteWhole<DialledCallItem>();
    return true;
}

bool ListDeletion::deleteReceivedCallList() {
    LOG_JOURNAL(5, "CallListDatabaseAdapterHelper::deleteReceivedCallList");
    deleteWhole<ReceivedCallItem>();
    return true;
}

bool ListDeletion::deleteForwardedCallList() {
    LOG_JOURNAL(5, "CallListDatabaseAdapterHelper::deleteForwardedCallList");
    deleteWhole<ForwardedCallItem>();
    return true;
}

bool ListDeletion::deleteCallBackList() {
    LOG_JOURNAL(5, "CallListDatabaseAdapterHelper::deleteCallBackList all");
    deleteWhole<CallBackItem>();
    return true;
}

bool ListDeletion::deleteAllCalls() {
    const ListTransaction transaction(m_lists);
    deleteMissedCallList();
    deleteDialledCallList();
    deleteReceivedCallList();
    deleteForwardedCallList();
    m_lists.contacts().clear();
    return true;
}

}  // namespace journal
