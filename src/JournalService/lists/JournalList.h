#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <string>

#include "platform/sync/Semaphore.h"
#include "src/JournalService/lists/PartyIndex.h"

namespace journal {

/// The number of items that a list keeps.
inline constexpr std::size_t kMaxItems = 1000;

/// The first item with that entry id, or the end.
template <typename Items>
[[nodiscard]] auto findEntry(Items& items, const std::string& entryId) {
    return std::find_if(items.begin(), items.end(),
                        [&entryId](const auto& item) { return item.getEntryId() == entryId; });
}

/// One list of the journal, newest item first, with the lock that guards it.
///
/// Thread-safe. The items are reached through a `Reader`, which holds the list's lock for its scope, or
/// through a `ListTransaction`. Two list locks are never held together, and no observer is called while one
/// is held.
template <typename Item>
class JournalList {
public:
    class Reader {
    public:
        /// Calls `load` without the lock until the items are complete, or it returns false.
        template <typename IsUnloaded, typename Load>
        Reader(JournalList& list, const IsUnloaded& isUnloaded, const Load& load)
            : m_lock(list.m_lock), m_items(list.m_items) {
            m_lock.wait();
            for (bool goesOn = true; goesOn && isUnloaded();) {
                m_lock.signal();
                goesOn = load();
                m_lock.wait();
            }
        }
        Reader(const Reader&) = delete;
        Reader& operator=(const Reader&) = delete;
        ~Reader() { m_lock.signal(); }

        const std::deque<Item>& operator*() const noexcept { return m_items; }
        const std::deque<Item>* operator->() const noexcept { return &m_items; }

    private:
        Semaphore& m_lock;
        const std::deque<Item>& m_items;
    };

    /// The items as they are in memory.
    [[nodiscard]] Reader read() {
        return Reader(
            *this, [] { return false; }, [] { return false; });
    }

private:
    friend class ListTransaction;

    Semaphore m_lock{1, 1, true};
    // Guarded by m_lock.
    std::deque<Item> m_items;
    PartyIndex m_parties;
};

}  // namespace journal
