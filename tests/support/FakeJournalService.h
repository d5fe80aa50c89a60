#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "journalservice/JournalServiceIfc.h"
#include "platform/framework/Executable.h"

namespace journaltest {

/// A journal that records every call, for tests of the clients of a journal.
///
/// Lists are what the test put in; a get-one operation returns the entry with that id, or false. Every other
/// operation returns the value of `setResponse` (true by default) and changes no list. Set up before calls
/// may come; then any thread may call.
class FakeJournalService : public Executable, public JournalServiceIfc {
    template <typename Item>
    using List = std::deque<Item>;
    using Id = std::string;
    using Ids = std::set<std::string>;
    using Observer = JournalServiceObserverIfc;

public:
    struct Lists {
        List<MissedCallItem> missed;
        List<DialledCallItem> dialled;
        List<ReceivedCallItem> received;
        List<ForwardedCallItem> forwarded;
        List<CallBackItem> callBacks;
    };
    Lists lists;

    void setResponse(bool response) { m_response = response; }
    /// Runs inside every operation, after it is noted; it may throw.
    void setDuring(std::function<void()> during) { m_during = std::move(during); }

    /// The calls in order, each with its arguments: "getMissedCall(e1)", "deleteCalls({e1, e2}, true)".
    [[nodiscard]] const std::vector<std::string>& calls() const { return m_calls; }
    /// The observers that came in, in order.
    [[nodiscard]] const std::vector<Observer*>& observers() const { return m_observers; }

    bool subscribeForJournalEvents(Observer* observer) override { return note(__func__, observer); }
    bool unsubscribeForJournalEvents(Observer* observer) override { return note(__func__, observer); }

    void getMissedCallList(List<MissedCallItem>& list) override { give(__func__, lists.missed, list); }
    bool getMissedCall(const Id& id, MissedCallItem& item) override {
        return find(__func__, lists.missed, id, item);
    }
    void updateMissedCall(const MissedCallItem& item) override { note(__func__, item.getEntryId()); }
    bool setMissedCallListAsViewed(const Ids& ids) override { return note(__func__, ids); }
    void ageMissedCall(const Id& id) override { note(__func__, id); }
    bool deleteMissedCall(const Id& id, bool isSent) override { return note(__func__, id, isSent); }
    bool deleteMissedCallList(const Ids& ids) override { return note(__func__, ids); }
    bool deleteMissedCallList() override { return note(__func__); }

    void getDialledCallList(List<DialledCallItem>& list) override { give(__func__, lists.dialled, list); }
    bool getDialledCall(const Id& id, DialledCallItem& item) override {
        return find(__func__, lists.dialled, id, item);
    }
    bool deleteDialledCall(const Id& id) override { return note(__func__, id); }
    bool deleteDialledCallList(const Ids& ids) override { return note(__func__, ids); }
    bool deleteDialledCallList() override { return note(__func__); }
    bool getLastDialledNumber(DialledCallItem& item) override {
        note(__func__);
        item = lists.dialled.empty() ? item : lists.dialled.front();
        return !lists.dialled.empty();
    }

    void getReceivedCallList(List<ReceivedCallItem>& list) override { give(__func__, lists.received, list); }
    bool getReceivedCall(const Id& id, ReceivedCallItem& item) override {
        return find(__func__, lists.received, id, item);
    }
    bool deleteReceivedCall(const Id& id) override { return note(__func__, id); }
    bool deleteReceivedCallList(const Ids& ids) override { return note(__func__, ids); }
    bool deleteReceivedCallList() override { return note(__func__); }

    void getForwardedCallList(List<ForwardedCallItem>& list) override {
        give(__func__, lists.forwarded, list);
    }
    bool getForwardedCall(const Id& id, ForwardedCallItem& item) override {
        return find(__func__, lists.forwarded, id, item);
    }
    bool deleteForwardedCall(const Id& id) override { return note(__func__, id); }
    bool deleteForwardedCallList(const Ids& ids) override { return note(__func__, ids); }
    bool deleteForwardedCallList() override { return note(__func__); }

    void getCallBackList(List<CallBackItem>& list) override { give(__func__, lists.callBacks, list); }
    bool deleteCallBack(const Id& id) override { return note(__func__, id); }
    bool deleteCallBackList(const Ids& ids) override { return note(__func__, ids); }
    bool deleteCallBackList() override { return note(__func__); }

    bool deleteCalls(const Ids& ids, bool isSent) override { return note(__func__, ids, isSent); }
    bool deleteAllCalls() override { return note(__func__); }

    bool resetUserCalls() override { return note(__func__); }
    bool resetUserContacts() override { return note(__func__); }
    bool refreshCallLog() override { return note(__func__); }
    bool refreshCallLists() override { return note(__func__); }
    bool setJournalServiceCallLogEventsDisabling(const std::string& value) override {
        return note(__func__, value);
    }
    bool getCallRecordsAssociatedWith(const Contact& contact,
                                      std::vector<Contact::CallRecord>& /*records*/) override {
        return note(__func__, contact.getSearchNumber());
    }

    bool replaceEntry(const MissedCallItem& item, bool reports) override { return noteItem(item, reports); }
    bool replaceEntry(const DialledCallItem& item, bool reports) override { return noteItem(item, reports); }
    bool replaceEntry(const ReceivedCallItem& item, bool reports) override { return noteItem(item, reports); }
    bool replaceEntry(const ForwardedCallItem& item, bool reports) override {
        return noteItem(item, reports);
    }

private:
    [[nodiscard]] static std::string text(const std::string& word) { return word; }
    [[nodiscard]] static std::string text(bool flag) { return flag ? "true" : "false"; }
    [[nodiscard]] static std::string text(const Ids& ids) {
        std::string text;
        for (const Id& id : ids) {
            text += (text.empty() ? "" : ", ") + id;
        }
        return "{" + text + "}";
    }

    /// Notes a call, lets `during` run, and returns the response.
    template <typename... Arguments>
    bool note(const std::string& operation, const Arguments&... arguments) {
        std::string words;
        ((words += (words.empty() ? "" : ", ") + text(arguments)), ...);
        std::unique_lock lock(m_mutex);
        m_calls.push_back(operation + "(" + words + ")");
        lock.unlock();
        if (m_during) {
            m_during();
        }
        return m_response;
    }
    template <typename Item>
    bool noteItem(const Item& item, bool reports) {
        return note("replaceEntry", item.getUniqueId(), reports);
    }
    bool note(const char* operation, Observer* observer) {
        std::unique_lock lock(m_mutex);
        m_observers.push_back(observer);
        lock.unlock();
        return note(operation);
    }
    template <typename Item>
    void give(const char* operation, const List<Item>& list, List<Item>& copy) {
        note(operation);
        copy = list;
    }
    template <typename Item>
    bool find(const char* operation, const List<Item>& list, const Id& id, Item& item) {
        note(operation, id);
        const auto found = std::ranges::find(list, id, &Item::getEntryId);
        item = found == list.end() ? item : *found;
        return found != list.end();
    }

    // Constant while calls may come.
    bool m_response = true;
    std::function<void()> m_during;

    // Guarded by m_mutex; the test reads them while no other thread may call.
    std::mutex m_mutex;
    std::vector<std::string> m_calls;
    std::vector<Observer*> m_observers;
};

}  // namespace journaltest
