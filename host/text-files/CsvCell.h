#pragma once

#include <string>
#include <string_view>

/// Cells of files with comma-separated values (RFC 4180), for spreadsheets and programs. Pure functions;
/// any thread may call.
///
/// A spreadsheet takes a cell that begins with `=`, `+`, `-` or `@`, in their full width too, for a
/// formula, and a caller may have any name. Such a cell gets an apostrophe in front, and so does one that
/// begins with an apostrophe, a tab or a line break. Invalid UTF-8 and control characters other than tab
/// and line breaks become U+FFFD.
namespace host {

/// The cell for a text that may come from anywhere.
[[nodiscard]] std::string csvCell(std::string_view text);

/// The text of a cell that `csvCell` wrote and `CsvRows` read: without the apostrophe that it got. Any other
/// cell is unchanged, also "'t Hooft" of another program.
[[nodiscard]] std::string textOfCsvCell(std::string cell);

/// The text as a cell, in quotation marks if it needs them; nothing else is changed.
[[nodiscard]] std::string quotedCell(std::string text);

}  // namespace host
