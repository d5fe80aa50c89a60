#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// Texts of numbers as they are dialled. Pure functions, thread-safe.

/// The most digits of an internal number.
inline constexpr std::size_t kLongestExtension = 5;

/// `text` without the separators between digits: blanks of any width, dashes, dots, slashes, parentheses, and
/// marks of the writing direction, which address books and web pages use.
[[nodiscard]] std::string withoutSeparators(std::string_view text);

/// True for digits, "*" and "#", after a "+" if there is one.
[[nodiscard]] bool isDialledNumber(std::string_view dialled);

/// The codes without separators, sorted; empty ones are left out.
[[nodiscard]] std::vector<std::string> dialledCodes(const std::vector<std::string>& codes);

[[nodiscard]] bool beginsWithOneOf(const std::vector<std::string>& codes, const std::string& dialled);

/// True for extensions, and for numbers that contain "*" or "#" or begin with one of the codes.
[[nodiscard]] bool isExtensionOrCode(const std::string& dialled, const std::vector<std::string>& codes);

}  // namespace host
