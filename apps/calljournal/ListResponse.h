#pragma once

#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "apps/calljournal/ListTable.h"
#include "host/presentation/ListName.h"
#include "platform/journal-library/MethodId.h"

namespace host {
class RemoteClient;
}

namespace calljournal {

/// Which items of a list are wanted.
struct ListFilter {
    /// The newest of those that are found; nothing: all.
    std::optional<std::size_t> limit;
    /// Empty: all; else see `SearchText`.
    std::string search;
};

/// A list as it was answered, cut to what is wanted. A plain value.
struct ListResponse {
    /// How many items are found, before the limit cuts them.
    std::size_t total = 0;
    /// How many of those nobody has looked at; 0 for all lists but the missed one.
    std::size_t unviewed = 0;
    std::vector<ListRow> rows;
    /// The text of {"list","total","unviewed","items":[...]}.
    std::string json;
    /// The same items as a CSV file (`ItemCsv.h`), titles included.
    std::string csv;
};

/// The method that answers with the list.
[[nodiscard]] journalxml::MethodId methodFor(host::ListName list) noexcept;

/// Reads the answer to that method; nothing when it is a failure or is no list. Pure; any thread may call.
[[nodiscard]] std::optional<ListResponse> readListResponse(host::ListName list, const std::string& response,
                                                           const ListFilter& filter);

/// Asks a running server for the list. Throws `RemoteError` when it fails.
[[nodiscard]] ListResponse fetchList(host::RemoteClient& client, host::ListName list,
                                     const ListFilter& filter = {});

}  // namespace calljournal
