#pragma once

#include <cstddef>
#include <istream>
#include <string>
#include <vector>

#include "host/contact-files/TextLineReader.h"

namespace host {

/// Reads the rows of a CSV file (RFC 4180): cells may stand between quotation marks, hold line breaks there, and
/// quotation marks twice. One thread at a time.
class CsvRows {
public:
    /// A longer row is no contact: it ends there and is marked as damaged.
    static constexpr std::size_t kMaxRowBytes = 1024U * 1024U;

    struct Row {
        /// Where it begins, from 1 on.
        std::size_t line = 0;
        std::vector<std::string> cells;
        /// Whether a quotation mark is not closed before the end of the file or of what a row may hold.
        bool damaged = false;
    };

    explicit CsvRows(std::istream& stream) : m_lines(stream) {}

    /// The next row that is not blank; false at the end. What parts the cells is whichever of comma, semicolon and tab the
    /// first line has most of.
    [[nodiscard]] bool next(Row& row);

private:
    void chooseSeparator(const std::string& line);
    /// Takes the line's cells; false when its last one goes on in the next line.
    bool takeCells(const std::string& line, Row& row);

    TextLineReader m_lines;
    char m_separator = '\0';
    /// Whether the last cell is between quotation marks that are still open.
    bool m_open = false;
};

}  // namespace host
