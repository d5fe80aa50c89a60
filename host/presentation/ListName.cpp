#include "host/presentation/ListName.h"

namespace host {

std::string entryWord(ListName list) {
    return withItemOf(list, []<typename Item>() { return std::string(ListTraits<Item>::kEntryWord); });
}

std::string countText(ListName list, std::size_t count) {
    return std::to_string(count) + " " + entryWord(list) + (count == 1 ? "" : "s");
}

}  // namespace host
