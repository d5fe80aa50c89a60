#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "include/JournalServiceIfc.h"
#include "platform/framework/Executable.h"

namespace journaltest {

/// A journal that notes every call and answers as it was told, for tests of those who stand in front of a journal.
///
/// Lists are what the test put in; a get-one operation answers the entry with that id, or false. Every other
/// operation answers `setAnswer`'s value (true untold) and changes nothing. Any thread may call.
class FakeJournalService final : public Executable, public JournalServiceIfc {
public:
    /// What the lists hold. Set it before calls may come; it is read without a lock.
    struct Lists {
        std::deque<MissedCallItem> missed;
        std::deque<DialledCallItem> dialled;
        std::deque<ReceivedCallItem> received;
        std::deque<ForwardedCallItem> forwarded;
        std::deque<CallBackItem> callBacks;
    };
    Lists lists;

    void setAnswer(bool answer) {
        const std::lock_guard lock(m_mutex);
        m_answer = answer;
    }
    /// Runs inside every operation, after it is noted; it may throw.
    void setDuring(std::function<void()> during) {
        const std::lock_guard lock(m_mutex);
        m_during = std::move(during);
    }

    /// The calls in order, each with its arguments: "getMissedCall(e1)", "deleteCalls({e1, e2}, true)".
    [[nodiscard]] std::vector<std::string> calls() const {
        const std::lock_guard lock(m_mutex);
        return m_calls;
    }
    /// The observers and items that came in, in order.
    [[nodiscard]] std::vector<JournalServiceObserverIfc*> observers() const {
        const std::lock_guard lock(m_mutex);
        return m_observers;
    }
    [[nodiscard]] std::vector<MissedCallItem> updatedItems() const {
        const std::lock_guard lock(m_mutex);
        return m_updatedItems;
    }

    bool subscribeForJournalEvents(JournalServiceObserverIfc* observer) override {
        {
            const std::lock_guard lock(m_mutex);
            m_observers.push_back(observer);
        }
        return note("subscribeForJournalEvents");
    }
    bool unsubscribeForJournalEvents(JournalServiceObserverIfc* observer) override {
        {
            const std::lock_guard lock(m_mutex);
            m_observers.push_back(observer);
        }
        return note("unsubscribeForJournalEvents");
    }

    void getMissedCallList(std::deque<MissedCallItem>& list) override {
        note("getMissedCallList()");
        list = lists.missed;
    }
    bool getMissedCall(const std::string& entryId, MissedCallItem& item) override {
        return find(lists.missed, "getMissedCall", entryId, item);
    }
    void updateMissedCall(const MissedCallItem& item) override {
        {
            const std::lock_guard lock(m_mutex);
            m_updatedItems.push_back(item);
        }
        note("updateMissedCall(" + item.getEntryId() + ")");
    }
    bool setMissedCallListAsViewed(const std::set<std::string>& entryIds) override {
        return note("setMissedCallListAsViewed(" + set(entryIds) + ")");
    }
    void ageMissedCall(const std::string& entryId) override { note("ageMissedCall(" + entryId + ")"); }
    bool deleteMissedCall(const std::string& entryId, bool isSendDeleteMissedCallRequest) override {
        return note("deleteMissedCall(" + entryId + ", " + flag(isSendDeleteMissedCallRequest) + ")");
    }
    bool deleteMissedCallList(const std::set<std::string>& entryIds) override {
        return note("deleteMissedCallList(" + set(entryIds) + ")");
    }
    bool deleteMissedCallList() override { return note("deleteMissedCallList()"); }

    void getDialledCallList(std::deque<DialledCallItem>& list) override {
        note("getDialledCallList()");
        list = lists.dialled;
    }
    bool getDialledCall(const std::string& entryId, DialledCallItem& item) override {
        return find(lists.dialled, "getDialledCall", entryId, item);
    }
    bool deleteDialledCall(const std::string& entryId) override {
        return note("deleteDialledCall(" + entryId + ")");
    }
    bool deleteDialledCallList(const std::set<std::string>& entryIds) override {
        return note("deleteDialledCallList(" + set(entryIds) + ")");
    }
    bool deleteDialledCallList() override { return note("deleteDialledCallList()"); }
    bool getLastDialledNumber(DialledCallItem& item) override {
        note("getLastDialledNumber()");
        if (lists.dialled.empty()) {
            return false;
        }
        item = lists.dialled.front();
        return true;
    }

    void getReceivedCallList(std::deque<ReceivedCallItem>& list) override {
        note("getReceivedCallList()");
        list = lists.received;
    }
    bool getReceivedCall(const std::string& entryId, ReceivedCallItem& item) override {
        return find(lists.received, "getReceivedCall", entryId, item);
    }
    bool deleteReceivedCall(const std::string& entryId) override {
        return note("deleteReceivedCall(" + entryId + ")");
    }
    bool deleteReceivedCallList(const std::set<std::string>& entryIds) override {
        return note("deleteReceivedCallList(" + set(entryIds) + ")");
    }
    bool deleteReceivedCallList() override { return note("deleteReceivedCallList()"); }

    void getForwardedCallList(std::deque<ForwardedCallItem>& list) override {
        note("getForwardedCallList()");
        list = lists.forwarded;
    }
    bool getForwardedCall(const std::string& entryId, ForwardedCallItem& item) override {
        return find(lists.forwarded, "getForwardedCall", entryId, item);
    }
    bool deleteForwardedCall(const std::string& entryId) override {
        return note("deleteForwardedCall(" + entryId + ")");
    }
    bool deleteForwardedCallList(const std::set<std::string>& entryIds) override {
        return note("deleteForwardedCallList(" + set(entryIds) + ")");
    }
    bool deleteForwardedCallList() override { return note("deleteForwardedCallList()"); }

    void getCallBackList(std::deque<CallBackItem>& list) override {
        note("getCallBackList()");
        list = lists.callBacks;
    }
    bool deleteCallBack(const std::string& entryId) override {
        return note("deleteCallBack(" + entryId + ")");
    }
    bool deleteCallBackList(const std::set<std::string>& entryIds) override {
        return note("deleteCallBackList(" + set(entryIds) + ")");
    }
    bool deleteCallBackList() override { return note("deleteCallBackList()"); }

    bool deleteCalls(const std::set<std::string>& entryIds, bool isSendDeleteMissedCallRequest) override {
        return note("deleteCalls(" + set(entryIds) + ", " + flag(isSendDeleteMissedCallRequest) + ")");
    }
    bool deleteAllCalls() override { return note("deleteAllCalls()"); }

    bool resetUserCalls() override { return note("resetUserCalls()"); }
    bool resetUserContacts() override { return note("resetUserContacts()"); }
    bool refreshCallLog() override { return note("refreshCallLog()"); }
    bool refreshCallLists() override { return note("refreshCallLists()"); }
    bool setJournalServiceCallLogEventsDisabling(const std::string& value) override {
        return note("setJournalServiceCallLogEventsDisabling(" + value + ")");
    }
    bool getCallRecordsAssociatedWith(const Contact& contact,
                                      std::vector<Contact::CallRecord>& records) override {
        static_cast<void>(records);
        return note("getCallRecordsAssociatedWith(" + contact.getSearchNumber() + ")");
    }

private:
    [[nodiscard]] static std::string set(const std::set<std::string>& entryIds) {
        std::string text;
        for (const std::string& entryId : entryIds) {
            text += (text.empty() ? "" : ", ") + entryId;
        }
        return "{" + text + "}";
    }
    [[nodiscard]] static std::string flag(bool value) { return value ? "true" : "false"; }

    /// Notes a call, lets `during` run, and gives the told answer.
    bool note(std::string call) {
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
    bool find(const std::deque<Item>& list, const char* operation, const std::string& entryId, Item& item) {
        note(std::string(operation) + "(" + entryId + ")");
        const auto found = std::find_if(
            list.begin(), list.end(), [&entryId](const Item& held) { return held.getEntryId() == entryId; });
        if (found == list.end()) {
            return false;
        }
        item = *found;
        return true;
    }

    // Guarded by m_mutex.
    mutable std::mutex m_mutex;
    std::vector<std::string> m_calls;
    std::vector<JournalServiceObserverIfc*> m_observers;
    std::vector<MissedCallItem> m_updatedItems;
    bool m_answer = true;
    std::function<void()> m_during;
};

}  // namespace journaltest
