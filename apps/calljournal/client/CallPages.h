#pragma once

#include <cstddef>
#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

#include "host/api-client/ApiClient.h"

namespace calljournal {

/// Passes the calls of a running server's history that `query` selects to `visitor` as JSON, in their order,
/// at most `limit` of them. Reads them page by page, so that memory does not grow with the history. Returns
/// the cursor of the next call; null if there is none. Throws what `ApiClient` throws.
nlohmann::ordered_json visitCalls(host::ApiClient& client, const host::ApiClient::Query& query,
                                  std::optional<std::size_t> limit,
                                  const std::function<void(const nlohmann::ordered_json&)>& visitor);

}  // namespace calljournal
