#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <string>

#include "src/JournalService/lists/JournalList.h"

namespace journal {

/// Returns `entryId`, or the next unused id with the same time: one that no item of the list has and that the
/// merged item did not have before (`formerId`, empty for a new item). Two calls that end in one second may
/// have call ids that are not numbers, and an entry id identifies one entry.
template <typename Item>
[[nodiscard]] std::string makeUniqueEntryId(const std::deque<Item>& items, const std::string& formerId,
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
