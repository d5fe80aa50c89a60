#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/client-utils/Utf8.h"

/// Characters that a terminal or a log line must not get as they are. Pure functions; any thread may call.
namespace host {

/// True for characters that move the cursor, change the direction of writing or separate lines, for tag
/// characters, which no program shows, and for invalid bytes.
[[nodiscard]] constexpr bool isUnsafeToPrint(std::uint32_t character) noexcept {
    constexpr struct {
        std::uint32_t first;
        std::uint32_t last;
    } kUnsafe[] = {
        {0x00, 0x1F},     {0x7F, 0x9F},     {0x061C, 0x061C}, {0x200E, 0x200F},
        {0x2028, 0x202E}, {0x2066, 0x2069}, {0xFFF9, 0xFFFB}, {0xE0000, 0xE007F},
    };
    for (const auto& range : kUnsafe) {
        if (character >= range.first && character <= range.last) {
            return true;
        }
    }
    return character == utf8::kInvalid;
}

/// Appends the bytes as "\n", "\r", "\t" or "\x1b".
inline void appendEscaped(std::string& text, std::string_view bytes) {
    constexpr std::string_view kHex = "0123456789abcdef";
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        switch (character) {
            case '\n': text += "\\n"; break;
            case '\r': text += "\\r"; break;
            case '\t': text += "\\t"; break;
            default:
                text += "\\x";
                text += kHex[byte >> 4U];
                text += kHex[byte & 0x0FU];
        }
    }
}

}  // namespace host
