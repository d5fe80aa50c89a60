#include "src/JournalService/lists/ListTransaction.h"

#include <array>
#include <string>

#include "src/JournalService/lists/ListSourceIfc.h"

namespace journal {

ListTransaction::Load::Load(ListTransaction& transaction) : m_lists(transaction.m_lists) {
    m_lists.m_isLoading = true;
    m_lists.m_isIncomplete = false;
}

void ListTransaction::Load::finish() {
    if (!m_lists.m_isIncomplete) {
        m_lists.m_isUnloaded = false;
    }
}

template <typename Item>
void ListTransaction::emptyList() {
    std::deque<Item>().swap(lock<Item>());
    close();
}

bool ListTransaction::unload() {
    if (!m_lists.m_loadsAtFirstNeed) {
        return false;
    }
    if (m_lists.isUnloaded()) {
        return true;
    }
    if (!retryRejected()) {
        return false;
    }
    m_lists.m_isUnloaded = true;
    // Opens the lists as they are.
    const Load load(*this);
    emptyList<MissedCallItem>();
    emptyList<DialledCallItem>();
    emptyList<ReceivedCallItem>();
    emptyList<ForwardedCallItem>();
    emptyList<CallBackItem>();
    m_lists.contacts().clear();
    setLoaded(true);
    return true;
}

template <typename Item>
bool ListTransaction::addEntryIds() {
    const auto add = [this](const std::deque<Item>& items) {
        for (const Item& item : items) {
            m_lists.m_entryIds.add(item.getEntryId());
        }
    };
    bool isKnown = true;
    if constexpr (!std::is_same_v<Item, CallBackItem>) {
        add(unloaded<Item>());
        isKnown = m_lists.m_unloadedEntries.areKnown<Item>();
    }
    add(*m_lists.read<Item>());
    return isKnown;
}

std::string ListTransaction::makeUniqueEntryId(const std::string& entryId) {
    close();
    ensureLoaded();
    EntryIdRecord& record = m_lists.m_entryIds;
    const std::string time = EntryIdRecord::timeOf(entryId);
    if (!record.knows(time)) {
        record.begin(time);
        const std::array<bool, 5> known{addEntryIds<MissedCallItem>(), addEntryIds<DialledCallItem>(),
                                        addEntryIds<ReceivedCallItem>(), addEntryIds<ForwardedCallItem>(),
                                        addEntryIds<CallBackItem>()};
        record.end(std::all_of(known.begin(), known.end(), [](bool each) { return each; }));
    }
    return record.take(entryId);
}

template <typename Item>
bool ListTransaction::retryRejectedOf() {
    ListPersistence& persistence = m_lists.m_persistence;
    persistence.retryDeletion<Item>();
    std::deque<Item>& items = open<Item>();
    // Stops at the first item that is rejected again: a locked database delays each write by seconds.
    const bool accepted = std::none_of(items.begin(), items.end(), [this, &persistence](Item& item) {
        if (persistence.isRejected(item)) {
            write(item);
        }
        return persistence.isRejected(item);
    });
    close();
    return accepted;
}

bool ListTransaction::retryRejected() {
    const bool accepted = retryRejectedOf<MissedCallItem>() && retryRejectedOf<DialledCallItem>() &&
                          retryRejectedOf<ReceivedCallItem>() && retryRejectedOf<ForwardedCallItem>() &&
                          retryRejectedOf<CallBackItem>();
    if (accepted) {
        m_lists.m_persistence.clearRejectedWrites();
    }
    return accepted;
}

}  // namespace journal
