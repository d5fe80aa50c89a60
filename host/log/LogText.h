#pragma once

#include <string>
#include <string_view>

namespace host {

/// A text as it may stand in a line of the log: control characters, the line and paragraph separators of Unicode, the
/// characters that turn the writing direction round, and bytes that are no UTF-8 are shown as "\n", "\t", "\x1b",
/// "\xe2\x80\xa8". Line breaks at the end are left out; of a text beyond `kMaxLogText` bytes the rest is, and the line says
/// how much. Pure; any thread may call.
[[nodiscard]] std::string escapedLogText(std::string_view text);

inline constexpr std::size_t kMaxLogText = 64U * 1024U;

}  // namespace host
