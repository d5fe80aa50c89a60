#include "host/text-files/CsvCell.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>

#include "platform/client-utils/Utf8.h"

namespace host {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

std::string withoutControls(std::string_view text) {
    std::string clean;
    for (std::size_t at = 0; at < text.size();) {
        const utf8::Step step = utf8::next(text, at);
        const bool isControl = (step.character < 0x20 && step.character != '\t' && step.character != '\n' &&
                                step.character != '\r') ||
                               (step.character >= 0x7F && step.character < 0xA0);
        if (isControl || step.character == utf8::kInvalid) {
            utf8::append(clean, kReplacement);
        } else {
            clean += text.substr(at, step.length);
        }
        at += step.length;
    }
    return clean;
}

/// `=`, `+`, `-` and `@`, in their full width too, an apostrophe, a tab or a line break.
bool needsApostrophe(std::string_view cell) {
    static constexpr std::string_view kMarks[] = {"=",      "+",      "-",      "@",  "'",  "\uFF1D",
                                                  "\uFF0B", "\uFF0D", "\uFF20", "\t", "\r", "\n"};
    return std::any_of(std::begin(kMarks), std::end(kMarks),
                       [cell](std::string_view mark) { return cell.starts_with(mark); });
}

/// Readers remove blanks around a cell that is not quoted.
bool needsQuotes(const std::string& cell) {
    return cell.find_first_of(",;\t\"\r\n") != std::string::npos ||
           (!cell.empty() && (cell.front() == ' ' || cell.back() == ' '));
}

}  // namespace

std::string csvCell(std::string_view text) {
    std::string cell = withoutControls(text);
    if (needsApostrophe(cell)) {
        cell.insert(0, 1, '\'');
    }
    return quotedCell(std::move(cell));
}

std::string textOfCsvCell(std::string cell) {
    if (cell.starts_with('\'') && needsApostrophe(std::string_view(cell).substr(1))) {
        cell.erase(0, 1);
    }
    return cell;
}

std::string quotedCell(std::string text) {
    if (!needsQuotes(text)) {
        return text;
    }
    for (std::size_t at = text.find('"'); at != std::string::npos; at = text.find('"', at + 2)) {
        text.insert(at, 1, '"');
    }
    return '"' + text + '"';
}

}  // namespace host
