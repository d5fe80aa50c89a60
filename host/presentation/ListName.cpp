#include "host/presentation/ListName.h"

namespace host {

std::string callWord(ListName list) {
    return withItemOf(list, []<typename Item>() { return std::string(ListTraits<Item>::kCallWord); });
}

std::string entryWord(ListName list) {
    return list == ListName::eCallbacks ? callWord(list) : std::string(wordOf(list)) + " entry";
}

std::string countText(ListName list, std::size_t count) {
    std::string word = entryWord(list);
    if (count != 1) {
        word = list == ListName::eCallbacks ? word + "s" : std::string(wordOf(list)) + " entries";
    }
    return std::to_string(count) + " " + word;
}

}  // namespace host
