#include "host/text-files/FileText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "platform/client-utils/Utf8.h"

namespace host {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;
constexpr std::string_view kWhiteSpace = " \t\r\n\v\f";

char upperLetter(char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

char lowerLetter(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool isControl(std::uint32_t character) {
    return (character < 0x20 && character != '\n' && character != '\t') ||
           (character >= 0x7F && character < 0xA0);
}

}  // namespace

bool isUtf8(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const utf8::Step step = utf8::next(text, at);
        if (step.character == utf8::kInvalid) {
            return false;
        }
        at += step.length;
    }
    return true;
}

std::string cleaned(std::string_view text) {
    std::string clean;
    for (std::size_t at = 0; at < text.size();) {
        const utf8::Step step = utf8::next(text, at);
        if (step.character == utf8::kInvalid) {
            utf8::append(clean, kReplacement);
        } else if (!isControl(step.character)) {
            clean += text.substr(at, step.length);
        }
        at += step.length;
    }
    return std::string(stripped(clean));
}

std::string_view stripped(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kWhiteSpace);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

std::string upper(std::string_view text) {
    std::string letters(text);
    std::transform(letters.begin(), letters.end(), letters.begin(), &upperLetter);
    return letters;
}

std::string lower(std::string_view text) {
    std::string letters(text);
    std::transform(letters.begin(), letters.end(), letters.begin(), &lowerLetter);
    return letters;
}

bool beginsWith(std::string_view text, std::string_view start) {
    return lower(text.substr(0, start.size())) == start;
}

}  // namespace host
