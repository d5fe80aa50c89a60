#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Texts for a terminal. Pure functions; any thread may call.
namespace host {

/// `text` as one line that is safe to print: control characters, line separators, marks of the writing
/// direction and bytes that are no UTF-8 appear as "\n", "\x1b", "\xff". Of a run of characters without
/// width, such as accents, the first eight remain. A caller's name can neither break a table nor control the
/// terminal.
[[nodiscard]] std::string printable(std::string_view text);

/// The number of columns of a printable text (Unicode Standard Annex 11): most characters have one, East
/// Asian wide ones and emoji two, combining marks none.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

/// `text` with blanks appended up to `width` columns; a wider one is unchanged.
[[nodiscard]] std::string padded(std::string_view text, std::size_t width);

/// A printable text cut to `width` columns: a wider one ends in "…".
[[nodiscard]] std::string shortened(std::string_view text, std::size_t width);

/// The time of a callback, which carries no zone, with its zone: "2026-11-21T05:22:05Z". Any other text is
/// returned unchanged.
[[nodiscard]] std::string utcTime(const std::string& time);

/// A journal time ("2026-11-21T05:22:05Z") in the user's zone, "2026-11-21 06:22:05". A text that is no such
/// time is returned unchanged.
[[nodiscard]] std::string localTime(const std::string& time);

/// The current time of day in the user's zone, "06:22:05".
[[nodiscard]] std::string timeOfDay();

/// "Ann Müller (4711)", or the parts that are not empty; "unknown" if all are. Not escaped for a terminal.
[[nodiscard]] std::string partyText(const std::string& firstName, const std::string& surname,
                                    const std::string& number);
/// "Ann Müller", or the part that is not empty.
[[nodiscard]] std::string fullName(const std::string& firstName, const std::string& surname);

}  // namespace host
