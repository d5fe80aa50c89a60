#pragma once

#include <string>
#include <string_view>

namespace host {

/// The form of names and numbers in a log text.
enum class Parties { eShown, eMasked };

/// The form that the log has; `Log::configure` sets it. `logAppUni` masks the lines of the library. Any
/// thread may call.
[[nodiscard]] Parties loggedParties() noexcept;
void setLoggedParties(Parties parties) noexcept;

// The masked forms of private texts. Pure functions; any thread may call.

/// "+49891234567" -> "**67". A number of up to two characters is masked as a whole; an empty one stays empty.
[[nodiscard]] std::string maskedNumber(std::string_view number);
/// "***", or an empty text for an empty one.
[[nodiscard]] std::string maskedName(std::string_view name);
/// A text of any kind: every number of three digits or more as `maskedNumber`, every word as `maskedName`.
[[nodiscard]] std::string maskedText(std::string_view text);
/// Only its numbers, of five digits or more.
[[nodiscard]] std::string withMaskedNumbers(std::string_view text);

// The form of a private text in a log line of the host: the text itself if `loggedParties` is `eShown`. Any
// thread may call.

/// Otherwise `maskedNumber`.
[[nodiscard]] std::string loggedNumber(std::string_view number);
/// A message or an output of another program. Otherwise `maskedText`.
[[nodiscard]] std::string loggedText(std::string_view text);
/// The words with which another program refuses a request. Otherwise with masked numbers of three digits or
/// more.
[[nodiscard]] std::string loggedReason(std::string_view text);

}  // namespace host
