#include "host/log/LogFormat.h"

#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <string_view>

#include "host/log/LogText.h"
#include "host/log/PrivateText.h"

namespace host {
namespace {

constexpr int kWarning = 3;

/// Appends the text that `std::vprintf` would print.
__attribute__((format(printf, 2, 0))) void appendPrinted(std::string& line, const char* format,
                                                         std::va_list arguments) {
    // Most texts are shorter.
    std::array<char, 512> buffer;  // NOLINT(cppcoreguidelines-pro-type-member-init): it is written below.
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    if (length < 0) {
        appendLogText(line, format);
    } else if (static_cast<std::size_t>(length) < buffer.size()) {
        appendLogText(line, {buffer.data(), static_cast<std::size_t>(length)});
    } else {
        std::string text(static_cast<std::size_t>(length), '\0');
        std::vsnprintf(text.data(), text.size() + 1, format, again);
        appendLogText(line, text);
    }
    va_end(again);
}

template <typename Text>
std::string framed(const LogMessage& message, Text appendText) {
    constexpr std::size_t kUsualLength = 200;
    std::string line;
    line.reserve(kUsualLength);
    line += '[';
    appendLogText(line, message.component == nullptr ? "" : message.component);
    line += "] ";
    appendText(line);
    line += " (";
    appendLogText(line, message.sourceFile == nullptr ? "" : message.sourceFile);
    line += ':';
    line += std::to_string(message.line);
    line += ')';
    return line;
}

/// True for a text in the image of the program or of a library, such as the name of a function.
bool isConstant(const char* text) {
    Dl_info image{};
    return ::dladdr(text, &image) != 0;
}

std::string maskedArgument(const char* text, int level) {
    if (text == nullptr) {
        return "(null)";
    }
    if (isConstant(text)) {
        return text;
    }
    return level <= kWarning ? withMaskedNumbers(text) : maskedText(text);
}

/// The size of an integer argument: "hh" and "h" are passed as int.
bool isLong(std::string_view conversion) {
    return conversion.find_first_of("ljzt") != std::string_view::npos;
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
template <typename Value>
std::string printed(const std::string& conversion, Value value) {
    std::array<char, 400> buffer{};  // the longest double
    std::snprintf(buffer.data(), buffer.size(), conversion.c_str(), value);
    return buffer.data();
}
#pragma GCC diagnostic pop

/// The text of one conversion with its argument; std::nullopt for one that is not known, with an argument of
/// unknown size.
std::optional<std::string> converted(const std::string& conversion, int level, std::va_list& arguments) {
    switch (conversion.back()) {
        case '%': return "%";
        case 's': return maskedArgument(va_arg(arguments, const char*), level);
        case 'd':
        case 'i':
        case 'u':
        case 'x':
        case 'X':
        case 'c':
            return isLong(conversion) ? printed(conversion, va_arg(arguments, long))
                                      : printed(conversion, va_arg(arguments, int));
        case 'f':
        case 'g':
        case 'e': return printed(conversion, va_arg(arguments, double));
        case 'p': return printed(conversion, va_arg(arguments, void*));
        default: return std::nullopt;
    }
}

std::string maskedPrint(const LogMessage& message, std::va_list& arguments) {
    const std::string_view format = message.format;
    std::string text;
    std::size_t at = 0;
    while (at < format.size()) {
        const std::size_t begin = std::min(format.find('%', at), format.size());
        text += format.substr(at, begin - at);
        if (begin == format.size()) {
            break;
        }
        const std::size_t end = format.find_first_of("%sdiuxXcfgepn*", begin + 1);
        const auto part =
            end == std::string_view::npos
                ? std::nullopt
                : converted(std::string(format.substr(begin, end + 1 - begin)), message.level, arguments);
        if (!part) {
            return text + "...";
        }
        text += *part;
        at = end + 1;
    }
    return text;
}

}  // namespace

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
std::string logLine(const LogMessage& message, std::va_list arguments) {
    return framed(message, [&](std::string& line) { appendPrinted(line, message.format, arguments); });
}
#pragma GCC diagnostic pop

std::string maskedLogLine(const LogMessage& message, std::va_list arguments) {
    std::va_list own;
    va_copy(own, arguments);
    const std::string text = maskedPrint(message, own);
    va_end(own);
    return framed(message, [&text](std::string& line) { appendLogText(line, text); });
}

}  // namespace host
