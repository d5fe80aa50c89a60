#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Texts for a terminal. Pure functions; any thread may call.
namespace host {

/// `text` as one line that is safe to show: control characters, line separators and bytes that are no UTF-8 appear as
/// "\n", "\x1b", "\xff". A caller's name can neither break a table nor steer the terminal.
[[nodiscard]] std::string printable(std::string_view text);

/// How many columns a printable text takes: most characters one, East Asian wide ones and emoji two, combining marks none.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

/// `text` with blanks behind it up to `width` columns; a wider one stays as it is.
[[nodiscard]] std::string padded(std::string_view text, std::size_t width);

/// A printable text that takes `width` columns at most: a wider one ends in "…" instead of what is too much.
[[nodiscard]] std::string shortened(std::string_view text, std::size_t width);

/// The time text of a callback, which carries no zone, with the zone that it is in: "2026-11-21T05:22:05Z". Any other text
/// is answered as it is.
[[nodiscard]] std::string utcTime(const std::string& time);

/// A journal time ("2026-11-21T05:22:05Z") in the zone of the user, "2026-11-21 06:22:05". A text that is no such time is
/// shown as it is.
[[nodiscard]] std::string localTime(const std::string& time);

/// The time of day in the zone of the user, "06:22:05".
[[nodiscard]] std::string timeOfDay();

/// "Ann Müller (4711)", or what there is of it; "unknown" when there is nothing. Not made printable.
[[nodiscard]] std::string partyText(const std::string& firstName, const std::string& surname,
                                    const std::string& number);
/// "Ann Müller", or what there is of it.
[[nodiscard]] std::string fullName(const std::string& firstName, const std::string& surname);

}  // namespace host
