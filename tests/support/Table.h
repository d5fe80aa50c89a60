#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace journaltest {

/// The words of `text` between separators, spaces around each dropped; an empty text has none. Several spaces
/// separate as one does.
inline std::vector<std::string> split(const std::string& text, char separator) {
    const auto trimmed = [](const std::string& word) {
        const auto first = word.find_first_not_of(' ');
        return first == std::string::npos ? std::string()
                                          : word.substr(first, word.find_last_not_of(' ') - first + 1);
    };
    std::vector<std::string> words;
    std::string word;
    for (const char letter : text + separator) {
        if (letter != separator) {
            word += letter;
        } else if (separator != ' ' || !word.empty()) {
            words.push_back(trimmed(word));
            word.clear();
        }
    }
    return words.size() == 1 && words.front().empty() ? std::vector<std::string>() : words;
}

/// A table of cases written as text: a row a line, "|" between its cells. A line that begins with "+" goes on
/// with the row above it; empty lines are none. A row that has not so many cells is a mistake in the test.
inline std::vector<std::vector<std::string>> table(std::size_t columns, const std::string& text) {
    std::vector<std::string> lines;
    for (const std::string& line : split(text, '\n')) {
        if (!lines.empty() && line.rfind('+', 0) == 0) {
            lines.back() += line.substr(1);
        } else if (!line.empty()) {
            lines.push_back(line);
        }
    }
    std::vector<std::vector<std::string>> rows;
    for (const std::string& line : lines) {
        rows.push_back(split(line, '|'));
        if (rows.back().size() != columns) {
            throw std::invalid_argument("not " + std::to_string(columns) + " cells: " + line);
        }
    }
    return rows;
}

}  // namespace journaltest
