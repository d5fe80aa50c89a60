#pragma once

#include <nlohmann/json_fwd.hpp>
#include <set>
#include <string>

namespace host {

struct HttpRequest;

/// The body of a request as JSON. Each throws `HttpError`: 400 for what is no JSON, 422 for JSON of another shape.
[[nodiscard]] nlohmann::ordered_json jsonObject(const HttpRequest& request);
/// {"entryIds": ["...", ...]}.
[[nodiscard]] std::set<std::string> entryIdsIn(const HttpRequest& request);

}  // namespace host
