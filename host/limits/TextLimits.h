#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The longest texts that the host takes from the switch, from clients and from files, in bytes of UTF-8. A
/// longer text of the switch is cut, because its call must not be lost; a user's is refused with a message.
namespace host::limits {

/// Names, e-mail addresses, ids, words: texts of one line.
inline constexpr std::size_t kNameBytes = 1024;
/// Telephone numbers and device ids, with their separators or as URIs.
inline constexpr std::size_t kNumberBytes = 256;
/// Postal addresses, addresses of pictures, notes, values of settings, private data of the switch.
inline constexpr std::size_t kTextBytes = 4096;
/// More digits make no telephone number: the longest have 15, the longest prefixes and extensions fewer.
inline constexpr std::size_t kMaxDigits = 32;

/// The beginning of `text` that has at most `bytes` bytes and does not end inside a character.
[[nodiscard]] constexpr std::string_view cut(std::string_view text, std::size_t bytes) noexcept {
    if (text.size() <= bytes) {
        return text;
    }
    while (bytes > 0 && (static_cast<unsigned char>(text[bytes]) & 0xC0U) == 0x80U) {
        --bytes;
    }
    return text.substr(0, bytes);
}

/// "surname is longer than 1024 bytes"
[[nodiscard]] inline std::string tooLong(std::string_view what, std::size_t bytes) {
    return std::string(what) + " is longer than " + std::to_string(bytes) + " bytes";
}

}  // namespace host::limits
