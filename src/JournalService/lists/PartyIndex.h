#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "journal-items/CallBackItem.h"
#include "journal-items/DialledCallItem.h"
#include "journal-items/Occurrences.h"

namespace journal {

/// The text by which a party's item is found: what every matching contact has as its search number.
inline const std::string& partyOf(const DialledCallItem& item) {
    return item.getJournalSeviceGroupBy();
}
inline const std::string& partyOf(const CallBackItem& item) {
    return item.getNumber();
}
template <typename Item>
const std::string& partyOf(const Item& item) {
    static const std::string kNone;
    const auto& infos = occurrencesOf(item);
    return infos.empty() ? kNone : infos.front().getNumber();
}

/// The parties of a list's items as hashes beside the items, so that the filing of a call does not read the
/// items of all others.
///
/// The filing keeps it: `find`, then `record` when the call is filed. Any other change of the list is
/// followed by `forget`, and the next `find` makes it anew.
///
/// Not thread-safe: guarded by the list's lock.
class PartyIndex {
public:
    /// Returns the position of the first item of `party` that `matches`, or the number of items. Forgets the
    /// index until `record`.
    template <typename Item, typename Matches>
    [[nodiscard]] std::size_t find(const std::deque<Item>& items, const std::string& party,
                                   const Matches& matches);
    /// Records that the item found, if any, was taken out, that the first item was added, and that the oldest
    /// beyond the number of items were removed.
    template <typename Item>
    void record(const std::deque<Item>& items);
    void forget() noexcept { m_state = State::eOutdated; }

private:
    [[nodiscard]] static std::size_t hashOf(const std::string& party) {
        return std::hash<std::string>()(party);
    }

    enum class State { eOutdated, eFiling, eCurrent };

    State m_state = State::eOutdated;
    /// Of the oldest item first: a new one is added at the end.
    std::vector<std::size_t> m_hashes;
    std::size_t m_found = 0;
};

template <typename Item, typename Matches>
std::size_t PartyIndex::find(const std::deque<Item>& items, const std::string& party,
                             const Matches& matches) {
    if (m_state != State::eCurrent) {
        m_hashes.clear();
        m_hashes.reserve(items.size() + 1);
        std::for_each(items.rbegin(), items.rend(),
                      [this](const Item& item) { m_hashes.push_back(hashOf(partyOf(item))); });
    }
    m_state = State::eFiling;
    const std::size_t hash = hashOf(party);
    for (auto at = std::find(m_hashes.rbegin(), m_hashes.rend(), hash); at != m_hashes.rend();
         at = std::find(at + 1, m_hashes.rend(), hash)) {
        m_found = static_cast<std::size_t>(at - m_hashes.rbegin());
        if (matches(items[m_found])) {
            return m_found;
        }
    }
    m_found = items.size();
    return m_found;
}

template <typename Item>
void PartyIndex::record(const std::deque<Item>& items) {
    if (m_state != State::eFiling) {
        return;
    }
    if (m_found < m_hashes.size()) {
        m_hashes.erase(m_hashes.end() - static_cast<std::ptrdiff_t>(m_found) - 1);
    }
    m_hashes.push_back(hashOf(partyOf(items.front())));
    if (m_hashes.size() > items.size()) {
        m_hashes.erase(m_hashes.begin(), m_hashes.end() - static_cast<std::ptrdiff_t>(items.size()));
    }
    m_state = m_hashes.size() == items.size() ? State::eCurrent : State::eOutdated;
}

}  // namespace journal
