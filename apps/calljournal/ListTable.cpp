#include "apps/calljournal/ListTable.h"

#include "apps/calljournal/TextTable.h"

namespace host {

std::string tableText(const std::vector<ListRow>& rows) {
    static const std::vector<std::string> kTitles{"TIME", "NAME", "NUMBER", "CALLS", "DURATION"};
    std::vector<TableRow> lines;
    lines.reserve(rows.size());
    for (const ListRow& row : rows) {
        lines.push_back({row.marked, {row.time, row.name, row.number, row.count, row.duration}});
    }
    return tableText(kTitles, lines);
}

}  // namespace host
