#include "host/text-files/CsvRows.h"

#include <algorithm>
#include <array>

#include "host/text-files/FileText.h"

namespace host {

bool CsvRows::next(Row& row) {
    row = Row();
    std::string line;
    do {
        if (!m_lines.next(line)) {
            return false;
        }
    } while (stripped(line).empty());
    row.line = m_lines.number();
    if (m_separator == '\0') {
        chooseSeparator(line);
    }
    m_open = false;
    std::size_t bytes = line.size();
    while (!takeCells(line, row)) {
        row.cells.back() += '\n';
        if (bytes > kMaxRowBytes || !m_lines.next(line)) {
            row.damaged = true;
            return true;
        }
        bytes += line.size() + 1;
    }
    return true;
}

void CsvRows::chooseSeparator(const std::string& line) {
    constexpr std::array<char, 3> kSeparators{',', ';', '\t'};
    m_separator = *std::max_element(kSeparators.begin(), kSeparators.end(), [&line](char a, char b) {
        return std::count(line.begin(), line.end(), a) < std::count(line.begin(), line.end(), b);
    });
}

bool CsvRows::takeCells(const std::string& line, Row& row) {
    std::size_t at = 0;
    for (;;) {
        if (!m_open) {
            const std::size_t begin = std::min(line.find_first_not_of(' ', at), line.size());
            m_open = begin < line.size() && line[begin] == '"';
            row.cells.emplace_back();
            at = m_open ? begin + 1 : at;
        }
        std::string& cell = row.cells.back();
        while (m_open && at < line.size()) {
            if (line[at] != '"') {
                cell += line[at++];
            } else if (line.compare(at, 2, "\"\"") == 0) {
                cell += '"';
                at += 2;
            } else {
                m_open = false;
                ++at;
            }
        }
        if (m_open) {
            return false;
        }
        const std::size_t end = std::min(line.find(m_separator, at), line.size());
        cell += stripped(std::string_view(line).substr(at, end - at));
        if (end == line.size()) {
            return true;
        }
        at = end + 1;
    }
}

}  // namespace host
