#pragma once

#include <cstddef>
#include <istream>
#include <string>
#include <vector>

#include "host/text-files/TextLineReader.h"

namespace host {

/// Reads the rows of a CSV file (RFC 4180): a quoted cell may contain line breaks and doubled quotation
/// marks. One thread at a time.
class CsvRows {
public:
    /// A longer row is cut there and marked as damaged.
    static constexpr std::size_t kMaxRowBytes = 1024U * 1024U;

    struct Row {
        /// The line of text in which it begins, from 1 on.
        std::size_t line = 0;
        std::vector<std::string> cells;
        /// True if a quotation mark is not closed before the end of the file or the maximum length of a row.
        bool damaged = false;
    };

    explicit CsvRows(std::istream& stream) : m_lines(stream) {}

    /// Reads the next row that is not blank; false at the end. The separator is the one of comma, semicolon
    /// and tab that the first line of text has most of.
    [[nodiscard]] bool next(Row& row);

private:
    void chooseSeparator(const std::string& line);
    /// Appends the cells of the text line; false if its last cell continues in the next one.
    bool takeCells(const std::string& line, Row& row);

    TextLineReader m_lines;
    char m_separator = '\0';
    /// True if the last cell is quoted and still open.
    bool m_open = false;
};

}  // namespace host
