#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "host/presentation/ListName.h"

/// The journal's items as comma-separated values (RFC 4180), for spreadsheets and other programs. A line is a call: the
/// members of the item's JSON object, then those of one occurrence; an item's newest call comes first. A callback is one
/// line. Pure functions; any thread may call.
///
/// A spreadsheet takes a cell that begins with `=`, `+`, `-` or `@` for a formula, and a caller may be named anything. Such
/// a cell has an apostrophe in front, and so has one that begins with an apostrophe, a tab or a line break: a reader takes
/// one apostrophe off every cell that begins with one, and has what the journal has. Bytes that are no UTF-8 and control
/// characters but tab and line breaks become U+FFFD.
namespace host {

/// The line of titles: the members' names.
[[nodiscard]] std::string csvTitles(ListName list);

/// The lines of an item of that list, as `itemJson` made it.
[[nodiscard]] std::string csvLines(ListName list, const nlohmann::ordered_json& item);

}  // namespace host
