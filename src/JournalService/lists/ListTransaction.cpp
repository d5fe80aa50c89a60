#include "src/JournalService/lists/ListTransaction.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "src/JournalService/lists/ListSourceIfc.h"

namespace journal {

void ListTransaction::ensureLoaded() {
    if (m_lists.m_source != nullptr && !m_lists.m_source->hasLoaded()) {
        m_lists.m_source->load();
    }
}

template <typename Item>
void ListTransaction::addEntryIds(const std::string& prefix, std::set<std::string>& entryIds) {
    EntryIdRecord& record = m_lists.m_entryIds;
    const auto add = [&](const std::deque<Item>& items) {
        for (const Item& item : items) {
            record.newest = std::max(record.newest, item.getEntryId());
            if (item.getEntryId().starts_with(prefix)) {
                entryIds.insert(item.getEntryId());
            }
        }
    };
    if constexpr (!std::is_same_v<Item, CallBackItem>) {
        add(unloaded<Item>());
        record.known = record.known && m_lists.m_unloadedEntries.areKnown<Item>();
    }
    add(*m_lists.read<Item>());
}

std::set<std::string> ListTransaction::entryIdsWith(const std::string& prefix) {
    std::set<std::string> entryIds;
    // If no entry has a greater id than `newest`, no entry has an id that begins with a greater text.
    if (m_lists.m_entryIds.known && prefix > m_lists.m_entryIds.newest) {
        return entryIds;
    }
    m_lists.m_entryIds.known = true;
    addEntryIds<MissedCallItem>(prefix, entryIds);
    addEntryIds<DialledCallItem>(prefix, entryIds);
    addEntryIds<ReceivedCallItem>(prefix, entryIds);
    addEntryIds<ForwardedCallItem>(prefix, entryIds);
    addEntryIds<CallBackItem>(prefix, entryIds);
    return entryIds;
}

std::string ListTransaction::makeUniqueEntryId(std::string entryId) {
    constexpr std::size_t kDigits = 8;
    close();
    ensureLoaded();
    // An id that a client made may be shorter.
    const std::string time = entryId.substr(0, std::max(entryId.size(), kDigits) - kDigits);
    const std::set<std::string> used = entryIdsWith(time);
    auto number = static_cast<std::uint32_t>(std::strtoul(entryId.substr(time.size()).c_str(), nullptr, 16));
    while (used.contains(entryId)) {
        std::array<char, kDigits + 1> digits{};
        std::snprintf(digits.data(), digits.size(), "%.8X", ++number);
        entryId = time + digits.data();
    }
    m_lists.m_entryIds.newest = std::max(m_lists.m_entryIds.newest, entryId);
    return entryId;
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
