#include "apps/calljournal/output/ListTable.h"

#include "apps/calljournal/output/TextTable.h"

namespace calljournal {

std::string tableText(const std::vector<ListRow>& rows, ListColumns columns, std::size_t width,
                      bool coloured) {
    const bool withIds = columns == ListColumns::eEntryIds;
    std::vector<TableRow> lines;
    lines.reserve(rows.size());
    for (const ListRow& row : rows) {
        std::vector<std::string> cells{row.time, row.name, row.number};
        if (withIds) {
            cells.push_back(row.entryId);
        } else {
            cells.insert(cells.end(), {row.forwardedTo, row.count, row.duration});
        }
        lines.push_back({row.marked, std::move(cells), row.emphasis});
    }
    std::vector<std::string> titles{"TIME", "NAME", "NUMBER"};
    if (withIds) {
        titles.emplace_back("ENTRY ID");
    } else {
        titles.insert(titles.end(), {"FORWARDED TO", "CALLS", "DURATION"});
    }
    return tableText(
        titles, lines,
        {width, withIds ? std::vector<std::size_t>{1, 2} : std::vector<std::size_t>{1, 3, 2}, coloured});
}

}  // namespace calljournal
