#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace calljournal {

// Members of the API's JSON objects as texts, not escaped for a terminal. Pure and thread-safe.

/// The text of a member; a number or a boolean as JSON. Empty if the object has no such member, or null.
[[nodiscard]] std::string textIn(const nlohmann::ordered_json& object, const std::string& member);

/// The name that is shown for an item or a call: "displayName", else the name as it was filed ("name", or
/// "firstName" and "surname").
[[nodiscard]] std::string nameIn(const nlohmann::ordered_json& object);

}  // namespace calljournal
