#include "apps/calljournal/TextTable.h"

#include <algorithm>
#include <cstddef>

#include "host/faces/PlainText.h"

namespace host {
namespace {

/// The column's width; 0 when no row has a value for it.
std::size_t widthOf(std::size_t column, const std::string& title, const std::vector<TableRow>& rows) {
    std::size_t width = 0;
    for (const TableRow& row : rows) {
        width = std::max(width, displayWidth(printable(row.cells[column])));
    }
    return width == 0 ? 0 : std::max(width, displayWidth(title));
}

std::string lineOf(const TableRow& row, const std::vector<std::size_t>& widths) {
    std::string line = row.marked ? "* " : "  ";
    for (std::size_t column = 0; column < widths.size(); ++column) {
        if (widths[column] > 0) {
            line += padded(printable(row.cells[column]), widths[column] + 2);
        }
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + '\n';
}

}  // namespace

std::string tableText(const std::vector<std::string>& titles, const std::vector<TableRow>& rows) {
    if (rows.empty()) {
        return {};
    }
    std::vector<std::size_t> widths;
    for (std::size_t column = 0; column < titles.size(); ++column) {
        widths.push_back(widthOf(column, titles[column], rows));
    }
    std::string text = lineOf({false, titles}, widths);
    for (const TableRow& row : rows) {
        text += lineOf(row, widths);
    }
    return text;
}

}  // namespace host
