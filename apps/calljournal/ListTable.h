#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace calljournal {

/// One line of a table of calls. A plain value; texts stand as the journal has them.
struct ListRow {
    /// Not looked at yet: shown with an asterisk.
    bool marked = false;
    std::string time;
    std::string name;
    std::string number;
    std::string count;
    std::string duration;
    std::string entryId = {};
};

/// What a table of calls shows behind time, name and number.
enum class ListColumns { eCalls, eEntryIds };

/// The rows as a table (`TextTable.h`) of `width` columns, 0 for as many as it needs: names and numbers are cut. Pure; any
/// thread may call.
[[nodiscard]] std::string tableText(const std::vector<ListRow>& rows,
                                    ListColumns columns = ListColumns::eCalls, std::size_t width = 0);

}  // namespace calljournal
