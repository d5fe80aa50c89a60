#pragma once

#include <algorithm>
#include <deque>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include "journal-items/DialledCallItem.h"
#include "journal-items/ForwardedCallItem.h"
#include "journal-items/MissedCallItem.h"
#include "journal-items/ReceivedCallItem.h"
#include "src/JournalService/JournalLists.h"
#include "src/JournalService/ListOrder.h"

class CallListDatabaseAdapter;

namespace journal {

/// The entries that a load has left in the database because it reads the newest only. They are not in the lists, and
/// clients do not see them; but a party has one entry in a list, so whoever looks for a party's entry in order to change
/// it must find it there, too.
///
/// How one is found: a list that has no match is read as a whole, once after a load, and kept as it was then. When that has a
/// match, the table is read again, and what the database still has of the item comes back into the list, to its place. So
/// a call from a new party costs no request, and no entry that was deleted meanwhile rises again.
///
/// Threads: any, within one `JournalLists::Change` each; no list lock is held by the caller. Errors: where the database
/// cannot be read, nothing comes back, and the next one who asks tries again.
class OlderEntries {
public:
    /// Both are borrowed and outlive this one.
    OlderEntries(const CallListDatabaseAdapter& adapter, JournalLists& lists)
        : m_adapter(adapter), m_lists(lists) {}
    OlderEntries(const OlderEntries&) = delete;
    OlderEntries& operator=(const OlderEntries&) = delete;
    ~OlderEntries() = default;

    /// The lists have been loaded; `areLeft` says whether the database may hold entries that they do not.
    void loaded(bool areLeft);

    /// Brings the newest older item that `matches` back into its list, unless the list has a match already.
    template <typename Item, typename Matches>
    void recall(Matches matches);

private:
    template <typename Item>
    struct Left {
        bool read = false;
        std::deque<Item> items;
    };

    // A whole table, newest first; false when it cannot be read.
    bool read(std::deque<MissedCallItem>& items) const;
    bool read(std::deque<DialledCallItem>& items) const;
    bool read(std::deque<ReceivedCallItem>& items) const;
    bool read(std::deque<ForwardedCallItem>& items) const;
    /// False when the database has no item with that id any more.
    template <typename Item>
    std::optional<bool> bringBack(const std::string& uniqueId);

    const CallListDatabaseAdapter& m_adapter;
    JournalLists& m_lists;

    // Guarded by the change.
    bool m_areLeft = false;
    std::tuple<Left<MissedCallItem>, Left<DialledCallItem>, Left<ReceivedCallItem>, Left<ForwardedCallItem>>
        m_left;
};

template <typename Item, typename Matches>
void OlderEntries::recall(Matches matches) {
    if (!m_areLeft) {
        return;
    }
    {
        const auto items = m_lists.list<Item>().access();
        if (std::any_of(items->begin(), items->end(), matches)) {
            return;
        }
    }
    auto& left = std::get<Left<Item>>(m_left);
    left.read = left.read || read(left.items);
    bool isBack = false;
    while (!isBack) {
        const auto found = std::find_if(left.items.begin(), left.items.end(), matches);
        if (found == left.items.end()) {
            return;
        }
        const std::optional<bool> back = bringBack<Item>(found->getUniqueId());
        if (!back) {
            return;
        }
        isBack = *back;
        left.items.erase(found);
    }
}

template <typename Item>
std::optional<bool> OlderEntries::bringBack(const std::string& uniqueId) {
    const auto isMeant = [&uniqueId](const Item& item) { return item.getUniqueId() == uniqueId; };
    std::deque<Item> stored;
    if (!read(stored)) {
        return std::nullopt;
    }
    const auto found = std::find_if(stored.begin(), stored.end(), isMeant);
    const auto items = m_lists.list<Item>().access();
    if (found != stored.end() && std::none_of(items->begin(), items->end(), isMeant)) {
        insertInOrder(*items, std::move(*found));
    }
    return found != stored.end();
}

}  // namespace journal
