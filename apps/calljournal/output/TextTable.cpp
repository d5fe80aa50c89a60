#include "apps/calljournal/output/TextTable.h"

#include <algorithm>
#include <numeric>

#include "host/presentation/PlainText.h"

namespace calljournal {
namespace {

constexpr std::size_t kGap = 2;
constexpr std::size_t kLeastWidth = 8;

/// The column's width; 0 if no row has a value in it.
std::size_t widthOf(std::size_t column, const std::string& title, const std::vector<TableRow>& rows) {
    std::size_t width = 0;
    for (const TableRow& row : rows) {
        width = std::max(width, host::displayWidth(host::printable(row.cells[column])));
    }
    return width == 0 ? 0 : std::max(width, host::displayWidth(title));
}

std::size_t lineWidth(const std::vector<std::size_t>& widths) {
    return std::accumulate(
        widths.begin(), widths.end(), std::size_t{0},
        [](std::size_t sum, std::size_t width) { return width == 0 ? sum : sum + kGap + width; });
}

std::vector<std::size_t> widthsOf(const std::vector<std::string>& titles, const std::vector<TableRow>& rows) {
    std::vector<std::size_t> widths;
    for (std::size_t column = 0; column < titles.size(); ++column) {
        widths.push_back(widthOf(column, titles[column], rows));
    }
    return widths;
}

void narrow(std::vector<std::size_t>& widths, const TableFit& fit) {
    for (const std::size_t column : fit.cut) {
        const std::size_t line = lineWidth(widths);
        const std::size_t surplus = fit.width > 0 && line > fit.width ? line - fit.width : 0;
        if (const std::size_t width = widths[column]; width > kLeastWidth) {
            widths[column] = width - std::min(surplus, width - kLeastWidth);
        }
    }
}

std::string lineOf(const TableRow& row, const std::vector<std::size_t>& widths, bool isColoured) {
    std::string line = row.marked ? "* " : "  ";
    for (std::size_t column = 0; column < widths.size(); ++column) {
        if (widths[column] > 0) {
            line += host::padded(host::shortened(host::printable(row.cells[column]), widths[column]),
                                 widths[column] + kGap);
        }
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return (isColoured ? coloured(line, row.emphasis) : line) + '\n';
}

}  // namespace

std::string tableText(const std::vector<std::string>& titles, const std::vector<TableRow>& rows,
                      const TableFit& fit) {
    if (rows.empty()) {
        return {};
    }
    std::vector<std::size_t> widths = widthsOf(titles, rows);
    narrow(widths, fit);
    std::string text = lineOf({false, titles, Emphasis::eStrong}, widths, fit.coloured);
    for (const TableRow& row : rows) {
        text += lineOf(row, widths, fit.coloured);
    }
    return text;
}

std::size_t tableWidth(const std::vector<std::string>& titles, const std::vector<TableRow>& rows) {
    return lineWidth(widthsOf(titles, rows));
}

}  // namespace calljournal
