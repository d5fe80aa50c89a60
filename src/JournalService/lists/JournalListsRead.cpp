#include <algorithm>

#include "src/JournalService/base/Log.h"
#include "src/JournalService/lists/JournalLists.h"
#include "src/JournalService/lists/ListOrder.h"
#include "src/JournalService/lists/ListPersistence.h"

namespace journal {

namespace {

void logLookUp(const char* operation, bool found, const std::string& entryId) {
    LOG_JOURNAL(5, "JournalService::%s: entry %s entryId = %s", operation, found ? "found" : "not found",
                entryId.c_str());
}

// Whether a list entry's number is one of the contact's; an entry without a number belongs to nobody.
bool isNumberOf(const Contact& contact, const std::string& number) {
    return !number.empty() && (number == contact.getSearchNumber() || number == contact.getOffice() ||
                               number == contact.getMobile() || number == contact.getPrivate() ||
                               number == contact.getOffice2());
}

template <typename Item>
std::string numberOf(const Item& item) {
    return occurrencesOf(item).empty() ? std::string() : occurrencesOf(item).front().getNumber();
}

std::string numberOf(const CallBackItem& item) {
    return item.getNumber();
}

template <typename Item>
void addRecordsOf(const Contact& contact, JournalList<Item>& list, const char* type,
                  std::vector<Contact::CallRecord>& records) {
    const auto items = list.access();
    for (const Item& item : *items) {
        if (isNumberOf(contact, numberOf(item))) {
            records.push_back({item.getEntryId(), type});
        }
    }
}

}  // namespace

void JournalLists::getMissedCallList(std::deque<MissedCallItem>& list) {
    copyList(list);
    LOG_JOURNAL(6, "getMissedCallList[%d]", static_cast<int>(list.size()));
}

void JournalLists::getDialledCallList(std::deque<DialledCallItem>& list) {
    copyList(list);
    LOG_JOURNAL(6, "getDialledCallList[%d]", static_cast<int>(list.size()));
}

void JournalLists::getReceivedCallList(std::deque<ReceivedCallItem>& list) {
    copyList(list);
    LOG_JOURNAL(6, "getReceivedCallList[%d]", static_cast<int>(list.size()));
}

void JournalLists::getForwardedCallList(std::deque<ForwardedCallItem>& list) {
    copyList(list);
    LOG_JOURNAL(6, "getForwardedCallList[%d]", static_cast<int>(list.size()));
}

void JournalLists::getCallBackList(std::deque<CallBackItem>& list) {
    LOG_JOURNAL(6, "JournalService::getCallBackList()");
    copyList(list);
}

bool JournalLists::getMissedCall(const std::string& entryId, MissedCallItem& item) {
    const bool found = copyItem(entryId, item);
    logLookUp("getMissedCall", found, entryId);
    return found;
}

bool JournalLists::getDialledCall(const std::string& entryId, DialledCallItem& item) {
    const bool found = copyItem(entryId, item);
    logLookUp("getDialledCall", found, entryId);
    return found;
}

bool JournalLists::getReceivedCall(const std::string& entryId, ReceivedCallItem& item) {
    const bool found = copyItem(entryId, item);
    logLookUp("getReceivedall", found, entryId);
    return found;
}

bool JournalLists::getForwardedCall(const std::string& entryId, ForwardedCallItem& item) {
    const bool found = copyItem(entryId, item);
    logLookUp("getForwardedCall", found, entryId);
    return found;
}

bool JournalLists::getLastDialledNumber(DialledCallItem& item) {
    const auto items = list<DialledCallItem>().access();
    if (items->empty()) {
        return false;
    }
    item = items->front();
    return true;
}

bool JournalLists::getCallRecordsAssociatedWith(const Contact& contact,
                                                std::vector<Contact::CallRecord>& records) {
    const std::size_t before = records.size();
    addRecordsOf(contact, list<MissedCallItem>(), "missed", records);
    addRecordsOf(contact, list<DialledCallItem>(), "dialled", records);
    addRecordsOf(contact, list<ReceivedCallItem>(), "received", records);
    addRecordsOf(contact, list<ForwardedCallItem>(), "forwarded", records);
    addRecordsOf(contact, list<CallBackItem>(), "callback", records);
    return records.size() > before;
}

unsigned JournalLists::getUnviewedMissedCallsCount(const std::deque<MissedCallItem>& missed) {
    return static_cast<unsigned>(
        std::count_if(missed.begin(), missed.end(), [](const auto& item) { return !item.getViewed(); }));
}

unsigned JournalLists::getUnviewedMissedCallsCount() {
    const auto items = list<MissedCallItem>().access();
    return getUnviewedMissedCallsCount(*items);
}

template <typename Item>
void JournalLists::normalize(std::deque<Item>& list, const char* operation, const char* listName) {
    LOG_JOURNAL(6, "before sort JournalService::%s: %s.size():%d\n", operation, listName,
                static_cast<int>(list.size()));
    std::sort(list.begin(), list.end(), isNewer<Item>);
    LOG_JOURNAL(6, "after sort JournalService::%s: %s.size():%d\n", operation, listName,
                static_cast<int>(list.size()));
    for (Item& empty : takeItemsWithoutOccurrences(list)) {
        m_persistence.update(empty, CallListDatabaseAdapterHelper::DELETEREQUEST);
    }
}

void JournalLists::normalizeDialledCallList(std::deque<DialledCallItem>& list) {
    normalize(list, "normalizeDialledCallList", "m_DialledCallList");
}

void JournalLists::normalizeReceivedCallList(std::deque<ReceivedCallItem>& list) {
    normalize(list, "normalizeReceivedCallList", "m_ReceivedCallList");
}

void JournalLists::normalizeForwardedCallList(std::deque<ForwardedCallItem>& list) {
    normalize(list, "normalizeForwardedCallList", "m_ForwardedCallList");
}

template <typename Item>
bool JournalLists::repeatRefusedOf() {
    m_persistence.repeatDeletion<Item>();
    const auto items = list<Item>().access();
    // Up to the first that is refused again: a database that is locked lets each wait for seconds.
    return std::none_of(items->begin(), items->end(), [this](Item& item) {
        if (m_persistence.isRefused(item)) {
            m_persistence.update(item, CallListDatabaseAdapterHelper::WRITEREQUEST);
        }
        return m_persistence.isRefused(item);
    });
}

bool JournalLists::repeatRefused() {
    const Change change(*this);
    const bool taken = repeatRefusedOf<MissedCallItem>() && repeatRefusedOf<DialledCallItem>() &&
                       repeatRefusedOf<ReceivedCallItem>() && repeatRefusedOf<ForwardedCallItem>() &&
                       repeatRefusedOf<CallBackItem>();
    if (taken) {
        m_persistence.forgetRefused();
    }
    return taken;
}

}  // namespace journal
