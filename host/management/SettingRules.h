#pragma once

#include <string_view>

namespace host {

// The valid values of the settings. Pure functions; any thread may call.

/// Returns the values that the setting accepts, for display: "true or false". Returns an empty text if it
/// accepts any text.
[[nodiscard]] std::string_view acceptedValues(std::string_view key) noexcept;

/// Returns a sentence about the effect of the setting; an empty text if it has none on the journal.
[[nodiscard]] std::string_view meaningOf(std::string_view key) noexcept;

/// True if the journal reads the phone's key or stores it itself.
[[nodiscard]] bool isUsedByJournal(std::string_view key) noexcept;

/// True if the value is valid for the phone's key. An empty text means "not set" and is valid for all keys
/// but three, which need a value. The management itself accepts any text, and the journal treats an invalid
/// one as off or 0, which would hide a typing error.
[[nodiscard]] bool isAccepted(std::string_view key, std::string_view value) noexcept;

}  // namespace host
