#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "journal-items/CallBackItem.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"
#include "src/JournalService/lists/JournalList.h"
#include "src/JournalService/lists/ListOrder.h"
#include "src/JournalService/lists/ListPersistence.h"

namespace journal {

/// The entries that the database holds beside those in the lists, because a load reads the newest only.
/// Clients do not see them; but a party has one entry in a list, a list keeps so many entries and no more,
/// and to clear a list is to clear all of it. So whoever files, drops or clears asks here, too.
///
/// A table is read as a whole at the first need after a load. From then on what is known of it is exact: its
/// older entries change only when one is taken from here, or all are cleared. So a call from a new party
/// costs no further request.
///
/// Threads: any, within one `JournalLists::Change` each. Errors: where the database cannot be read, there are
/// no older entries, and the next one who asks tries again.
class UnloadedEntries {
public:
    /// The mirror is borrowed and outlives this one.
    explicit UnloadedEntries(ListPersistence& persistence) : m_persistence(persistence) {}
    UnloadedEntries(const UnloadedEntries&) = delete;
    UnloadedEntries& operator=(const UnloadedEntries&) = delete;
    ~UnloadedEntries() = default;

    /// The lists have been loaded; `areLeft` says whether the database may hold entries that they do not.
    void loaded(bool areLeft);

    /// Those of the list, newest first, for whoever takes one out. The caller does not hold the list's lock.
    template <typename Item>
    [[nodiscard]] std::deque<Item>& of(JournalList<Item>& list);
    /// Takes the oldest, of the list's `items` but its first and of what is known to be left, until both are
    /// `limit` together; answers them, the oldest first. The database has them still.
    template <typename Item>
    [[nodiscard]] std::vector<Item> takeBeyond(std::size_t limit, std::deque<Item>& items);
    /// The whole table has been deleted.
    template <typename Item>
    void clear() {
        left<Item>() = {true, {}};
    }

private:
    template <typename Item>
    struct Left {
        /// False when the table may hold more than is here.
        bool known = false;
        std::deque<Item> items;
    };

    template <typename Item>
    [[nodiscard]] Left<Item>& left() {
        return std::get<Left<Item>>(m_left);
    }

    ListPersistence& m_persistence;

    // Guarded by the change. The callbacks are always loaded whole.
    std::tuple<Left<MissedCallItem>, Left<DialledCallItem>, Left<ReceivedCallItem>, Left<ForwardedCallItem>,
               Left<CallBackItem>>
        m_left;
};

template <typename Item>
std::deque<Item>& UnloadedEntries::of(JournalList<Item>& list) {
    Left<Item>& found = left<Item>();
    std::deque<Item> stored;
    if (found.known || !m_persistence.read(stored)) {
        return found.items;
    }
    std::set<std::string> listed;
    const auto items = list.access();
    for (const Item& item : *items) {
        listed.insert(item.getUniqueId());
    }
    for (Item& item : stored) {
        if (!listed.contains(item.getUniqueId())) {
            found.items.push_back(std::move(item));
        }
    }
    found.known = true;
    return found.items;
}

template <typename Item>
std::vector<Item> UnloadedEntries::takeBeyond(std::size_t limit, std::deque<Item>& items) {
    std::deque<Item>& older = left<Item>().items;
    std::vector<Item> taken;
    while (items.size() + older.size() > limit) {
        const bool fromList = older.empty() || (items.size() > 1 && isNewer(older.back(), items.back()));
        std::deque<Item>& oldest = fromList ? items : older;
        taken.push_back(std::move(oldest.back()));
        oldest.pop_back();
    }
    return taken;
}

}  // namespace journal
