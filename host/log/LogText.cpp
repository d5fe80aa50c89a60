#include "host/log/LogText.h"

#include <algorithm>

#include "host/limits/UnsafeCharacters.h"
#include "platform/client-utils/Utf8.h"

namespace host {
namespace {

bool isPlain(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte >= 0x20 && byte < 0x7f;
}

}  // namespace

std::string escapedLogText(std::string_view text) {
    std::string line;
    line.reserve(text.size());
    appendLogText(line, text);
    return line;
}

void appendLogText(std::string& line, std::string_view text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) {
        text.remove_suffix(1);
    }
    const std::size_t left = text.size() > kMaxLogText ? text.size() - kMaxLogText : 0;
    text.remove_suffix(left);

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
            if (isUnsafeToPrint(step.character)) {
                appendEscaped(line, bytes);
            } else {
                line += bytes;
            }
            at += step.length;
        }
    }
    if (left > 0) {
        line += " ... (" + std::to_string(left) + " bytes more)";
    }
}

}  // namespace host
