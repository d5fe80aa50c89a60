#pragma once

#include <deque>
#include <set>
#include <string>
#include <vector>

#include "include/JournalServiceIfc.h"
#include "src/JournalService/JournalLists.h"

namespace journaltest {

/// The reading half of the client interface over the lists alone: what the notifier and an observer need of a journal.
/// Everything else answers false and does nothing. Any thread may call.
class ListsReader final : public JournalServiceIfc {
public:
    /// `lists` is borrowed and outlives the reader.
    explicit ListsReader(journal::JournalLists& lists) : m_lists(lists) {}

    void getMissedCallList(std::deque<MissedCallItem>& list) override { m_lists.getMissedCallList(list); }
    void getDialledCallList(std::deque<DialledCallItem>& list) override { m_lists.getDialledCallList(list); }
    void getReceivedCallList(std::deque<ReceivedCallItem>& list) override {
        m_lists.getReceivedCallList(list);
    }
    void getForwardedCallList(std::deque<ForwardedCallItem>& list) override {
        m_lists.getForwardedCallList(list);
    }
    void getCallBackList(std::deque<CallBackItem>& list) override { m_lists.getCallBackList(list); }
    bool getMissedCall(const std::string& id, MissedCallItem& item) override {
        return m_lists.getMissedCall(id, item);
    }
    bool getDialledCall(const std::string& id, DialledCallItem& item) override {
        return m_lists.getDialledCall(id, item);
    }
    bool getReceivedCall(const std::string& id, ReceivedCallItem& item) override {
        return m_lists.getReceivedCall(id, item);
    }
    bool getForwardedCall(const std::string& id, ForwardedCallItem& item) override {
        return m_lists.getForwardedCall(id, item);
    }
    bool getLastDialledNumber(DialledCallItem& item) override { return m_lists.getLastDialledNumber(item); }

    bool subscribeForJournalEvents(JournalServiceObserverIfc*) override { return false; }
    bool unsubscribeForJournalEvents(JournalServiceObserverIfc*) override { return false; }
    void updateMissedCall(const MissedCallItem&) override {}
    bool setMissedCallListAsViewed(const std::set<std::string>&) override { return false; }
    void ageMissedCall(const std::string&) override {}
    bool deleteMissedCall(const std::string&, bool) override { return false; }
    bool deleteMissedCallList(const std::set<std::string>&) override { return false; }
    bool deleteMissedCallList() override { return false; }
    bool deleteDialledCall(const std::string&) override { return false; }
    bool deleteDialledCallList(const std::set<std::string>&) override { return false; }
    bool deleteDialledCallList() override { return false; }
    bool deleteReceivedCall(const std::string&) override { return false; }
    bool deleteReceivedCallList(const std::set<std::string>&) override { return false; }
    bool deleteReceivedCallList() override { return false; }
    bool deleteForwardedCall(const std::string&) override { return false; }
    bool deleteForwardedCallList(const std::set<std::string>&) override { return false; }
    bool deleteForwardedCallList() override { return false; }
    bool deleteCallBack(const std::string&) override { return false; }
    bool deleteCallBackList(const std::set<std::string>&) override { return false; }
    bool deleteCallBackList() override { return false; }
    bool deleteCalls(const std::set<std::string>&, bool) override { return false; }
    bool deleteAllCalls() override { return false; }
    bool resetUserCalls() override { return false; }
    bool resetUserContacts() override { return false; }
    bool refreshCallLog() override { return false; }
    bool refreshCallLists() override { return false; }
    bool setJournalServiceCallLogEventsDisabling(const std::string&) override { return false; }
    bool getCallRecordsAssociatedWith(const Contact&, std::vector<Contact::CallRecord>&) override {
        return false;
    }

private:
    journal::JournalLists& m_lists;
};

}  // namespace journaltest
