#pragma once

#include <atomic>
#include <deque>
#include <string>
#include <tuple>
#include <vector>

#include "journal-items/Contact.h"
#include "journal-items/ListTraits.h"
#include "platform/sync/NestableSemaphore.h"
#include "platform/sync/Semaphore.h"
#include "src/JournalService/lists/EntryIdRecord.h"
#include "src/JournalService/lists/JournalList.h"
#include "src/JournalService/lists/UnloadedEntries.h"

class ObserverNotifierIfc;

namespace journal {

class CallLogRequests;
class ListPersistence;
class ListSourceIfc;

/// The contacts that were loaded with the lists, in the order in which they were loaded. Thread-safe.
class JournalContacts {
public:
    void getContactList(std::vector<Contact>& contacts);
    void swap(std::vector<Contact>& contacts);
    void clear();

private:
    Semaphore m_contactLock{1, 1, true};
    // Guarded by m_contactLock.
    std::vector<Contact> m_contacts;
};

/// The five lists, the contacts that are loaded with them, and the destinations of each change: the database,
/// a switch that keeps the call log, and the observers.
///
/// Thread-safe. Lock order: call map, change lock, notifier, one list. A reader takes the list's lock alone;
/// every change is a `ListTransaction`, which takes the change lock.
class JournalLists {
public:
    /// All references are borrowed and outlive this object.
    JournalLists(ListPersistence& persistence, const CallLogRequests& requests, ObserverNotifierIfc& notifier)
        : m_persistence(persistence),
          m_requests(requests),
          m_notifier(notifier),
          m_unloadedEntries(persistence) {}
    JournalLists(const JournalLists&) = delete;
    JournalLists& operator=(const JournalLists&) = delete;
    ~JournalLists() = default;

    /// Sets the source that `ListTransaction::openLoaded` loads from; it is borrowed. Without one the
    /// lists are complete as they are. Call before any other thread uses the lists.
    void setSource(ListSourceIfc& source) noexcept { m_source = &source; }

    /// From here on the lists are loaded at first need, see `ListTransaction`. Call before any other thread
    /// uses the lists.
    void loadAtFirstNeed() noexcept { m_loadsAtFirstNeed = m_isUnloaded = true; }
    [[nodiscard]] bool isUnloaded() const noexcept { return m_isUnloaded; }

    /// The items of one list, locked for the scope of the result. Loads the lists if they are unloaded.
    template <typename Item>
    [[nodiscard]] typename JournalList<Item>::Reader read() {
        return typename JournalList<Item>::Reader(
            std::get<JournalList<Item>>(m_lists), [this] { return isUnloaded(); },
            [this] { return loadToRead(); });
    }
    /// A copy of the newest item, or a default item when the list is empty.
    template <typename Item>
    [[nodiscard]] Item front() {
        const auto items = read<Item>();
        return items->empty() ? Item() : items->front();
    }
    /// The number of missed items that are not viewed.
    [[nodiscard]] unsigned getUnviewedMissedCallsCount();
    [[nodiscard]] static unsigned getUnviewedMissedCallsCount(const std::deque<MissedCallItem>& missed);

    [[nodiscard]] JournalContacts& contacts() noexcept { return m_contacts; }
    /// Loads the lists, and the contacts with them, if they are unloaded. False if they are so afterwards.
    bool loadToRead();

private:
    friend class ListTransaction;

    /// Loads the lists if they were never loaded, or are unloaded. Has no effect inside a load. Requires: the
    /// caller has the change lock.
    void ensureLoaded();

    ListPersistence& m_persistence;
    const CallLogRequests& m_requests;
    ObserverNotifierIfc& m_notifier;
    // Constant after setSource and loadAtFirstNeed.
    ListSourceIfc* m_source = nullptr;
    bool m_loadsAtFirstNeed = false;

    NestableSemaphore m_changeLock;
    // Guarded by m_changeLock.
    UnloadedEntries m_unloadedEntries;
    EntryIdRecord m_entryIds;
    bool m_isLoading = false;
    bool m_isIncomplete = false;

    // Changed with m_changeLock, before a list is emptied and after all are filled.
    std::atomic<bool> m_isUnloaded{false};

    // Each list is guarded by its own lock.
    ForEachList<JournalList> m_lists;

    JournalContacts m_contacts;
};

}  // namespace journal
