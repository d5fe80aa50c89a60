#include "apps/calljournal/output/CsvTable.h"

#include <algorithm>
#include <cctype>

#include "host/text-files/CsvCell.h"

namespace calljournal {
namespace {

std::string lineOf(const std::vector<std::string>& cells) {
    std::string line;
    for (std::size_t at = 0; at < cells.size(); ++at) {
        line += (at == 0 ? "" : ",") + host::csvCell(cells[at]);
    }
    return line + "\r\n";
}

}  // namespace

std::string csvTable(const std::vector<std::string>& titles, const std::vector<TableRow>& rows) {
    std::vector<std::string> names = titles;
    for (std::string& name : names) {
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char each) { return static_cast<char>(std::tolower(each)); });
    }
    std::string text = lineOf(names);
    for (const TableRow& row : rows) {
        text += lineOf(row.cells);
    }
    return text;
}

}  // namespace calljournal
