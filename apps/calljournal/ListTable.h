#pragma once

#include <string>
#include <vector>

namespace host {

/// One line of a table of calls. A plain value; texts stand as the journal has them.
struct ListRow {
    /// Not looked at yet: shown with an asterisk.
    bool marked = false;
    std::string time;
    std::string name;
    std::string number;
    std::string count;
    std::string duration;
};

/// The rows as a table for a terminal, with a line of titles; columns that are empty in every row are left out, and what
/// could disturb a terminal is made visible. Empty without rows. Pure; any thread may call.
[[nodiscard]] std::string tableText(const std::vector<ListRow>& rows);

}  // namespace host
