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
    const auto add = [&prefix, &entryIds](const std::deque<Item>& items) {
        for (const Item& item : items) {
            if (item.getEntryId().starts_with(prefix)) {
                entryIds.insert(item.getEntryId());
            }
        }
    };
    if constexpr (!std::is_same_v<Item, CallBackItem>) {
        add(unloaded<Item>());
    }
    add(*m_lists.read<Item>());
}

std::string ListTransaction::makeUniqueEntryId(std::string entryId) {
    constexpr std::size_t kDigits = 8;
    close();
    ensureLoaded();
    // An id that a client made may be shorter.
    const std::string time = entryId.substr(0, std::max(entryId.size(), kDigits) - kDigits);
    std::set<std::string> used;
    addEntryIds<MissedCallItem>(time, used);
    addEntryIds<DialledCallItem>(time, used);
    addEntryIds<ReceivedCallItem>(time, used);
    addEntryIds<ForwardedCallItem>(time, used);
    addEntryIds<CallBackItem>(time, used);
    auto number = static_cast<std::uint32_t>(std::strtoul(entryId.substr(time.size()).c_str(), nullptr, 16));
    while (used.contains(entryId)) {
        std::array<char, kDigits + 1> digits{};
        std::snprintf(digits.data(), digits.size(), "%.8X", ++number);
        entryId = time + digits.data();
    }
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
