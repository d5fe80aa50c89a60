#include "tests/support/FakeJournalService.h"

#include <algorithm>
#include <utility>

namespace journaltest {
namespace {

std::string set(const std::set<std::string>& entryIds) {
    std::string text;
    for (const std::string& entryId : entryIds) {
        text += (text.empty() ? "" : ", ") + entryId;
    }
    return "{" + text + "}";
}

std::string flag(bool value) {
    return value ? "true" : "false";
}

}  // namespace

void FakeJournalService::setAnswer(bool answer) {
    const std::lock_guard lock(m_mutex);
    m_answer = answer;
}

void FakeJournalService::setDuring(std::function<void()> during) {
    const std::lock_guard lock(m_mutex);
    m_during = std::move(during);
}

std::vector<std::string> FakeJournalService::calls() const {
    const std::lock_guard lock(m_mutex);
    return m_calls;
}

std::vector<JournalServiceObserverIfc*> FakeJournalService::observers() const {
    const std::lock_guard lock(m_mutex);
    return m_observers;
}

std::vector<MissedCallItem> FakeJournalService::updatedItems() const {
    const std::lock_guard lock(m_mutex);
    return m_updatedItems;
}

bool FakeJournalService::note(std::string call) {
    std::function<void()> during;
    bool answer = false;
    {
        const std::lock_guard lock(m_mutex);
        m_calls.push_back(std::move(call));
        during = m_during;
        answer = m_answer;
    }
    if (during) {
        during();
    }
    return answer;
}

template <typename Item>
bool FakeJournalService::find(const std::deque<Item>& list, const char* operation, const std::string& entryId,
                              Item& item) {
    note(std::string(operation) + "(" + entryId + ")");
    const auto found = std::find_if(list.begin(), list.end(),
                                    [&entryId](const Item& held) { return held.getEntryId() == entryId; });
    if (found == list.end()) {
        return false;
    }
    item = *found;
    return true;
}

bool FakeJournalService::subscribeForJournalEvents(JournalServiceObserverIfc* observer) {
    {
        const std::lock_guard lock(m_mutex);
        m_observers.push_back(observer);
    }
    return note("subscribeForJournalEvents");
}

bool FakeJournalService::unsubscribeForJournalEvents(JournalServiceObserverIfc* observer) {
    {
        const std::lock_guard lock(m_mutex);
        m_observers.push_back(observer);
    }
    return note("unsubscribeForJournalEvents");
}

void FakeJournalService::getMissedCallList(std::deque<MissedCallItem>& list) {
    note("getMissedCallList()");
    list = lists.missed;
}

bool FakeJournalService::getMissedCall(const std::string& entryId, MissedCallItem& item) {
    return find(lists.missed, "getMissedCall", entryId, item);
}

void FakeJournalService::updateMissedCall(const MissedCallItem& item) {
    {
        const std::lock_guard lock(m_mutex);
        m_updatedItems.push_back(item);
    }
    note("updateMissedCall(" + item.getEntryId() + ")");
}

bool FakeJournalService::setMissedCallListAsViewed(const std::set<std::string>& entryIds) {
    return note("setMissedCallListAsViewed(" + set(entryIds) + ")");
}

void FakeJournalService::ageMissedCall(const std::string& entryId) {
    note("ageMissedCall(" + entryId + ")");
}

bool FakeJournalService::deleteMissedCall(const std::string& entryId, bool isSendDeleteMissedCallRequest) {
    return note("deleteMissedCall(" + entryId + ", " + flag(isSendDeleteMissedCallRequest) + ")");
}

bool FakeJournalService::deleteMissedCallList(const std::set<std::string>& entryIds) {
    return note("deleteMissedCallList(" + set(entryIds) + ")");
}

bool FakeJournalService::deleteMissedCallList() {
    return note("deleteMissedCallList()");
}

void FakeJournalService::getDialledCallList(std::deque<DialledCallItem>& list) {
    note("getDialledCallList()");
    list = lists.dialled;
}

bool FakeJournalService::getDialledCall(const std::string& entryId, DialledCallItem& item) {
    return find(lists.dialled, "getDialledCall", entryId, item);
}

bool FakeJournalService::deleteDialledCall(const std::string& entryId) {
    return note("deleteDialledCall(" + entryId + ")");
}

bool FakeJournalService::deleteDialledCallList(const std::set<std::string>& entryIds) {
    return note("deleteDialledCallList(" + set(entryIds) + ")");
}

bool FakeJournalService::deleteDialledCallList() {
    return note("deleteDialledCallList()");
}

bool FakeJournalService::getLastDialledNumber(DialledCallItem& item) {
    note("getLastDialledNumber()");
    if (lists.dialled.empty()) {
        return false;
    }
    item = lists.dialled.front();
    return true;
}

void FakeJournalService::getReceivedCallList(std::deque<ReceivedCallItem>& list) {
    note("getReceivedCallList()");
    list = lists.received;
}

bool FakeJournalService::getReceivedCall(const std::string& entryId, ReceivedCallItem& item) {
    return find(lists.received, "getReceivedCall", entryId, item);
}

bool FakeJournalService::deleteReceivedCall(const std::string& entryId) {
    return note("deleteReceivedCall(" + entryId + ")");
}

bool FakeJournalService::deleteReceivedCallList(const std::set<std::string>& entryIds) {
    return note("deleteReceivedCallList(" + set(entryIds) + ")");
}

bool FakeJournalService::deleteReceivedCallList() {
    return note("deleteReceivedCallList()");
}

void FakeJournalService::getForwardedCallList(std::deque<ForwardedCallItem>& list) {
    note("getForwardedCallList()");
    list = lists.forwarded;
}

bool FakeJournalService::getForwardedCall(const std::string& entryId, ForwardedCallItem& item) {
    return find(lists.forwarded, "getForwardedCall", entryId, item);
}

bool FakeJournalService::deleteForwardedCall(const std::string& entryId) {
    return note("deleteForwardedCall(" + entryId + ")");
}

bool FakeJournalService::deleteForwardedCallList(const std::set<std::string>& entryIds) {
    return note("deleteForwardedCallList(" + set(entryIds) + ")");
}

bool FakeJournalService::deleteForwardedCallList() {
    return note("deleteForwardedCallList()");
}

void FakeJournalService::getCallBackList(std::deque<CallBackItem>& list) {
    note("getCallBackList()");
    list = lists.callBacks;
}

bool FakeJournalService::deleteCallBack(const std::string& entryId) {
    return note("deleteCallBack(" + entryId + ")");
}

bool FakeJournalService::deleteCallBackList(const std::set<std::string>& entryIds) {
    return note("deleteCallBackList(" + set(entryIds) + ")");
}

bool FakeJournalService::deleteCallBackList() {
    return note("deleteCallBackList()");
}

bool FakeJournalService::deleteCalls(const std::set<std::string>& entryIds,
                                     bool isSendDeleteMissedCallRequest) {
    return note("deleteCalls(" + set(entryIds) + ", " + flag(isSendDeleteMissedCallRequest) + ")");
}

bool FakeJournalService::deleteAllCalls() {
    return note("deleteAllCalls()");
}

bool FakeJournalService::resetUserCalls() {
    return note("resetUserCalls()");
}

bool FakeJournalService::resetUserContacts() {
    return note("resetUserContacts()");
}

bool FakeJournalService::refreshCallLog() {
    return note("refreshCallLog()");
}

bool FakeJournalService::refreshCallLists() {
    return note("refreshCallLists()");
}

bool FakeJournalService::setJournalServiceCallLogEventsDisabling(const std::string& value) {
    return note("setJournalServiceCallLogEventsDisabling(" + value + ")");
}

bool FakeJournalService::getCallRecordsAssociatedWith(const Contact& contact,
                                                      std::vector<Contact::CallRecord>& records) {
    static_cast<void>(records);
    return note("getCallRecordsAssociatedWith(" + contact.getSearchNumber() + ")");
}

}  // namespace journaltest
