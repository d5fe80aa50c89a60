#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "journal-items/ListTraits.h"
#include "src/JournalService/lists/JournalList.h"
#include "src/JournalService/lists/ListOrder.h"
#include "src/JournalService/lists/ListPersistence.h"

namespace journal {

/// Entries in the database that are not loaded, because a load reads the newest only. Clients do not see
/// them; but a party has one entry in a list, a list keeps `kMaxItems` entries, and to clear a list is to
/// clear all of it. So every operation that files, drops or clears entries uses this class too.
///
/// A table is read lazily: the first operation after a load that needs its unloaded entries reads it whole.
/// From then on they are known exactly: they change only when one is taken out, or all are cleared. So a call
/// from a new party needs no further request.
///
/// Requires: the caller has a `ListTransaction`. Errors: while the database cannot be read there are no
/// unloaded entries, and the next operation tries again.
class UnloadedEntries {
public:
    /// `persistence` is borrowed and outlives this object.
    explicit UnloadedEntries(ListPersistence& persistence) : m_persistence(persistence) {}
    UnloadedEntries(const UnloadedEntries&) = delete;
    UnloadedEntries& operator=(const UnloadedEntries&) = delete;
    ~UnloadedEntries() = default;

    /// Records that the lists were loaded; `mayHaveMore` is true when the database may hold entries that are
    /// not loaded.
    void setLoaded(bool mayHaveMore);

    /// The unloaded entries of the list, newest first; the caller may take one out. Requires: the list is not
    /// locked.
    template <typename Item>
    [[nodiscard]] std::deque<Item>& entriesOf(JournalList<Item>& list);
    /// False if the last read of the table failed, or if it was not read since the last load.
    template <typename Item>
    [[nodiscard]] bool areKnown() const {
        return std::get<Remainder<Item>>(m_remainders).known;
    }
    /// Takes the oldest entries out of `items`, except its first, and out of the known unloaded entries,
    /// until both are `limit` together; returns them, oldest first. The database still has them.
    template <typename Item>
    [[nodiscard]] std::vector<Item> takeBeyond(std::size_t limit, std::deque<Item>& items);
    /// Records that the whole table was deleted.
    template <typename Item>
    void clear() {
        remainder<Item>() = {true, {}};
    }

private:
    template <typename Item>
    struct Remainder {
        /// False when the table may hold entries that are neither in the list nor in `items`.
        bool known = false;
        std::deque<Item> items;
    };

    template <typename Item>
    [[nodiscard]] Remainder<Item>& remainder() {
        return std::get<Remainder<Item>>(m_remainders);
    }

    ListPersistence& m_persistence;

    // Guarded by the change lock. The callbacks are always loaded whole.
    ForEachList<Remainder> m_remainders;
};

template <typename Item>
std::deque<Item>& UnloadedEntries::entriesOf(JournalList<Item>& list) {
    Remainder<Item>& found = remainder<Item>();
    std::deque<Item> stored;
    if (found.known || !m_persistence.read(stored)) {
        return found.items;
    }
    std::set<std::string> listed;
    const auto items = list.read();
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
    std::deque<Item>& unloaded = remainder<Item>().items;
    std::vector<Item> taken;
    while (items.size() + unloaded.size() > limit) {
        const bool fromList =
            unloaded.empty() || (items.size() > 1 && isNewer(unloaded.back(), items.back()));
        std::deque<Item>& oldest = fromList ? items : unloaded;
        taken.push_back(std::move(oldest.back()));
        oldest.pop_back();
    }
    return taken;
}

}  // namespace journal
