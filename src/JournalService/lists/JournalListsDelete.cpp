#include "journal-items/Occurrences.h"
#include "journalservice/ObserverNotifierIfc.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/lists/CallLogRequests.h"
#include "src/JournalService/lists/JournalLists.h"
#include "src/JournalService/lists/ListPersistence.h"

// Deleting goes one road for every list: tell the switch, then, under the list's lock, the database and the
// list, then the observers. What differs stands in `reportDeleted`, `reportCleared` and the three
// `announce...`.

namespace journal {

using Helper = CallListDatabaseAdapterHelper;

namespace {

// With this identifier the switch keeps the entries of group calls only.
constexpr int kGroupCallSystem = 1;

bool isGroupCall(const MissedCallItem& item) {
    const auto& infos = item.getMissedCallInfoList();
    return !infos.empty() && !infos.front().getLineKey().empty();
}

// The log that a cleared list stands for at the switch; the forwarded list and the callbacks have none.
constexpr int kNoLog = -1;
template <typename Item>
constexpr int logTargetOf = kNoLog;
template <>
constexpr int logTargetOf<MissedCallItem> = CallLogEntryEvent::eMissed;
template <>
constexpr int logTargetOf<DialledCallItem> = CallLogEntryEvent::eDialled;
template <>
constexpr int logTargetOf<ReceivedCallItem> = CallLogEntryEvent::eReceived;

}  // namespace

// --- telling the switch ---

void JournalLists::reportDeleted(const MissedCallItem& item) const {
    const auto settings = m_settings.values();
    if (settings->m_serverBasedCallLog) {
        m_requests.sendMissedCallLogEntryRequests(item.getMissedCallInfoList());
    } else if (settings->m_systemIdentifier == kGroupCallSystem && isGroupCall(item)) {
        LOG_JOURNAL(5, "send CSTAEscapeRequest for group call");
        m_requests.sendMissedGroupCallLogEntryRequest(&item.getMissedCallInfoList().front());
    }
}

void JournalLists::reportDeleted(const DialledCallItem& item) const {
    if (m_settings.values()->m_serverBasedCallLog) {
        m_requests.sendDialledCallLogEntryRequests(item.getDialledCallInfoList());
    }
}

void JournalLists::reportDeleted(const ReceivedCallItem& item) const {
    if (m_settings.values()->m_serverBasedCallLog) {
        m_requests.sendReceivedCallLogEntryRequests(item.getReceivedCallInfoList());
    }
}

template <typename Item>
bool JournalLists::hasEntries() {
    const bool listed = !list<Item>().access()->empty();
    return listed || !m_olderEntries.of(list<Item>()).empty();
}

template <typename Item>
void JournalLists::reportCleared() {
    const auto settings = m_settings.values();
    if constexpr (logTargetOf<Item> != kNoLog) {
        if (settings->m_serverBasedCallLog && hasEntries<Item>()) {
            m_requests.sendDeleteAllCallLogEntryRequest(
                static_cast<CallLogEntryEvent::_LogTarget>(logTargetOf<Item>));
        }
    }
    if constexpr (std::is_same_v<Item, MissedCallItem>) {
        if (settings->m_systemIdentifier == kGroupCallSystem) {
            std::deque<MissedCallItem> missed;
            copyList(missed);
            const std::deque<MissedCallItem>& older = m_olderEntries.of(list<MissedCallItem>());
            missed.insert(missed.end(), older.begin(), older.end());
            for (const MissedCallItem& item : missed) {
                reportDeleted(item);
            }
        }
    }
}

// --- telling the observers ---

template <>
void JournalLists::announceDeleted(const MissedCallItem& deleted) {
    m_notifier.updateMissedCallCountAndCalls(getUnviewedMissedCallsCount(), deleted.getUniqueId());
}
template <>
void JournalLists::announceDeleted(const DialledCallItem& deleted) {
    m_notifier.updateDialledCalls(getFrontDialledCall(), deleted.getUniqueId());
}
template <>
void JournalLists::announceDeleted(const ReceivedCallItem& deleted) {
    m_notifier.updateReceivedCalls(deleted.getUniqueId());
}
template <>
void JournalLists::announceDeleted(const ForwardedCallItem& deleted) {
    m_notifier.updateForwardedCalls(deleted.getUniqueId());
}
template <>
void JournalLists::announceDeleted(const CallBackItem& deleted) {
    m_notifier.updateCallbacksAndCount(deleted.getEntryId());
}

template <>
void JournalLists::announceSetDeleted<MissedCallItem>() {
    m_notifier.updateMissedCallCountAndCalls(getUnviewedMissedCallsCount());
}
template <>
void JournalLists::announceSetDeleted<DialledCallItem>() {
    m_notifier.updateDialledCalls(getFrontDialledCall());
}
template <>
void JournalLists::announceSetDeleted<ReceivedCallItem>() {
    m_notifier.updateReceivedCalls();
}
template <>
void JournalLists::announceSetDeleted<ForwardedCallItem>() {
    m_notifier.updateForwardedCalls();
}
template <>
void JournalLists::announceSetDeleted<CallBackItem>() {
    m_notifier.updateCallbacksAndCount();
}

// Clearing the missed or the received list is told to nobody. Of those who order it, only the switch's log
// tells the observers itself; the host's HTTP face lets its clients read again.
template <>
void JournalLists::announceCleared<MissedCallItem>() {}
template <>
void JournalLists::announceCleared<ReceivedCallItem>() {}
template <>
void JournalLists::announceCleared<DialledCallItem>() {
    m_notifier.updateDialledCalls(JournalServiceObserverIfc::eListCleared);
}
template <>
void JournalLists::announceCleared<ForwardedCallItem>() {
    m_notifier.updateForwardedCalls();
}
template <>
void JournalLists::announceCleared<CallBackItem>() {
    m_notifier.updateCallbacksAndCount();
}

// --- the common road ---

template <typename Item>
std::vector<Item> JournalLists::copyItems(const std::set<std::string>& entryIds) {
    std::vector<Item> copies;
    const auto items = list<Item>().access();
    for (const Item& item : *items) {
        if (entryIds.contains(item.getEntryId())) {
            copies.push_back(item);
        }
    }
    return copies;
}

template <typename Item>
bool JournalLists::deleteOne(const char* operation, const std::string& entryId) {
    const Change change(*this);
    Item deleted;
    if (!copyItem(entryId, deleted)) {
        return false;
    }
    LOG_JOURNAL(5, "JournalService::%s: entry found", operation);
    reportDeleted(deleted);
    {
        const auto items = list<Item>().access();
        m_persistence.update(deleted, Helper::DELETEREQUEST);
        items->erase(items.find(entryId));
    }
    announceDeleted(deleted);
    return true;
}

template <typename Item>
std::size_t JournalLists::deleteSet(const std::set<std::string>& entryIds) {
    const Change change(*this);
    const auto doomed = copyItems<Item>(entryIds);
    if (doomed.empty()) {
        return 0;
    }
    std::string entries;
    for (const Item& item : doomed) {
        reportDeleted(item);
        entries += ListPersistence::entry(item, Helper::DELETEREQUEST);
    }
    {
        const auto items = list<Item>().access();
        std::erase_if(*items, [&entryIds](const Item& item) { return entryIds.contains(item.getEntryId()); });
        m_persistence.updateEntries(entries, Helper::DELETEREQUEST, ListXml<Item>::kTable);
    }
    announceSetDeleted<Item>();
    return doomed.size();
}

template <typename Item>
void JournalLists::deleteWhole() {
    const Change change(*this);
    reportCleared<Item>();
    {
        const auto items = list<Item>().access();
        items->clear();
        m_olderEntries.clear<Item>();
        m_persistence.deleteAll<Item>();
    }
    announceCleared<Item>();
}

// --- one entry ---

bool JournalLists::deleteMissedCall(const std::string& entryId, bool isSendDeleteMissedCallRequest) {
    LOG_JOURNAL(5, "JournalService::deleteMissedCall: entryId = %s, isSendDeleteMissedCallRequest: %s ",
                entryId.c_str(), isSendDeleteMissedCallRequest ? "true" : "false");
    if (entryId.empty() || isSendDeleteMissedCallRequest) {
        return false;
    }
    return deleteOne<MissedCallItem>("deleteMissedCall", entryId);
}

bool JournalLists::deleteDialledCall(const std::string& entryId) {
    LOG_JOURNAL(5, "JournalService::deleteDialledCall: entryId = %s", entryId.c_str());
    return deleteOne<DialledCallItem>("deleteDialledCall", entryId);
}

bool JournalLists::deleteReceivedCall(const std::string& entryId) {
    LOG_JOURNAL(5, "JournalService::deleteReceivedCall: entryId = %s", entryId.c_str());
    return deleteOne<ReceivedCallItem>("deleteReceivedCall", entryId);
}

bool JournalLists::deleteForwardedCall(const std::string& entryId) {
    LOG_JOURNAL(5, "JournalService::deleteForwardedCall: entryId = %s", entryId.c_str());
    return deleteOne<ForwardedCallItem>("deleteForwardedCall", entryId);
}

bool JournalLists::deleteCallBack(const std::string& entryId) {
    LOG_JOURNAL(5, "JournalService::deleteCallBack: entryId = %s", entryId.c_str());
    return deleteOne<CallBackItem>("deleteCallBack", entryId);
}

// --- a set of entries ---

bool JournalLists::deleteMissedCallList(const std::set<std::string>& entryIds) {
    LOG_JOURNAL(5, "JournalService::deleteMissedCallList");
    deleteSet<MissedCallItem>(entryIds);
    return true;
}

bool JournalLists::deleteDialledCallList(const std::set<std::string>& entryIds) {
    LOG_JOURNAL(5, "JournalService::deleteDialledCallList by set");
    deleteSet<DialledCallItem>(entryIds);
    return true;
}

bool JournalLists::deleteReceivedCallList(const std::set<std::string>& entryIds) {
    LOG_JOURNAL(5, "JournalService::deleteReceivedCallList");
    deleteSet<ReceivedCallItem>(entryIds);
    return true;
}

bool JournalLists::deleteForwardedCallList(const std::set<std::string>& entryIds) {
    LOG_JOURNAL(5, "JournalService::deleteForwardedCallList");
    deleteSet<ForwardedCallItem>(entryIds);
    return true;
}

bool JournalLists::deleteCallBackList(const std::set<std::string>& entryIds) {
    LOG_JOURNAL(5, "JournalService::deleteCallBackList by set");
    deleteSet<CallBackItem>(entryIds);
    return true;
}

bool JournalLists::deleteCalls(const std::set<std::string>& entryIds, bool isSendDeleteMissedCallRequest) {
    const Change change(*this);
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

bool JournalLists::deleteMissedCallList() {
    LOG_JOURNAL(5, "CallListDatabaseAdapterHelper::deleteMissedCallList");
    deleteWhole<MissedCallItem>();
    return true;
}

bool JournalLists::deleteDialledCallList() {
    LOG_JOURNAL(5, "CallListDatabaseAdapterHelper::deleteDialledCallList all");
    deleteWhole<DialledCallItem>();
    return true;
}

bool JournalLists::deleteReceivedCallList() {
    LOG_JOURNAL(5, "CallListDatabaseAdapterHelper::deleteReceivedCallList");
    deleteWhole<ReceivedCallItem>();
    return true;
}

bool JournalLists::deleteForwardedCallList() {
    LOG_JOURNAL(5, "CallListDatabaseAdapterHelper::deleteForwardedCallList");
    deleteWhole<ForwardedCallItem>();
    return true;
}

bool JournalLists::deleteCallBackList() {
    LOG_JOURNAL(5, "CallListDatabaseAdapterHelper::deleteCallBackList all");
    deleteWhole<CallBackItem>();
    return true;
}

bool JournalLists::deleteAllCalls() {
    const Change change(*this);
    deleteMissedCallList();
    deleteDialledCallList();
    deleteReceivedCallList();
    deleteForwardedCallList();
    m_contacts.clear();
    return true;
}

}  // namespace journal
