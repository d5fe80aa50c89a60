#include "host/log/LogText.h"

#include <algorithm>
#include <cstdint>

#include "platform/client-utils/Utf8.h"

namespace host {
namespace {

bool isPlain(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte >= 0x20 && byte < 0x7f;
}

bool mayStand(std::uint32_t character) {
    if (character == utf8::kInvalid || character < 0x20 || (character >= 0x7f && character < 0xa0)) {
        return false;
    }
    const bool separates = character == 0x2028 || character == 0x2029;
    const bool turnsRound =
        (character >= 0x202a && character <= 0x202e) || (character >= 0x2066 && character <= 0x2069);
    return !separates && !turnsRound;
}

void appendEscaped(std::string& line, std::string_view bytes) {
    static constexpr char kHex[] = "0123456789abcdef";
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        switch (character) {
            case '\n': line += "\\n"; break;
            case '\r': line += "\\r"; break;
            case '\t': line += "\\t"; break;
            default:
                line += "\\x";
                line += kHex[byte >> 4U];
                line += kHex[byte & 0x0fU];
        }
    }
}

}  // namespace

std::string escapedLogText(std::string_view text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) {
        text.remove_suffix(1);
    }
    const std::size_t left = text.size() > kMaxLogText ? text.size() - kMaxLogText : 0;
    text.remove_suffix(left);

    std::string line;
    line.reserve(text.size());
    std::size_t at = 0;
    while (at < text.size()) {
        const auto* const begin = text.data() + at;
        const auto plain =
            static_cast<std::size_t>(std::find_if_not(begin, text.data() + text.size(), isPlain) - begin);
        line.append(begin, plain);
        at += plain;
        if (at < text.size()) {
            const utf8::Step step = utf8::next(text, at);
            const std::string_view bytes = text.substr(at, step.length);
            if (mayStand(step.character)) {
                line += bytes;
            } else {
                appendEscaped(line, bytes);
            }
            at += step.length;
        }
    }
    if (left > 0) {
        line += " ... (" + std::to_string(left) + " bytes more)";
    }
    return line;
}

}  // namespace host
