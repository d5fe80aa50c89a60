#include "host/digits/DialledText.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "platform/client-utils/Utf8.h"

namespace host {
namespace {

bool isSeparator(std::uint32_t character) {
    return (character < 0x80 &&
            std::string_view(" \t-./()").find(static_cast<char>(character)) != std::string_view::npos) ||
           character == 0xA0 || (character >= 0x2000 && character <= 0x2015) ||
           (character >= 0x202A && character <= 0x202F) || (character >= 0x2060 && character <= 0x2069) ||
           character == 0x2212 || character == 0xFEFF;
}

bool isDialled(char character) {
    return std::string_view("0123456789*#").find(character) != std::string_view::npos;
}

}  // namespace

std::string withoutSeparators(std::string_view text) {
    std::string dialled;
    for (std::size_t at = 0; at < text.size();) {
        const utf8::Step step = utf8::next(text, at);
        if (!isSeparator(step.character)) {
            dialled += text.substr(at, step.length);
        }
        at += step.length;
    }
    return dialled;
}

bool isDialledNumber(std::string_view dialled) {
    if (!dialled.empty() && dialled.front() == '+') {
        dialled.remove_prefix(1);
    }
    return !dialled.empty() && std::all_of(dialled.begin(), dialled.end(), isDialled);
}

std::vector<std::string> dialledCodes(const std::vector<std::string>& codes) {
    std::vector<std::string> dialled;
    for (const std::string& code : codes) {
        if (std::string digits = withoutSeparators(code); !digits.empty()) {
            dialled.push_back(std::move(digits));
        }
    }
    std::sort(dialled.begin(), dialled.end());
    return dialled;
}

bool beginsWithOneOf(const std::vector<std::string>& codes, const std::string& dialled) {
    return std::any_of(codes.begin(), codes.end(),
                       [&dialled](const std::string& code) { return dialled.rfind(code, 0) == 0; });
}

bool isExtensionOrCode(const std::string& dialled, const std::vector<std::string>& codes) {
    return dialled.find_first_of("*#") != std::string::npos ||
           (dialled.front() != '+' && dialled.size() <= kLongestExtension) || beginsWithOneOf(codes, dialled);
}

}  // namespace host
