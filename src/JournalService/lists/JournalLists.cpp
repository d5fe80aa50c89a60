#include "src/JournalService/lists/JournalLists.h"

#include <algorithm>

namespace journal {

unsigned JournalLists::getUnviewedMissedCallsCount(const std::deque<MissedCallItem>& missed) {
    return static_cast<unsigned>(
        std::count_if(missed.begin(), missed.end(), [](const auto& item) { return !item.getViewed(); }));
}

unsigned JournalLists::getUnviewedMissedCallsCount() {
    return getUnviewedMissedCallsCount(*read<MissedCallItem>());
}

}  // namespace journal
