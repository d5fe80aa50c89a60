#include "apps/calljournal/client/CallPages.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>

namespace calljournal {
namespace {

/// The server returns no more at a time.
constexpr std::size_t kPageSize = 1000;

}  // namespace

nlohmann::ordered_json visitCalls(host::ApiClient& client, const host::ApiClient::Query& query,
                                  std::optional<std::size_t> limit,
                                  const std::function<void(const nlohmann::ordered_json&)>& visitor) {
    std::size_t left = limit.value_or(std::numeric_limits<std::size_t>::max());
    nlohmann::ordered_json next;
    do {
        host::ApiClient::Query page = query;
        page.emplace_back("limit", std::to_string(std::min(left, kPageSize)));
        if (!next.is_null()) {
            page.emplace_back("cursor", next.get<std::string>());
        }
        const nlohmann::ordered_json response = client.get({"calls"}, page);
        const nlohmann::ordered_json& calls = response["items"];
        std::for_each(calls.begin(), calls.end(), visitor);
        next = response["next"];
        left -= std::min(left, calls.size());
    } while (!next.is_null() && left > 0);
    return next;
}

}  // namespace calljournal
