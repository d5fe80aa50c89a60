#pragma once

#include <nlohmann/json_fwd.hpp>
#include <set>
#include <string>

namespace host {

struct HttpRequest;

// The body of a request as JSON. Both throw `HttpError`: 400 for invalid JSON, `wrongShape` for JSON of
// another shape.

/// A JSON object.
[[nodiscard]] nlohmann::ordered_json jsonObject(const HttpRequest& request, int wrongShape = 422);
/// The ids in {"entryIds": ["...", ...]}.
[[nodiscard]] std::set<std::string> entryIdsIn(const HttpRequest& request, int wrongShape = 422);

/// The ids in "ID,ID". Throws `HttpError` 400 if one is empty.
[[nodiscard]] std::set<std::string> entryIdsIn(const std::string& list);

}  // namespace host
