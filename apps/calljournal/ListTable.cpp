#include "apps/calljournal/ListTable.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "host/faces/PlainText.h"

namespace host {
namespace {

struct Column {
    const char* title;
    std::string ListRow::*value;
};

constexpr std::array<Column, 5> kColumns{{{"TIME", &ListRow::time},
                                          {"NAME", &ListRow::name},
                                          {"NUMBER", &ListRow::number},
                                          {"CALLS", &ListRow::count},
                                          {"DURATION", &ListRow::duration}}};

/// The column's width; 0 when no row has a value for it.
std::size_t widthOf(const Column& column, const std::vector<ListRow>& rows) {
    std::size_t width = 0;
    for (const ListRow& row : rows) {
        width = std::max(width, displayWidth(printable(row.*column.value)));
    }
    return width == 0 ? 0 : std::max(width, displayWidth(column.title));
}

void endLine(std::string& text) {
    text.erase(text.find_last_not_of(' ') + 1);
    text += '\n';
}

}  // namespace

std::string tableText(const std::vector<ListRow>& rows) {
    if (rows.empty()) {
        return {};
    }
    std::array<std::size_t, kColumns.size()> widths{};
    std::transform(kColumns.begin(), kColumns.end(), widths.begin(),
                   [&rows](const Column& column) { return widthOf(column, rows); });

    std::string text;
    const auto addLine = [&](bool marked, const auto& cellOf) {
        text += marked ? "* " : "  ";
        for (std::size_t index = 0; index < kColumns.size(); ++index) {
            if (widths[index] > 0) {
                text += padded(cellOf(kColumns[index]), widths[index] + 2);
            }
        }
        endLine(text);
    };
    addLine(false, [](const Column& column) { return std::string(column.title); });
    for (const ListRow& row : rows) {
        addLine(row.marked, [&row](const Column& column) { return printable(row.*column.value); });
    }
    return text;
}

}  // namespace host
