#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// The five lists of the journal as people name them: on the command line, in JSON, in sentences.
enum class ListName { eMissed, eDialled, eReceived, eForwarded, eCallbacks };

/// "missed", "dialled", "received", "forwarded", "callbacks".
[[nodiscard]] std::string_view wordOf(ListName list) noexcept;
/// The way back; nothing for another word.
[[nodiscard]] std::optional<ListName> listNamed(std::string_view word) noexcept;

/// What an entry of the list is: "missed call", "callback".
[[nodiscard]] std::string entryWord(ListName list);
/// "1 missed call", "2 callbacks": so many entries of the list.
[[nodiscard]] std::string countText(ListName list, std::size_t count);

}  // namespace host
