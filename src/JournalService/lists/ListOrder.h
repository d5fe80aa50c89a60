#pragma once

#include <algorithm>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "journal-items/Occurrences.h"

namespace journal {

/// The order of a list, newest first: true if a's sort key is greater than b's, compared as bytes.
template <typename Item>
[[nodiscard]] bool isNewer(const Item& a, const Item& b) {
    return sortKeyOf(a) > sortKeyOf(b);
}

// The same under the names of the lists. The database adapter orders the missed list.
[[nodiscard]] inline bool isDialledCallOrdered(const DialledCallItem& a, const DialledCallItem& b) {
    return isNewer(a, b);
}
[[nodiscard]] inline bool isReceivedCallOrdered(const ReceivedCallItem& a, const ReceivedCallItem& b) {
    return isNewer(a, b);
}
[[nodiscard]] inline bool isForwardedCallOrdered(const ForwardedCallItem& a, const ForwardedCallItem& b) {
    return isNewer(a, b);
}

/// Inserts an item that has become older than it was before the first item that is older by `newer`.
template <typename Item, typename Newer>
void insertInOrder(std::deque<Item>& items, Item item, Newer newer) {
    const auto older = std::find_if(items.begin(), items.end(),
                                    [&item, &newer](const Item& other) { return newer(item, other); });
    items.insert(older, std::move(item));
}

/// The same in the order of the sort keys.
template <typename Item>
void insertInOrder(std::deque<Item>& items, Item item) {
    insertInOrder(items, std::move(item), isNewer<Item>);
}

/// Takes the items without occurrences out of `items` and returns them, in list order.
template <typename Item>
[[nodiscard]] std::vector<Item> takeItemsWithoutOccurrences(std::deque<Item>& items) {
    std::vector<Item> taken;
    std::deque<Item> kept;
    for (Item& item : items) {
        if (occurrencesOf(item).empty()) {
            taken.push_back(std::move(item));
        } else {
            kept.push_back(std::move(item));
        }
    }
    items.swap(kept);
    return taken;
}

}  // namespace journal
