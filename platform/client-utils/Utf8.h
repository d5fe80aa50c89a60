#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// UTF-8 as XML sees it. Pure functions; any thread may call.
namespace utf8 {

/// One decoded character: its length in bytes (at least 1 unless the text is at its end) and the code point.
/// A byte that does not begin a valid sequence (RFC 3629: no overlong forms, surrogates or values above
/// U+10FFFF) gives `kInvalid` and length 1.
struct Step {
    std::size_t length = 0;
    std::uint32_t character = 0;
};
inline constexpr std::uint32_t kInvalid = 0xffffffffU;

[[nodiscard]] Step next(std::string_view text, std::size_t at) noexcept;

/// True if XML 1.0 allows the character in a document.
[[nodiscard]] bool isXmlCharacter(std::uint32_t character) noexcept;

/// True if the whole text is valid UTF-8 of characters that XML 1.0 allows.
[[nodiscard]] bool isXmlText(std::string_view text) noexcept;

/// Appends a character. Requires: it is a valid code point.
void append(std::string& text, std::uint32_t character);

}  // namespace utf8
