#pragma once

#include <deque>
#include <string>
#include <vector>

#include "journal-items/Contact.h"
#include "journal-items/ListTraits.h"

namespace journal {

class JournalLists;

/// Reads the lists for clients. Thread-safe; each operation locks one list at a time.
class ListQueries {
public:
    /// `lists` is borrowed and outlives this object.
    explicit ListQueries(JournalLists& lists) : m_lists(lists) {}

    // Each replaces `list` by a copy.
    void getMissedCallList(std::deque<MissedCallItem>& list) { copyCalls(list); }
    void getDialledCallList(std::deque<DialledCallItem>& list) { copyCalls(list); }
    void getReceivedCallList(std::deque<ReceivedCallItem>& list) { copyCalls(list); }
    void getForwardedCallList(std::deque<ForwardedCallItem>& list) { copyCalls(list); }
    void getCallBackList(std::deque<CallBackItem>& list);

    // Each copies the entry of that id; false, with `item` unchanged, when there is none.
    bool getMissedCall(const std::string& entryId, MissedCallItem& item) { return find(entryId, item); }
    bool getDialledCall(const std::string& entryId, DialledCallItem& item) { return find(entryId, item); }
    bool getReceivedCall(const std::string& entryId, ReceivedCallItem& item) { return find(entryId, item); }
    bool getForwardedCall(const std::string& entryId, ForwardedCallItem& item) { return find(entryId, item); }

    /// Copies the newest dialled item; false, with `item` unchanged, when there is none.
    bool getLastDialledNumber(DialledCallItem& item);
    /// Appends the entries whose newest number is one of the contact's; false when there are none.
    bool getCallRecordsAssociatedWith(const Contact& contact, std::vector<Contact::CallRecord>& records);

    // Each returns a copy of the newest item, or a default item when the list is empty.
    MissedCallItem getFrontMissedCall();
    DialledCallItem getFrontDialledCall();
    ReceivedCallItem getFrontReceivedCall();
    ForwardedCallItem getFrontForwardedCall();
    CallBackItem getFrontCallbackCall();

private:
    template <typename Item>
    void copyCalls(std::deque<Item>& list);
    template <typename Item>
    bool find(const std::string& entryId, Item& item);

    JournalLists& m_lists;
};

}  // namespace journal
