#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace host {

/// The origin of an http or https URL as browsers write it, in small letters and without the usual port:
/// "https://phone.example" of "https://Phone.example:443/journal/". std::nullopt for a text that is no such
/// URL, or has a user, a query or a fragment. Pure.
[[nodiscard]] std::optional<std::string> originOf(std::string_view url);

/// The origin of the URL of a receiver, which may have a user and a query: without them it can be logged.
/// std::nullopt for any other text, also for one with a port that does not exist. Pure.
[[nodiscard]] std::optional<std::string> receiverOrigin(std::string_view url);

}  // namespace host
