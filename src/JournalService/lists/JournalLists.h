#pragma once

#include <algorithm>
#include <deque>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "journal-items/CallBackItem.h"
#include "journal-items/Contact.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"
#include "platform/sync/NestableSemaphore.h"
#include "src/JournalService/lists/CallLogRequests.h"
#include "src/JournalService/lists/JournalContacts.h"
#include "src/JournalService/lists/JournalList.h"
#include "src/JournalService/lists/ListOrder.h"
#include "src/JournalService/lists/UnloadedEntries.h"

class ObserverNotifierIfc;

namespace journal {

class PhoneSettings;

/// The five lists, and the contacts that came with them, with everything that clients may do to them. Every
/// change is mirrored to the database, reported to a switch that keeps the call log, and told to the
/// observers, in this order.
///
/// Threads: any. Changes are made and announced one at a time (`Change`), so that observers hear of them in
/// the order in which they happened and the last count that they hear is the right one; observers and
/// requests to the switch are called with no list lock held. Lock order: call map, change, notifier, one
/// list. Reading takes the list's lock alone.
class JournalLists {
public:
    /// Held by whoever changes lists, from before the first look at them until the observers have been told.
    /// The thread that holds one may open another. Never opened from inside an observer callback. What one
    /// change reports to the switch is one batch: a switch that does not answer is waited for once.
    class Change {
    public:
        explicit Change(JournalLists& lists) : m_section(lists.m_changeLock), m_batch(lists.m_requests) {}

    private:
        const CriticalSection<NestableSemaphore> m_section;
        const CallLogRequests::Batch m_batch;
    };

    /// All parts are borrowed and outlive this one.
    JournalLists(const PhoneSettings& settings, ListPersistence& persistence, const CallLogRequests& requests,
                 ObserverNotifierIfc& notifier)
        : m_settings(settings),
          m_persistence(persistence),
          m_requests(requests),
          m_notifier(notifier),
          m_olderEntries(persistence) {}
    JournalLists(const JournalLists&) = delete;
    JournalLists& operator=(const JournalLists&) = delete;
    ~JournalLists() = default;

    /// The list itself, for the parts that load it and that file calls in it.
    template <typename Item>
    [[nodiscard]] JournalList<Item>& list() {
        return std::get<JournalList<Item>>(m_lists);
    }
    [[nodiscard]] JournalContacts& contacts() noexcept { return m_contacts; }
    /// What the database holds beside the lists; for holders of a `Change`.
    [[nodiscard]] UnloadedEntries& olderEntries() noexcept { return m_olderEntries; }
    /// Brings the newest older entry that `matches` back into its list, to its place, unless the list has a
    /// match already: whoever changes a party's entry must find it there. For holders of a `Change`, but of
    /// no list.
    template <typename Item, typename Matches>
    void restore(Matches matches);

    // Reading.
    void getMissedCallList(std::deque<MissedCallItem>& list);
    void getDialledCallList(std::deque<DialledCallItem>& list);
    void getReceivedCallList(std::deque<ReceivedCallItem>& list);
    void getForwardedCallList(std::deque<ForwardedCallItem>& list);
    void getCallBackList(std::deque<CallBackItem>& list);
    bool getMissedCall(const std::string& entryId, MissedCallItem& item);
    bool getDialledCall(const std::string& entryId, DialledCallItem& item);
    bool getReceivedCall(const std::string& entryId, ReceivedCallItem& item);
    bool getForwardedCall(const std::string& entryId, ForwardedCallItem& item);
    bool getLastDialledNumber(DialledCallItem& item);
    bool getCallRecordsAssociatedWith(const Contact& contact, std::vector<Contact::CallRecord>& records);
    // A copy of the newest item, or a default item when the list is empty.
    MissedCallItem getFrontMissedCall() { return front<MissedCallItem>(); }
    DialledCallItem getFrontDialledCall() { return front<DialledCallItem>(); }
    ReceivedCallItem getFrontReceivedCall() { return front<ReceivedCallItem>(); }
    ForwardedCallItem getFrontForwardedCall() { return front<ForwardedCallItem>(); }
    CallBackItem getFrontCallbackCall() { return front<CallBackItem>(); }
    /// Missed items nobody has viewed, counted by the caller who holds the list.
    [[nodiscard]] static unsigned getUnviewedMissedCallsCount(const std::deque<MissedCallItem>& missed);
    /// The same, for callers that hold no list.
    [[nodiscard]] unsigned getUnviewedMissedCallsCount();

    // Changing missed items in place.
    void updateMissedCall(const MissedCallItem& item);
    bool setMissedCallListAsViewed(const std::set<std::string>& entryIds);
    void ageMissedCall(const std::string& entryId);

    // Deleting: one entry, a set of them, a whole list.
    bool deleteMissedCall(const std::string& entryId, bool isSendDeleteMissedCallRequest);
    bool deleteDialledCall(const std::string& entryId);
    bool deleteReceivedCall(const std::string& entryId);
    bool deleteForwardedCall(const std::string& entryId);
    bool deleteCallBack(const std::string& entryId);
    bool deleteMissedCallList(const std::set<std::string>& entryIds);
    bool deleteDialledCallList(const std::set<std::string>& entryIds);
    bool deleteReceivedCallList(const std::set<std::string>& entryIds);
    bool deleteForwardedCallList(const std::set<std::string>& entryIds);
    bool deleteCallBackList(const std::set<std::string>& entryIds);
    bool deleteMissedCallList();
    bool deleteDialledCallList();
    bool deleteReceivedCallList();
    bool deleteForwardedCallList();
    bool deleteCallBackList();
    bool deleteCalls(const std::set<std::string>& entryIds, bool isSendDeleteMissedCallRequest);
    bool deleteAllCalls();

    /// Offers every deletion and every item to the database again that it has refused. False when it still
    /// refuses an item.
    bool repeatRefused();

    // Ordering a list right after it was loaded; the caller holds the list. Items without occurrences go,
    // here and in the database.
    void normalizeDialledCallList(std::deque<DialledCallItem>& list);
    void normalizeReceivedCallList(std::deque<ReceivedCallItem>& list);
    void normalizeForwardedCallList(std::deque<ForwardedCallItem>& list);

private:
    template <typename Item>
    void copyList(std::deque<Item>& copy);
    template <typename Item>
    bool copyItem(const std::string& entryId, Item& item);
    template <typename Item>
    Item front();
    template <typename Item>
    std::vector<Item> copyItems(const std::set<std::string>& entryIds);
    template <typename Item>
    bool repeatRefusedOf();
    template <typename Item>
    void normalize(std::deque<Item>& list, const char* operation, const char* listName);

    template <typename Item>
    bool deleteOne(const char* operation, const std::string& entryId);
    template <typename Item>
    std::size_t deleteSet(const std::set<std::string>& entryIds);
    template <typename Item>
    void deleteWhole();
    // What a deletion tells the switch; no list lock is held.
    void reportDeleted(const MissedCallItem& item) const;
    void reportDeleted(const DialledCallItem& item) const;
    void reportDeleted(const ReceivedCallItem& item) const;
    void reportDeleted(const ForwardedCallItem& /*item*/) const {}
    void reportDeleted(const CallBackItem& /*item*/) const {}
    template <typename Item>
    bool hasEntries();
    template <typename Item>
    void reportCleared();
    // What a deletion tells the observers; no list lock is held.
    template <typename Item>
    void announceDeleted(const Item& deleted);
    template <typename Item>
    void announceSetDeleted();
    template <typename Item>
    void announceCleared();

    const PhoneSettings& m_settings;
    ListPersistence& m_persistence;
    const CallLogRequests& m_requests;
    ObserverNotifierIfc& m_notifier;

    NestableSemaphore m_changeLock;
    // Guarded by m_changeLock.
    UnloadedEntries m_olderEntries;

    // Each guarded by its own lock.
    std::tuple<JournalList<MissedCallItem>, JournalList<DialledCallItem>, JournalList<ReceivedCallItem>,
               JournalList<ForwardedCallItem>, JournalList<CallBackItem>>
        m_lists;

    JournalContacts m_contacts;
};

template <typename Item>
void JournalLists::copyList(std::deque<Item>& copy) {
    const auto items = list<Item>().access();
    copy = *items;
}

template <typename Item>
bool JournalLists::copyItem(const std::string& entryId, Item& item) {
    const auto items = list<Item>().access();
    const auto found = items.find(entryId);
    if (found == items->end()) {
        return false;
    }
    item = *found;
    return true;
}

template <typename Item, typename Matches>
void JournalLists::restore(Matches matches) {
    {
        const auto items = list<Item>().access();
        if (std::any_of(items->begin(), items->end(), matches)) {
            return;
        }
    }
    std::deque<Item>& older = m_olderEntries.of(list<Item>());
    const auto found = std::find_if(older.begin(), older.end(), matches);
    if (found != older.end()) {
        insertInOrder(*list<Item>().access(), std::move(*found));
        older.erase(found);
    }
}

template <typename Item>
Item JournalLists::front() {
    const auto items = list<Item>().access();
    return items->empty() ? Item() : items->front();
}

}  // namespace journal
