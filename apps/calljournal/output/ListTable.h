#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "apps/calljournal/output/Colour.h"

namespace calljournal {

/// A row of a table of calls. A plain value; texts are not escaped.
struct ListRow {
    /// Not viewed yet; printed with an asterisk.
    bool marked = false;
    std::string time;
    std::string name;
    std::string number;
    std::string count;
    std::string duration;
    std::string entryId = {};
    /// The destination of a forwarded call.
    std::string forwardedTo = {};
    Emphasis emphasis = Emphasis::eNone;
};

/// The columns of a table of calls after time, name and number.
enum class ListColumns { eCalls, eEntryIds };

/// The rows as a table (`TextTable.h`). Cuts names and numbers so that a row has at most `width` columns; 0:
/// no limit. Pure and thread-safe.
[[nodiscard]] std::string tableText(const std::vector<ListRow>& rows,
                                    ListColumns columns = ListColumns::eCalls, std::size_t width = 0,
                                    bool coloured = false);

}  // namespace calljournal
