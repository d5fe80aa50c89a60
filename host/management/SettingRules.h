#pragma once

#include <string_view>

namespace host {

/// What a setting takes, for people: "true or false"; empty when any text does. Any thread may call.
[[nodiscard]] std::string_view acceptedValues(std::string_view key) noexcept;

/// Whether the journal reads the phone's key, or keeps it itself.
[[nodiscard]] bool isUsedByJournal(std::string_view key) noexcept;

/// Whether the value means something to the phone's key. The management itself takes every text, and what means nothing
/// counts as off or 0 there, which is not what a person who mistypes it wants. An empty text always means "not set".
[[nodiscard]] bool isAccepted(std::string_view key, std::string_view value) noexcept;

}  // namespace host
