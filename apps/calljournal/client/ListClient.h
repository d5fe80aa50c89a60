#pragma once

#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "apps/calljournal/output/ListTable.h"
#include "host/presentation/ListName.h"

namespace host {
class ApiClient;
}

/// The lists of a running server. The functions throw what `ApiClient` throws.
namespace calljournal {

/// Selects items of a list.
struct ListFilter {
    /// The number of items, the newest first; std::nullopt: all.
    std::optional<std::size_t> limit;
    /// Empty: all items match.
    std::string search;
};

/// Returns {"list","total","unviewed","items":[...]}.
[[nodiscard]] nlohmann::ordered_json fetchList(host::ApiClient& client, ListName list,
                                               const ListFilter& filter = {});

/// Returns the item with an entry id or a unique id; std::nullopt if the list has none.
[[nodiscard]] std::optional<nlohmann::ordered_json> findEntry(host::ApiClient& client, ListName list,
                                                              const std::string& id);

/// An item as a row of a table. Pure.
[[nodiscard]] ListRow rowOf(const nlohmann::ordered_json& item);

/// True if the running journal is switched off, which clears its lists. False for a client whose token may
/// not read that.
[[nodiscard]] bool isJournalOff(host::ApiClient& client);

}  // namespace calljournal
