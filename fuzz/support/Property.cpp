#include "fuzz/support/Property.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "platform/client-utils/Utf8.h"

namespace fuzz {
namespace {

const char* g_brokenProperty = "";

bool isUtf8(std::string_view text) noexcept {
    std::size_t at = 0;
    while (at < text.size()) {
        const utf8::Step step = utf8::next(text, at);
        if (step.character == utf8::kInvalid) {
            return false;
        }
        at += step.length;
    }
    return true;
}

}  // namespace

void require(bool holds, const char* property) noexcept {
    if (!holds) {
        g_brokenProperty = property;
        std::fprintf(stderr, "broken property: %s\n", property);
        std::abort();
    }
}

const char* brokenProperty() noexcept {
    return g_brokenProperty;
}

bool hasControlCharacters(std::string_view text) noexcept {
    return std::any_of(text.begin(), text.end(), [](char each) {
        const auto byte = static_cast<unsigned char>(each);
        return (byte < 0x20 && each != '\t' && each != '\n' && each != '\r') || byte == 0x7f;
    });
}

void requireUtf8(std::string_view text, const char* property) noexcept {
    require(isUtf8(text), property);
}

void requireOneLine(std::string_view text, const char* property) noexcept {
    require(isUtf8(text) && !hasControlCharacters(text) && text.find_first_of("\t\n\r") == text.npos,
            property);
}

}  // namespace fuzz
