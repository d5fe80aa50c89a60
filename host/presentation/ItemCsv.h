#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "host/presentation/ListName.h"

/// The journal's items as comma-separated values (RFC 4180), for spreadsheets and other programs. Each row is
/// one call: the members of the item's JSON object, then those of one occurrence; an item's newest call comes
/// first. A callback is one row. Pure functions; any thread may call.
///
/// A spreadsheet takes a cell that begins with `=`, `+`, `-` or `@` for a formula, and a caller may have any
/// name. Such a cell gets an apostrophe in front, and so does one that begins with an apostrophe, a tab or a
/// line break: a reader that removes one leading apostrophe from each cell gets the original text. Invalid
/// UTF-8 and control characters other than tab and line breaks become U+FFFD.
namespace host {

/// The row of titles: the members' names.
[[nodiscard]] std::string csvHeader(ListName list);

/// The rows of an item of that list. Requires: `item` is a result of `itemJson`.
[[nodiscard]] std::string csvRows(ListName list, const nlohmann::ordered_json& item);

}  // namespace host
