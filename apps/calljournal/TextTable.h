#pragma once

#include <string>
#include <vector>

namespace host {

/// One line of a table. A plain value; texts stand as they were received.
struct TableRow {
    /// Shown with an asterisk before the line.
    bool marked = false;
    /// As many as there are titles.
    std::vector<std::string> cells;
};

/// The rows as a table for a terminal, with a line of titles; columns that are empty in every row are left out, and what
/// could disturb a terminal is made visible. Empty without rows. Pure; any thread may call.
[[nodiscard]] std::string tableText(const std::vector<std::string>& titles,
                                    const std::vector<TableRow>& rows);

}  // namespace host
