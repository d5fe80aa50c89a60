#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "host/presentation/ListName.h"

/// The journal's items as comma-separated values (RFC 4180), for spreadsheets and other programs. Each row is
/// one call: the members of the item's JSON object, then those of one occurrence; an item's newest call comes
/// first. A callback is one row. Pure functions; any thread may call.
namespace host {

/// The rows of an item of that list. Members that `itemJson` does not set are left out.
[[nodiscard]] std::string csvRows(ListName list, const nlohmann::ordered_json& item);

/// A whole file: the row of titles, which are the members' names, and the rows of the items.
[[nodiscard]] std::string csvText(ListName list, const nlohmann::ordered_json& items);

}  // namespace host
