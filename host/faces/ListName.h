#pragma once

#include <optional>
#include <string_view>

namespace host {

/// The five lists of the journal as people name them: on the command line, in JSON, in sentences.
enum class ListName { eMissed, eDialled, eReceived, eForwarded, eCallbacks };

/// "missed", "dialled", "received", "forwarded", "callbacks".
[[nodiscard]] std::string_view wordOf(ListName list) noexcept;
/// The way back; nothing for another word.
[[nodiscard]] std::optional<ListName> listNamed(std::string_view word) noexcept;

}  // namespace host
