#pragma once

#include <algorithm>
#include <deque>
#include <optional>
#include <set>
#include <string>
#include <type_traits>
#include <utility>

#include "journal-items/ListTraits.h"
#include "journalservice/JournalServiceIfc.h"

namespace host {

/// The journal's operations on one list, by the type of its items.
template <typename Item>
struct ListOperations {
    void (JournalServiceIfc::*getList)(std::deque<Item>& items);
    /// nullptr: the journal has no such operation.
    bool (JournalServiceIfc::*get)(const std::string& entryId, Item& item);
    /// nullptr for the missed calls, whose operation has a further parameter.
    bool (JournalServiceIfc::*deleteOne)(const std::string& entryId);
    bool (JournalServiceIfc::*deleteSet)(const std::set<std::string>& entryIds);
    bool (JournalServiceIfc::*clear)();
};

template <typename Item>
constexpr ListOperations<Item> listOperations() {
    using Journal = JournalServiceIfc;
    if constexpr (std::is_same_v<Item, MissedCallItem>) {
        return {&Journal::getMissedCallList, &Journal::getMissedCall, nullptr, &Journal::deleteMissedCallList,
                &Journal::deleteMissedCallList};
    } else if constexpr (std::is_same_v<Item, DialledCallItem>) {
        return {&Journal::getDialledCallList, &Journal::getDialledCall, &Journal::deleteDialledCall,
                &Journal::deleteDialledCallList, &Journal::deleteDialledCallList};
    } else if constexpr (std::is_same_v<Item, ReceivedCallItem>) {
        return {&Journal::getReceivedCallList, &Journal::getReceivedCall, &Journal::deleteReceivedCall,
                &Journal::deleteReceivedCallList, &Journal::deleteReceivedCallList};
    } else if constexpr (std::is_same_v<Item, ForwardedCallItem>) {
        return {&Journal::getForwardedCallList, &Journal::getForwardedCall, &Journal::deleteForwardedCall,
                &Journal::deleteForwardedCallList, &Journal::deleteForwardedCallList};
    } else {
        return {&Journal::getCallBackList, nullptr, &Journal::deleteCallBack, &Journal::deleteCallBackList,
                &Journal::deleteCallBackList};
    }
}

/// Returns a copy of the list.
template <typename Item>
[[nodiscard]] std::deque<Item> readList(JournalServiceIfc& journal) {
    std::deque<Item> items;
    (journal.*listOperations<Item>().getList)(items);
    return items;
}

/// Returns the entry; std::nullopt for an unknown id.
template <typename Item>
[[nodiscard]] std::optional<Item> findEntry(JournalServiceIfc& journal, const std::string& entryId) {
    constexpr auto kGet = listOperations<Item>().get;
    if constexpr (kGet != nullptr) {
        Item item;
        return (journal.*kGet)(entryId, item) ? std::optional(std::move(item)) : std::nullopt;
    } else {
        const std::deque<Item> items = readList<Item>(journal);
        const auto found = std::find_if(items.begin(), items.end(), [&entryId](const Item& each) {
            return each.getEntryId() == entryId;
        });
        return found != items.end() ? std::optional(*found) : std::nullopt;
    }
}

/// False for an unknown id.
template <typename Item>
[[nodiscard]] bool deleteEntry(JournalServiceIfc& journal, const std::string& entryId) {
    if constexpr (std::is_same_v<Item, MissedCallItem>) {
        return journal.deleteMissedCall(entryId, false);
    } else {
        return (journal.*listOperations<Item>().deleteOne)(entryId);
    }
}

}  // namespace host
