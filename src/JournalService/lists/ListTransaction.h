#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/sync/CriticalSection.h"
#include "platform/sync/NestableSemaphore.h"
#include "platform/sync/Semaphore.h"
#include "src/JournalService/lists/CallLogRequests.h"
#include "src/JournalService/lists/JournalLists.h"
#include "src/JournalService/lists/ListOrder.h"
#include "src/JournalService/lists/ListPersistence.h"

namespace journal {

/// One change of the lists. Every change goes through this class, in these steps:
///  1. The constructor takes the change lock: changes are made and announced one at a time, so that observers
///     receive them in the order in which they happened, and the last count that they receive is the right
///     one.
///  2. `openLoaded` loads the lists unless they were loaded before: a change must find the entry that a
///     party has in the database. Lists that were unloaded are loaded by each operation that reads or opens
///     one.
///  3. It and `open` restore an entry that matches and is not loaded, lock the list and return its items. The
///     caller finds and changes what it is about.
///  4. `write`, `remove` and the other operations on open items carry the change to the database at once,
///     since a written item takes the unique id of its row.
///  5. `requests` releases the list and gives the requests to a switch that keeps the call log. A deletion is
///     reported before the list is opened, every other change after it.
///  6. `commit` releases the list and notifies the observers.
///
/// A transaction that is left without `commit` releases its locks and notifies no observer; what was written
/// stays written. A transaction inside another one of the same thread makes its own notifications.
///
/// Lives on the stack of one thread. Lock order: call map, change lock, notifier, one list. Do not construct
/// one inside an observer callback or while a list is locked for reading.
class ListTransaction {
public:
    /// `lists` is borrowed for the transaction's life.
    explicit ListTransaction(JournalLists& lists) : m_lists(lists), m_change(lists.m_changeLock) {}
    ListTransaction(const ListTransaction&) = delete;
    ListTransaction& operator=(const ListTransaction&) = delete;
    ~ListTransaction() = default;

    // Preparation, before a list is opened. Requires: no list is locked.

    /// Records that the lists were loaded; `mayHaveMore` is true when the database may hold entries that are
    /// not loaded.
    void setLoaded(bool mayHaveMore) {
        m_lists.m_unloadedEntries.setLoaded(mayHaveMore);
        m_lists.m_entryIds.forget();
    }
    void ensureLoaded() { m_lists.ensureLoaded(); }
    /// For its scope, the thread of the transaction reads and opens the lists as they are in memory.
    class Load {
    public:
        explicit Load(ListTransaction& transaction);
        Load(const Load&) = delete;
        Load& operator=(const Load&) = delete;
        ~Load() { m_lists.m_isLoading = false; }
        /// The lists are loaded, unless a read has failed: then lists that were unloaded stay so, and the
        /// next operation that needs them tries again.
        void finish();

    private:
        JournalLists& m_lists;
    };
    /// A read of the load has failed.
    void setIncomplete() { m_lists.m_isIncomplete = true; }
    /// Empties the lists and the contacts in memory. Returns false if they are not loaded at first need, or
    /// have an item that the database has rejected; they are kept then.
    [[nodiscard]] bool unload();
    /// Retries the deletions and the writes that the database rejected. Returns false if the database still
    /// rejects an item.
    [[nodiscard]] bool retryRejected();
    /// The entries of the list that are in the database and not loaded, newest first.
    template <typename Item>
    [[nodiscard]] const std::deque<Item>& unloaded() {
        return m_lists.m_unloadedEntries.entriesOf(list<Item>());
    }
    /// Returns `entryId`, or the next id with the same time that no entry of any list has, loaded or not: an
    /// entry id identifies one entry of the journal, and the call ids that it is made from may not be
    /// numbers. An entry that is about to be merged counts, so it gets another id than it had. Loads the
    /// lists unless they were loaded before, and releases the list that is open, if any.
    [[nodiscard]] std::string makeUniqueEntryId(const std::string& entryId);
    /// Locks the list and returns its items. They are valid until the list is closed or the transaction ends.
    template <typename Item>
    [[nodiscard]] std::deque<Item>& open();
    /// The same, after moving the newest unloaded entry that `matches` to its place in the list, unless the
    /// list has a match.
    template <typename Item, typename Matches>
    [[nodiscard]] std::deque<Item>& open(const Matches& matches);
    /// The same, after loading the lists unless they were loaded before.
    template <typename Item, typename Matches>
    [[nodiscard]] std::deque<Item>& openLoaded(const Matches& matches) {
        ensureLoaded();
        return open<Item>(matches);
    }
    template <typename Item>
    [[nodiscard]] std::deque<Item>& openLoaded() {
        ensureLoaded();
        return open<Item>();
    }
    /// As `openLoaded`, to file an entry with an id of `makeUniqueEntryId`: the ids that are taken stay
    /// known, so the caller reports each id that the list loses or does not use to `releaseEntryId`. `found`
    /// is the first item that `matches`, or the end. Requires: only items of `party` (`partyOf`) match.
    template <typename Item>
    struct FoundItem {
        std::deque<Item>& items;
        typename std::deque<Item>::iterator found;
    };
    template <typename Item, typename Matches>
    [[nodiscard]] FoundItem<Item> openToFile(const std::string& party, const Matches& matches);
    /// Call it when the list has lost the found item, if any, has the filed one at its front, and is limited:
    /// the next `openToFile` need not read all items.
    template <typename Item>
    void recordFiled(const std::deque<Item>& items) {
        list<Item>().m_parties.record(items);
    }
    void releaseEntryId(const std::string& entryId) { m_lists.m_entryIds.release(entryId); }

    // Changes of open items. Requires: the list of the item is open.

    /// Writes the item to the database. A new item takes the unique id of its row.
    template <typename Item>
    void write(Item& item) {
        m_lists.m_persistence.update(item, RequestType::eWrite);
    }
    /// Writes items that have a row already, in one request.
    template <typename Item>
    void rewrite(const std::vector<const Item*>& items) {
        m_lists.m_persistence.rewrite(items);
    }
    /// Deletes the item's row; the caller takes the item out of the list.
    template <typename Item>
    void deleteRow(Item& item) {
        m_lists.m_persistence.update(item, RequestType::eDelete);
    }
    /// Deletes the item's row and the item.
    template <typename Item>
    void remove(std::deque<Item>& items, typename std::deque<Item>::iterator position) {
        deleteRow(*position);
        items.erase(position);
    }
    /// Deletes the entries of these ids, in one request; `removed` are copies of them.
    template <typename Item>
    void removeSet(std::deque<Item>& items, const std::set<std::string>& entryIds,
                   const std::vector<Item>& removed);
    /// Deletes every entry of the list, the unloaded ones too.
    template <typename Item>
    void clear(std::deque<Item>& items);
    /// Deletes the oldest entries beyond `kMaxItems`, the unloaded ones too, and returns them, oldest first.
    template <typename Item>
    [[nodiscard]] std::vector<Item> dropOldest(std::deque<Item>& items);
    /// The same of a list that is not open, and opens it.
    template <typename Item>
    [[nodiscard]] std::vector<Item> dropOldest() {
        close();
        return dropOldest(lock<Item>());
    }

    // Completion.

    /// Releases the list that is open, if any.
    void close() noexcept { m_openList.reset(); }
    /// Releases the list; each request waits for the response of the switch.
    [[nodiscard]] const CallLogRequests& requests() noexcept {
        close();
        return m_lists.m_requests;
    }
    /// Releases the list and calls `announce` with the notifier.
    template <typename Announce>
    void commit(const Announce& announce) {
        close();
        announce(m_lists.m_notifier);
    }

private:
    /// Releases the lock of a list. A `CriticalSection` in an optional would do, but g++ 12 warns of it.
    struct Signal {
        void operator()(Semaphore* lock) const noexcept { lock->signal(); }
    };

    template <typename Item>
    void emptyList();
    template <typename Item>
    [[nodiscard]] JournalList<Item>& list() noexcept {
        return std::get<JournalList<Item>>(m_lists.m_lists);
    }
    template <typename Item, typename Matches>
    void restore(const Matches& matches);
    template <typename Item>
    [[nodiscard]] bool retryRejectedOf();
    /// Locks the list.
    template <typename Item>
    [[nodiscard]] std::deque<Item>& lock();
    /// The same, to find a party's item.
    template <typename Item>
    [[nodiscard]] JournalList<Item>& lockToFind();
    /// Adds the entry ids of one list, loaded or not, to the record. Returns false if the table could not be
    /// read.
    template <typename Item>
    bool addEntryIds();

    JournalLists& m_lists;
    const CriticalSection<NestableSemaphore> m_change;
    /// Holds the lock of the open list.
    std::unique_ptr<Semaphore, Signal> m_openList;
};

template <typename Item>
std::deque<Item>& ListTransaction::open() {
    m_lists.m_entryIds.forget();
    return lock<Item>();
}

template <typename Item>
std::deque<Item>& ListTransaction::lock() {
    JournalList<Item>& opened = lockToFind<Item>();
    opened.m_parties.forget();
    return opened.m_items;
}

template <typename Item>
JournalList<Item>& ListTransaction::lockToFind() {
    JournalList<Item>& opened = list<Item>();
    close();
    if (m_lists.isUnloaded()) {
        ensureLoaded();
    }
    opened.m_lock.wait();
    m_openList.reset(&opened.m_lock);
    return opened;
}

template <typename Item, typename Matches>
std::deque<Item>& ListTransaction::open(const Matches& matches) {
    restore<Item>(matches);
    return open<Item>();
}

template <typename Item, typename Matches>
ListTransaction::FoundItem<Item> ListTransaction::openToFile(const std::string& party,
                                                             const Matches& matches) {
    ensureLoaded();
    if (!m_lists.m_unloadedEntries.areKnown<Item>() || !unloaded<Item>().empty()) {
        restore<Item>(matches);
    }
    JournalList<Item>& opened = lockToFind<Item>();
    std::deque<Item>& items = opened.m_items;
    const std::size_t found = opened.m_parties.find(items, party, matches);
    return {items, items.begin() + static_cast<std::ptrdiff_t>(found)};
}

template <typename Item, typename Matches>
void ListTransaction::restore(const Matches& matches) {
    {
        const auto items = m_lists.read<Item>();
        if (std::any_of(items->begin(), items->end(), matches)) {
            return;
        }
    }
    std::deque<Item>& unloadedItems = m_lists.m_unloadedEntries.entriesOf(list<Item>());
    const auto found = std::find_if(unloadedItems.begin(), unloadedItems.end(), matches);
    if (found != unloadedItems.end()) {
        insertInOrder(lock<Item>(), std::move(*found));
        close();
        unloadedItems.erase(found);
    }
}

template <typename Item>
void ListTransaction::removeSet(std::deque<Item>& items, const std::set<std::string>& entryIds,
                                const std::vector<Item>& removed) {
    std::erase_if(items, [&entryIds](const Item& item) { return entryIds.contains(item.getEntryId()); });
    m_lists.m_persistence.deleteRows(removed);
}

template <typename Item>
void ListTransaction::clear(std::deque<Item>& items) {
    items.clear();
    m_lists.m_unloadedEntries.clear<Item>();
    m_lists.m_persistence.clearTable<Item>();
}

template <typename Item>
std::vector<Item> ListTransaction::dropOldest(std::deque<Item>& items) {
    std::vector<Item> dropped = m_lists.m_unloadedEntries.takeBeyond(kMaxItems, items);
    for (Item& oldest : dropped) {
        deleteRow(oldest);
        releaseEntryId(oldest.getEntryId());
    }
    return dropped;
}

}  // namespace journal
