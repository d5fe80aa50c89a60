#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "host/presentation/ListName.h"

/// The journal's items as comma-separated values (RFC 4180), for spreadsheets and other programs. Each row is
/// one call: the members of the item's JSON object, then those of one occurrence; an item's newest call comes
/// first. A callback is one row. Pure functions; any thread may call.
namespace host {

/// The row of titles: the members' names.
[[nodiscard]] std::string csvHeader(ListName list);

/// The rows of an item of that list. Requires: `item` is a result of `itemJson`.
[[nodiscard]] std::string csvRows(ListName list, const nlohmann::ordered_json& item);

}  // namespace host
