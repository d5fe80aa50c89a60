#include "host/presentation/PlainText.h"

#include <unicode/uchar.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <optional>

#include "host/limits/UnsafeCharacters.h"
#include "platform/client-utils/Utf8.h"

namespace host {
namespace {

/// The columns of a character in a terminal. A byte that is no UTF-8 counts as one.
std::size_t columnsOf(std::uint32_t codePoint) {
    if (codePoint == utf8::kInvalid) {
        return 1;
    }
    const auto character = static_cast<UChar32>(codePoint);
    const int width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
    if (width == U_EA_WIDE || width == U_EA_FULLWIDTH) {
        return 2;
    }
    constexpr UChar32 kSoftHyphen = 0xAD;
    const bool combines = (U_GET_GC_MASK(character) & (U_GC_MN_MASK | U_GC_ME_MASK)) != 0;
    const bool invisible =
        character != kSoftHyphen && u_hasBinaryProperty(character, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) != 0;
    return combines || invisible ? 0 : 1;
}

/// More marks on one character make no letter of any script.
constexpr std::size_t kMaxMarks = 8;

/// `std::nullopt` if the time has no local form.
std::optional<std::tm> localFields(std::time_t seconds) {
    tzset();  // the machine's zone may have changed
    std::tm local{};
    return localtime_r(&seconds, &local) == nullptr ? std::nullopt : std::optional(local);
}

}  // namespace

std::string printable(std::string_view text) {
    std::string line;
    std::size_t marks = 0;
    for (std::size_t at = 0; at < text.size();) {
        const utf8::Step step = utf8::next(text, at);
        const std::string_view bytes = text.substr(at, step.length);
        if (isUnsafeToPrint(step.character)) {
            appendEscaped(line, bytes);
            marks = 0;
        } else {
            marks = columnsOf(step.character) == 0 ? marks + 1 : 0;
            line += marks > kMaxMarks ? std::string_view() : bytes;
        }
        at += step.length;
    }
    return line;
}

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    for (std::size_t at = 0; at < text.size();) {
        const utf8::Step step = utf8::next(text, at);
        width += columnsOf(step.character);
        at += step.length;
    }
    return width;
}

std::string shortened(std::string_view text, std::size_t width) {
    if (width == 0 || displayWidth(text) <= width) {
        return std::string(width == 0 ? std::string_view() : text);
    }
    std::size_t left = width - 1;
    std::size_t at = 0;
    for (;;) {
        const utf8::Step step = utf8::next(text, at);
        const std::size_t columns = columnsOf(step.character);
        if (columns > left) {
            return std::string(text.substr(0, at)) + "…";
        }
        left -= columns;
        at += step.length;
    }
}

std::string padded(std::string_view text, std::size_t width) {
    const std::size_t used = displayWidth(text);
    return std::string(text) + std::string(width > used ? width - used : 0, ' ');
}

std::string utcTime(const std::string& time) {
    std::tm utc{};
    const char* const end = strptime(time.c_str(), "%Y-%m-%dT%H:%M:%S", &utc);
    return end != nullptr && *end == '\0' ? time + "Z" : time;
}

std::string localTime(const std::string& time) {
    std::tm utc{};
    const char* const end = strptime(time.c_str(), "%Y-%m-%dT%H:%M:%SZ", &utc);
    if (end == nullptr || *end != '\0') {
        return time;
    }
    const std::time_t seconds = timegm(&utc);
    const auto local = localFields(seconds);
    std::array<char, 32> text{};
    if (!local || std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &*local) == 0) {
        return time;
    }
    return text.data();
}

std::string timeOfDay() {
    std::array<char, 16> text{};
    if (const auto local = localFields(std::time(nullptr))) {
        std::strftime(text.data(), text.size(), "%H:%M:%S", &*local);
    }
    return text.data();
}

std::string fullName(const std::string& firstName, const std::string& surname) {
    return firstName + (firstName.empty() || surname.empty() ? "" : " ") + surname;
}

std::string partyText(const std::string& firstName, const std::string& surname, const std::string& number) {
    const std::string name = fullName(firstName, surname);
    if (name.empty()) {
        return number.empty() ? "unknown" : number;
    }
    return number.empty() || number == name ? name : name + " (" + number + ")";
}

}  // namespace host
