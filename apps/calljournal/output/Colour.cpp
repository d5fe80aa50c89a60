#include "apps/calljournal/output/Colour.h"

#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <string_view>

namespace calljournal {

namespace {

ColourUse g_use = ColourUse::eAuto;

}  // namespace

void setColourUse(ColourUse use) noexcept {
    g_use = use;
}

bool isColoured() {
    if (g_use != ColourUse::eAuto) {
        return g_use == ColourUse::eAlways;
    }
    const char* const refused = std::getenv("NO_COLOR");
    const char* const terminal = std::getenv("TERM");
    return ::isatty(STDOUT_FILENO) != 0 && (refused == nullptr || *refused == '\0') && terminal != nullptr &&
           std::string_view(terminal) != "dumb";
}

std::string coloured(const std::string& text, Emphasis emphasis) {
    if (emphasis == Emphasis::eNone) {
        return text;
    }
    constexpr std::array<const char*, 5> kCodes{"", "1", "1;31", "32", "33"};
    return std::string("\x1b[") + kCodes.at(static_cast<std::size_t>(emphasis)) + "m" + text + "\x1b[0m";
}

}  // namespace calljournal
