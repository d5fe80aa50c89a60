#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "apps/calljournal/output/Colour.h"

namespace calljournal {

/// A row of a table. A plain value; texts are not escaped.
struct TableRow {
    /// Printed with an asterisk before the row.
    bool marked = false;
    /// One for each title.
    std::vector<std::string> cells;
    /// The emphasis on a terminal with colours.
    Emphasis emphasis = Emphasis::eNone;
};

/// The width limit of a table. A plain value.
struct TableFit {
    /// The number of terminal columns of a row; 0: no limit.
    std::size_t width = 0;
    /// The positions of the table's columns that may be cut, in this order. A cut text ends in "…". A column
    /// is not cut below a few characters, so a row can still be longer than `width`.
    std::vector<std::size_t> cut;
    /// True to show the emphasis of rows, and the titles in bold.
    bool coloured = false;
};

/// The rows as a table for a terminal, with a row of titles. Leaves out columns that are empty in every row
/// and escapes control characters. Empty if there are no rows. Pure and thread-safe.
[[nodiscard]] std::string tableText(const std::vector<std::string>& titles, const std::vector<TableRow>& rows,
                                    const TableFit& fit = {});

/// The terminal columns of the longest row of that table without a limit. Pure and thread-safe.
[[nodiscard]] std::size_t tableWidth(const std::vector<std::string>& titles,
                                     const std::vector<TableRow>& rows);

}  // namespace calljournal
