#pragma once

#include <deque>

#include "src/JournalService/lists/ListQueries.h"
#include "tests/support/FakeJournalService.h"

namespace journaltest {

/// The reading half of the client interface over the lists alone: what the notifier and an observer need of a
/// journal. Everything else changes nothing. Any thread may call.
class ListsReader final : public FakeJournalService {
public:
    /// `journal` is borrowed and outlives the reader.
    explicit ListsReader(journal::JournalLists& journal) : m_queries(journal) {}

    void getMissedCallList(std::deque<MissedCallItem>& list) override { m_queries.getMissedCallList(list); }
    void getDialledCallList(std::deque<DialledCallItem>& list) override {
        m_queries.getDialledCallList(list);
    }
    void getReceivedCallList(std::deque<ReceivedCallItem>& list) override {
        m_queries.getReceivedCallList(list);
    }
    void getForwardedCallList(std::deque<ForwardedCallItem>& list) override {
        m_queries.getForwardedCallList(list);
    }
    void getCallBackList(std::deque<CallBackItem>& list) override { m_queries.getCallBackList(list); }
    bool getLastDialledNumber(DialledCallItem& item) override { return m_queries.getLastDialledNumber(item); }

private:
    journal::ListQueries m_queries;
};

}  // namespace journaltest
