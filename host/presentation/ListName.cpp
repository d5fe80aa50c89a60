#include "host/presentation/ListName.h"

#include <array>
#include <cstddef>

namespace host {
namespace {

constexpr std::array<std::string_view, 5> kWords{"missed", "dialled", "received", "forwarded", "callbacks"};
constexpr std::array<std::string_view, 5> kEntryWords{"missed call", "dialled call", "received call",
                                                      "forwarded call", "callback"};

}  // namespace

std::string_view wordOf(ListName list) noexcept {
    return kWords[static_cast<std::size_t>(list)];
}

std::optional<ListName> listNamed(std::string_view word) noexcept {
    for (std::size_t index = 0; index < kWords.size(); ++index) {
        if (kWords[index] == word) {
            return static_cast<ListName>(index);
        }
    }
    return std::nullopt;
}

std::string entryWord(ListName list) {
    return std::string(kEntryWords[static_cast<std::size_t>(list)]);
}

std::string countText(ListName list, std::size_t count) {
    return std::to_string(count) + " " + entryWord(list) + (count == 1 ? "" : "s");
}

}  // namespace host
