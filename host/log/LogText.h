#pragma once

#include <string>
#include <string_view>

namespace host {

/// Returns `text` as it is safe to log: control characters, the Unicode line and paragraph separators, the
/// characters that change the writing direction, and invalid UTF-8 become "\n", "\t", "\x1b", "\xe2\x80\xa8".
/// Removes line breaks at the end. Cuts a text of more than `kMaxLogText` bytes and appends the number of
/// bytes that are missing. Pure; any thread may call.
[[nodiscard]] std::string escapedLogText(std::string_view text);
/// Appends it to a line.
void appendLogText(std::string& line, std::string_view text);

inline constexpr std::size_t kMaxLogText = 16U * 1024U;

}  // namespace host
