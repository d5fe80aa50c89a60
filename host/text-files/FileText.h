#pragma once

#include <string>
#include <string_view>

/// Helpers for the texts of files. Pure functions; any thread may call.
namespace host {

/// True if the text is valid UTF-8; control characters are allowed.
[[nodiscard]] bool isUtf8(std::string_view text);

/// A text as a contact's field may be: without control characters other than line feed and tab, and without
/// white space at both ends; bytes that are no UTF-8 become U+FFFD.
[[nodiscard]] std::string cleaned(std::string_view text);

/// The text without white space at both ends.
[[nodiscard]] std::string_view stripped(std::string_view text);

/// The text with its ASCII letters in upper or lower case; everything else is unchanged.
[[nodiscard]] std::string upper(std::string_view text);
[[nodiscard]] std::string lower(std::string_view text);

/// True if `text` begins with `start`, ignoring the case of ASCII letters. Requires: `start` is in lower
/// case.
[[nodiscard]] bool beginsWith(std::string_view text, std::string_view start);

}  // namespace host
