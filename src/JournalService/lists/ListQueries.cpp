#include "src/JournalService/lists/ListQueries.h"

#include "journal-items/Occurrences.h"
#include "src/JournalService/base/Log.h"
#include "src/JournalService/lists/JournalLists.h"

namespace journal {

namespace {

/// The names of the operations in the log.
struct LogNames {
    const char* get;
    const char* getList;
};
template <typename Item>
constexpr LogNames kLogNames{};
template <>
constexpr LogNames kLogNames<MissedCallItem>{.get = "getMissedCall", .getList = "getMissedCallList"};
template <>
constexpr LogNames kLogNames<DialledCallItem>{.get = "getDialledCall", .getList = "getDialledCallList"};
template <>  // "getReceivedall" is written so
constexpr LogNames kLogNames<ReceivedCallItem>{.get = "getReceivedall", .getList = "getReceivedCallList"};
template <>
constexpr LogNames kLogNames<ForwardedCallItem>{.get = "getForwardedCall", .getList = "getForwardedCallList"};

// An entry without a number belongs to no contact.
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
void addRecordsOf(const Contact& contact, JournalLists& lists, const char* type,
                  std::vector<Contact::CallRecord>& records) {
    const auto items = lists.read<Item>();
    for (const Item& item : *items) {
        if (isNumberOf(contact, numberOf(item))) {
            records.push_back({item.getEntryId(), type});
        }
    }
}

}  // namespace

template <typename Item>
void ListQueries::copyCalls(std::deque<Item>& list) {
    list = *m_lists.read<Item>();
    LOG_JOURNAL(6, "%s[%d]", kLogNames<Item>.getList, static_cast<int>(list.size()));
}

template void ListQueries::copyCalls(std::deque<MissedCallItem>& list);
template void ListQueries::copyCalls(std::deque<DialledCallItem>& list);
template void ListQueries::copyCalls(std::deque<ReceivedCallItem>& list);
template void ListQueries::copyCalls(std::deque<ForwardedCallItem>& list);

void ListQueries::getCallBackList(std::deque<CallBackItem>& list) {
    LOG_JOURNAL(6, "JournalService::getCallBackList()");
    list = *m_lists.read<CallBackItem>();
}

template <typename Item>
bool ListQueries::find(const std::string& entryId, Item& item) {
    bool isFound = false;
    {
        const auto items = m_lists.read<Item>();
        const auto found = findEntry(*items, entryId);
        isFound = found != items->end();
        if (isFound) {
            item = *found;
        }
    }
    LOG_JOURNAL(5, "JournalService::%s: entry %s entryId = %s", kLogNames<Item>.get,
                isFound ? "found" : "not found", entryId.c_str());
    return isFound;
}

template bool ListQueries::find(const std::string& entryId, MissedCallItem& item);
template bool ListQueries::find(const std::string& entryId, DialledCallItem& item);
template bool ListQueries::find(const std::string& entryId, ReceivedCallItem& item);
template bool ListQueries::find(const std::string& entryId, ForwardedCallItem& item);

bool ListQueries::getLastDialledNumber(DialledCallItem& item) {
    const auto items = m_lists.read<DialledCallItem>();
    if (items->empty()) {
        return false;
    }
    item = items->front();
    return true;
}

bool ListQueries::getCallRecordsAssociatedWith(const Contact& contact,
                                               std::vector<Contact::CallRecord>& records) {
    const std::size_t before = records.size();
    addRecordsOf<MissedCallItem>(contact, m_lists, "missed", records);
    addRecordsOf<DialledCallItem>(contact, m_lists, "dialled", records);
    addRecordsOf<ReceivedCallItem>(contact, m_lists, "received", records);
    addRecordsOf<ForwardedCallItem>(contact, m_lists, "forwarded", records);
    addRecordsOf<CallBackItem>(contact, m_lists, "callback", records);
    return records.size() > before;
}

MissedCallItem ListQueries::getFrontMissedCall() {
    return m_lists.front<MissedCallItem>();
}

DialledCallItem ListQueries::getFrontDialledCall() {
    return m_lists.front<DialledCallItem>();
}

ReceivedCallItem ListQueries::getFrontReceivedCall() {
    return m_lists.front<ReceivedCallItem>();
}

ForwardedCallItem ListQueries::getFrontForwardedCall() {
    return m_lists.front<ForwardedCallItem>();
}

CallBackItem ListQueries::getFrontCallbackCall() {
    return m_lists.front<CallBackItem>();
}

}  // namespace journal
