#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// UTF-8 as XML sees it. Pure functions; any thread may call.
namespace utf8 {

/// One step of reading: how many bytes were taken (at least 1 unless the text is at its end) and the
/// character, or `kInvalid` when the byte does not begin a valid sequence (overlong forms, surrogates and
/// values beyond U+10FFFF are invalid too); exactly one byte is taken then.
struct Step {
    std::size_t length = 0;
    std::uint32_t character = 0;
};
inline constexpr std::uint32_t kInvalid = 0xffffffffU;

[[nodiscard]] Step next(std::string_view text, std::size_t at) noexcept;

/// Whether XML 1.0 allows the character in a document.
[[nodiscard]] bool isXmlCharacter(std::uint32_t character) noexcept;

/// Whether the whole text is valid UTF-8 made of characters that XML 1.0 allows.
[[nodiscard]] bool isXmlText(std::string_view text) noexcept;

/// Appends a character, which must be a valid one.
void append(std::string& text, std::uint32_t character);

}  // namespace utf8
