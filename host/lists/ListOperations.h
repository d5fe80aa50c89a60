#pragma once

#include <deque>
#include <set>
#include <string>
#include <type_traits>

#include "journal-items/ListTraits.h"
#include "journalservice/JournalServiceIfc.h"

namespace host {

/// The journal's operations on one list, by the type of its items.
template <typename Item>
struct ListOperations {
    void (JournalServiceIfc::*getList)(std::deque<Item>& items);
    /// nullptr for the missed calls, whose operation has a further parameter.
    bool (JournalServiceIfc::*deleteOne)(const std::string& entryId);
    bool (JournalServiceIfc::*deleteSet)(const std::set<std::string>& entryIds);
    bool (JournalServiceIfc::*clear)();
};

template <typename Item>
constexpr ListOperations<Item> listOperations() {
    using Journal = JournalServiceIfc;
    if constexpr (std::is_same_v<Item, MissedCallItem>) {
        return {&Journal::getMissedCallList, nullptr, &Journal::deleteMissedCallList,
                &Journal::deleteMissedCallList};
    } else if constexpr (std::is_same_v<Item, DialledCallItem>) {
        return {&Journal::getDialledCallList, &Journal::deleteDialledCall, &Journal::deleteDialledCallList,
                &Journal::deleteDialledCallList};
    } else if constexpr (std::is_same_v<Item, ReceivedCallItem>) {
        return {&Journal::getReceivedCallList, &Journal::deleteReceivedCall, &Journal::deleteReceivedCallList,
                &Journal::deleteReceivedCallList};
    } else if constexpr (std::is_same_v<Item, ForwardedCallItem>) {
        return {&Journal::getForwardedCallList, &Journal::deleteForwardedCall,
                &Journal::deleteForwardedCallList, &Journal::deleteForwardedCallList};
    } else {
        return {&Journal::getCallBackList, &Journal::deleteCallBack, &Journal::deleteCallBackList,
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
