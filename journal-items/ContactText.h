#pragma once

#include <charconv>
#include <cstdint>
#include <string>
#include <system_error>

/// The text form of `Contact::serialize`: "name=value;", with every byte that could break the format written
/// as "\xHH". Only `Contact` uses it. Pure functions; any thread may call.
namespace contacttext {

/// True if `byte` is written unchanged. Separators, the backslash and control characters are escaped; bytes
/// from 0x80 on are not, so that a UTF-8 name stays readable.
[[nodiscard]] inline bool isPlain(unsigned char byte) noexcept {
    return byte >= 0x20 && byte != 0x7f && byte != ';' && byte != ',' && byte != '=' && byte != '\\';
}

[[nodiscard]] inline std::string escape(const std::string& value) {
    static constexpr char kHex[] = "0123456789abcdef";
    std::string text;
    text.reserve(value.size());
    for (const char character : value) {
        const auto byte = static_cast<unsigned char>(character);
        if (isPlain(byte)) {
            text += character;
        } else {
            text += "\\x";
            text += kHex[byte >> 4U];
            text += kHex[byte & 0x0fU];
        }
    }
    return text;
}

/// Returns false, with `value` unchanged, if a backslash is not followed by "x" and two hexadecimal digits.
[[nodiscard]] inline bool unescape(const std::string& text, std::string& value) {
    std::string read;
    read.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '\\') {
            read += text[at];
            continue;
        }
        unsigned byte = 0;
        if (at + 3 >= text.size() || text[at + 1] != 'x') {
            return false;
        }
        const char* const digits = text.data() + at + 2;
        const auto result = std::from_chars(digits, digits + 2, byte, 16);
        if (result.ec != std::errc{} || result.ptr != digits + 2) {
            return false;
        }
        read += static_cast<char>(byte);
        at += 3;
    }
    value = read;
    return true;
}

/// Reads a whole decimal number. Returns false, with `number` unchanged, if it does not fit.
[[nodiscard]] inline bool number(const std::string& text, std::int32_t& value) noexcept {
    std::int32_t read = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, read);
    if (result.ec != std::errc{} || result.ptr != end) {
        return false;
    }
    value = read;
    return true;
}

inline void append(std::string& line, const char* name, const std::string& value) {
    if (!value.empty()) {
        line += name;
        line += '=';
        line += escape(value);
        line += ';';
    }
}

inline void append(std::string& line, const char* name, std::int32_t value) {
    if (value != 0) {
        append(line, name, std::to_string(value));
    }
}

}  // namespace contacttext
