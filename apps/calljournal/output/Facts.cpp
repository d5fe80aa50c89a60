#include "apps/calljournal/output/Facts.h"

#include <algorithm>
#include <cstddef>

#include "apps/calljournal/output/CsvTable.h"
#include "host/presentation/PlainText.h"

namespace calljournal {

std::string factsText(const Facts& facts) {
    std::size_t width = 0;
    for (const auto& [subject, text] : facts) {
        width = std::max(width, host::displayWidth(subject));
    }
    std::string lines;
    for (const auto& [subject, text] : facts) {
        lines += host::padded(host::printable(subject), width + 2) + host::printable(text) + "\n";
    }
    return lines;
}

std::string factsCsv(const Facts& facts) {
    std::vector<TableRow> rows;
    rows.reserve(facts.size());
    for (const auto& [subject, text] : facts) {
        rows.push_back({false, {subject, text}});
    }
    return csvTable({"SUBJECT", "TEXT"}, rows);
}

}  // namespace calljournal
