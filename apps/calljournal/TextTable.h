#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace calljournal {

/// One line of a table. A plain value; texts stand as they were received.
struct TableRow {
    /// Shown with an asterisk before the line.
    bool marked = false;
    /// As many as there are titles.
    std::vector<std::string> cells;
};

/// How a table keeps to the width of a terminal. A plain value.
struct TableFit {
    /// How many columns a line may take; 0: as many as it needs.
    std::size_t width = 0;
    /// The positions of the table's columns that may be cut where a line would be longer, the first one first. A cut text
    /// ends in "…". When all are down to a few characters, lines are longer after all.
    std::vector<std::size_t> cut;
};

/// The rows as a table for a terminal, with a line of titles; columns that are empty in every row are left out, and what
/// could disturb a terminal is made visible. Empty without rows. Pure; any thread may call.
[[nodiscard]] std::string tableText(const std::vector<std::string>& titles, const std::vector<TableRow>& rows,
                                    const TableFit& fit = {});

}  // namespace calljournal
