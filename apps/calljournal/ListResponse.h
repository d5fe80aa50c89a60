#pragma once

#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "apps/calljournal/ListTable.h"
#include "host/presentation/ListName.h"

namespace host {
class RemoteClient;
}

namespace calljournal {

/// Selects items of a list.
struct ListFilter {
    /// The number of items, the newest first; std::nullopt: all.
    std::optional<std::size_t> limit;
    /// See `SearchText`; empty: all items match.
    std::string search;
};

/// The selected items of a list in three formats. A plain value.
struct ListResponse {
    /// The number of items that match the search, regardless of the limit.
    std::size_t total = 0;
    /// The number of those that are not viewed; 0 for all lists but the missed one.
    std::size_t unviewed = 0;
    std::vector<ListRow> rows;
    /// The text of {"list","total","unviewed","items":[...]}.
    std::string json;
    /// The same items as a CSV file (`ItemCsv.h`), titles included.
    std::string csv;
};

/// Parses the response of the method that returns the list; std::nullopt for a failure and for a text that is
/// not a list. Pure and thread-safe.
[[nodiscard]] std::optional<ListResponse> readListResponse(ListName list, const std::string& response,
                                                           const ListFilter& filter);

/// Requests the list from a running server. Throws `RemoteError` if the request fails.
[[nodiscard]] ListResponse fetchList(host::RemoteClient& client, ListName list,
                                     const ListFilter& filter = {});

/// Prints on the standard error output that older entries of the list are stored and not loaded, if there are
/// any: a list that is printed does not contain them. Throws `RemoteError` if the server does not respond.
void reportUnloaded(host::RemoteClient& client, ListName list);

}  // namespace calljournal
