#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <string>

#include "src/JournalService/lists/JournalList.h"

namespace journal {

/// Returns `entryId`, or the next one of its second that no item of the list has and that the merged item did
/// not have before (`formerId`, empty for a new item). Two calls that end in one second may carry ids that
/// are no numbers, and an id must name one entry.
template <typename Item>
[[nodiscard]] std::string freeEntryId(const std::deque<Item>& items, const std::string& formerId,
                                      std::string entryId) {
    constexpr std::size_t kDigits = 8;
    const std::string time = entryId.substr(0, entryId.size() - kDigits);
    auto number = static_cast<std::uint32_t>(std::strtoul(entryId.substr(time.size()).c_str(), nullptr, 16));
    while (entryId == formerId || findEntry(items, entryId) != items.end()) {
        std::array<char, kDigits + 1> digits{};
        std::snprintf(digits.data(), digits.size(), "%.8X", ++number);
        entryId = time + digits.data();
    }
    return entryId;
}

}  // namespace journal
