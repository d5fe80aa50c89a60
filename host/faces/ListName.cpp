#include "host/faces/ListName.h"

#include <array>
#include <cstddef>

namespace host {
namespace {

constexpr std::array<std::string_view, 5> kWords{"missed", "dialled", "received", "forwarded", "callbacks"};

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

}  // namespace host
