#include "src/JournalService/lists/ListLoader.h"

#include <algorithm>

#include "platform/journal-library/CallListDatabaseAdapter.h"
#include "platform/journal-library/ListXml.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalService/lists/ListOrder.h"
#include "src/JournalService/lists/ListTransaction.h"

namespace journal {

namespace {

using Helper = CallListDatabaseAdapterHelper;

/// The names of a list that `normalize` writes into the log.
template <typename Item>
struct NormalizeNames;
template <>
struct NormalizeNames<DialledCallItem> {
    static constexpr const char* kOperation = "normalizeDialledCallList";
    static constexpr const char* kList = "m_DialledCallList";
};
template <>
struct NormalizeNames<ReceivedCallItem> {
    static constexpr const char* kOperation = "normalizeReceivedCallList";
    static constexpr const char* kList = "m_ReceivedCallList";
};
template <>
struct NormalizeNames<ForwardedCallItem> {
    static constexpr const char* kOperation = "normalizeForwardedCallList";
    static constexpr const char* kList = "m_ForwardedCallList";
};

}  // namespace

void ListLoader::load() {
    ListTransaction transaction(m_lists);
    ListTransaction::Load load(transaction);
    if (!transaction.retryRejected()) {
        LOG_JOURNAL(2, "The database refuses entries, so the lists are not loaded and stay as they are");
        return;
    }
    loadAll();
    load.finish();
}

void ListLoader::loadAll() {
    if (m_loadCallLists) {
        m_loadCallLists();
    } else {
        loadCallListsFromDb();
    }
    readCallBackList();
    m_hasLoaded = true;
}

void ListLoader::loadCallListsFromDb() {
    LOG_JOURNAL(6, "loadCallListsFromDb - BEGIN");
    ListTransaction transaction(m_lists);
    readMissedCallList();
    readDialledCallList();
    readReceivedCallList();
    if (m_settings.values()->isSip()) {
        readForwardedCallList();
    }
    // A read may have failed, or found more rows than it returns.
    transaction.setLoaded(true);
    m_subscriptionNeedsLoad = false;
    LOG_JOURNAL(6, "loadCallListsFromDb - END");
}

// --- one list ---

template <typename Process>
void ListLoader::readList(const std::string& request, const char* operation, Process process) {
    const std::string response = m_adapter.processRequest(request);
    if (response != Helper::FAILED) {
        LOG_JOURNAL(6, "response from %s:%s\n", operation, response.c_str());
        (this->*process)(response);
    } else {
        ListTransaction(m_lists).setIncomplete();
    }
}

void ListLoader::readMissedCallList() {
    readList(Helper::readMissedCallList(), "readmissedcalllist", &ListLoader::processMissedCallDbXml);
}

void ListLoader::readDialledCallList() {
    readList(JournalServiceHelper::readDialledCallList(), "readDialledCallList",
             &ListLoader::processDialledCallDbXml);
}

void ListLoader::readReceivedCallList() {
    readList(JournalServiceHelper::readReceivedCallList(), "readReceivedCallList",
             &ListLoader::processReceivedCallDbXml);
}

void ListLoader::readForwardedCallList() {
    readList(JournalServiceHelper::readForwardedCallList(), "readForwardedCallList",
             &ListLoader::processForwardedCallDbXml);
}

void ListLoader::readCallBackList() {
    const std::string response = m_adapter.processRequest(JournalServiceHelper::readCallBackList());
    if (response != Helper::FAILED) {
        std::deque<CallBackItem> items;
        ListXml<CallBackItem>::kParse(response, items);
        replaceList(std::move(items));
    } else {
        ListTransaction(m_lists).setIncomplete();
    }
}

template <typename Item>
void ListLoader::replaceList(std::deque<Item> items) {
    ListTransaction transaction(m_lists);
    transaction.open<Item>().swap(items);
}

void ListLoader::processMissedCallDbXml(const std::string& xml) {
    const ListTransaction transaction(m_lists);
    std::deque<MissedCallItem> items;
    m_adapter.processMissedCallDbXml(xml, items);
    replaceList(std::move(items));
}

template <typename Item>
void ListLoader::populateFromXml(const std::string& xml) {
    const ListTransaction transaction(m_lists);
    std::deque<Item> items;
    ListXml<Item>::kParse(xml, items);
    normalize(items);
    replaceList(std::move(items));
}

void ListLoader::processDialledCallDbXml(const std::string& xml) {
    populateFromXml<DialledCallItem>(xml);
}

void ListLoader::processReceivedCallDbXml(const std::string& xml) {
    populateFromXml<ReceivedCallItem>(xml);
}

void ListLoader::processForwardedCallDbXml(const std::string& xml) {
    populateFromXml<ForwardedCallItem>(xml);
}

// --- the order of a loaded list ---

template <typename Item>
void ListLoader::normalize(std::deque<Item>& list) {
    using Names = NormalizeNames<Item>;
    LOG_JOURNAL(6, "before sort JournalService::%s: %s.size():%d\n", Names::kOperation, Names::kList,
                static_cast<int>(list.size()));
    std::sort(list.begin(), list.end(), isNewer<Item>);
    LOG_JOURNAL(6, "after sort JournalService::%s: %s.size():%d\n", Names::kOperation, Names::kList,
                static_cast<int>(list.size()));
    ListTransaction transaction(m_lists);
    for (Item& empty : takeItemsWithoutOccurrences(list)) {
        transaction.deleteRow(empty);
    }
}

void ListLoader::normalizeDialledCallList(std::deque<DialledCallItem>& list) {
    normalize(list);
}

void ListLoader::normalizeReceivedCallList(std::deque<ReceivedCallItem>& list) {
    normalize(list);
}

void ListLoader::normalizeForwardedCallList(std::deque<ForwardedCallItem>& list) {
    normalize(list);
}

}  // namespace journal
