#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <set>
#include <string>
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

    void setAnswer(bool answer);
    /// Runs inside every operation, after it is noted; it may throw.
    void setDuring(std::function<void()> during);

    /// The calls in order, each with its arguments: "getMissedCall(e1)", "deleteCalls({e1, e2}, true)".
    [[nodiscard]] std::vector<std::string> calls() const;
    /// The observers and items that came in, in order.
    [[nodiscard]] std::vector<JournalServiceObserverIfc*> observers() const;
    [[nodiscard]] std::vector<MissedCallItem> updatedItems() const;

    bool subscribeForJournalEvents(JournalServiceObserverIfc* observer) override;
    bool unsubscribeForJournalEvents(JournalServiceObserverIfc* observer) override;

    void getMissedCallList(std::deque<MissedCallItem>& list) override;
    bool getMissedCall(const std::string& entryId, MissedCallItem& item) override;
    void updateMissedCall(const MissedCallItem& item) override;
    bool setMissedCallListAsViewed(const std::set<std::string>& entryIds) override;
    void ageMissedCall(const std::string& entryId) override;
    bool deleteMissedCall(const std::string& entryId, bool isSendDeleteMissedCallRequest) override;
    bool deleteMissedCallList(const std::set<std::string>& entryIds) override;
    bool deleteMissedCallList() override;

    void getDialledCallList(std::deque<DialledCallItem>& list) override;
    bool getDialledCall(const std::string& entryId, DialledCallItem& item) override;
    bool deleteDialledCall(const std::string& entryId) override;
    bool deleteDialledCallList(const std::set<std::string>& entryIds) override;
    bool deleteDialledCallList() override;
    bool getLastDialledNumber(DialledCallItem& item) override;

    void getReceivedCallList(std::deque<ReceivedCallItem>& list) override;
    bool getReceivedCall(const std::string& entryId, ReceivedCallItem& item) override;
    bool deleteReceivedCall(const std::string& entryId) override;
    bool deleteReceivedCallList(const std::set<std::string>& entryIds) override;
    bool deleteReceivedCallList() override;

    void getForwardedCallList(std::deque<ForwardedCallItem>& list) override;
    bool getForwardedCall(const std::string& entryId, ForwardedCallItem& item) override;
    bool deleteForwardedCall(const std::string& entryId) override;
    bool deleteForwardedCallList(const std::set<std::string>& entryIds) override;
    bool deleteForwardedCallList() override;

    void getCallBackList(std::deque<CallBackItem>& list) override;
    bool deleteCallBack(const std::string& entryId) override;
    bool deleteCallBackList(const std::set<std::string>& entryIds) override;
    bool deleteCallBackList() override;

    bool deleteCalls(const std::set<std::string>& entryIds, bool isSendDeleteMissedCallRequest) override;
    bool deleteAllCalls() override;

    bool resetUserCalls() override;
    bool resetUserContacts() override;
    bool refreshCallLog() override;
    bool refreshCallLists() override;
    bool setJournalServiceCallLogEventsDisabling(const std::string& value) override;
    bool getCallRecordsAssociatedWith(const Contact& contact,
                                      std::vector<Contact::CallRecord>& records) override;

private:
    /// Notes a call, lets `during` run, and gives the told answer.
    bool note(std::string call);
    template <typename Item>
    bool find(const std::deque<Item>& list, const char* operation, const std::string& entryId, Item& item);

    // Guarded by m_mutex.
    mutable std::mutex m_mutex;
    std::vector<std::string> m_calls;
    std::vector<JournalServiceObserverIfc*> m_observers;
    std::vector<MissedCallItem> m_updatedItems;
    bool m_answer = true;
    std::function<void()> m_during;
};

}  // namespace journaltest
