#pragma once

#include <deque>
#include <string>

#include "platform/sync/CriticalSection.h"
#include "platform/sync/Semaphore.h"

namespace journal {

/// One list of the journal, newest item first, with the lock that guards it.
///
/// Threads: any. The items are reached only through an `Access`, which holds the list's lock for its scope.
/// Never hold two accesses at once, and never call an observer while holding one.
template <typename Item>
class JournalList {
public:
    class Access {
    public:
        explicit Access(JournalList& list) : m_section(list.m_lock), m_items(list.m_items) {}
        Access(const Access&) = delete;
        Access& operator=(const Access&) = delete;
        ~Access() = default;

        std::deque<Item>& operator*() const noexcept { return m_items; }
        std::deque<Item>* operator->() const noexcept { return &m_items; }

        /// The first item with that entry id, or the end.
        [[nodiscard]] auto find(const std::string& entryId) const {
            auto item = m_items.begin();
            while (item != m_items.end() && item->getEntryId() != entryId) {
                ++item;
            }
            return item;
        }

    private:
        const CriticalSection<Semaphore> m_section;
        std::deque<Item>& m_items;
    };

    [[nodiscard]] Access access() { return Access(*this); }

private:
    Semaphore m_lock{1, 1, true};
    // Guarded by m_lock.
    std::deque<Item> m_items;
};

}  // namespace journal
