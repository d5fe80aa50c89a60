#pragma once

#include <string>
#include <string_view>

/// Texts as they stand in files. Pure functions; any thread may call.
namespace host {

/// Whether every byte belongs to a valid UTF-8 character; control characters are ones too.
[[nodiscard]] bool isUtf8(std::string_view text);

/// What a field of a contact may be: control characters other than line feed and tab, and white space at both ends, are
/// left out; bytes that are no UTF-8 become U+FFFD.
[[nodiscard]] std::string cleaned(std::string_view text);

/// Without white space at both ends.
[[nodiscard]] std::string_view stripped(std::string_view text);

/// ASCII letters in the other case; everything else as it is.
[[nodiscard]] std::string upper(std::string_view text);
[[nodiscard]] std::string lower(std::string_view text);

/// Whether `text` begins with `start`, in ASCII capital or small letters; `start` is in small ones.
[[nodiscard]] bool beginsWith(std::string_view text, std::string_view start);

}  // namespace host
