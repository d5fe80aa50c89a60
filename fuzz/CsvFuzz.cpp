#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "fuzz/support/Property.h"
#include "host/call-files/CallFileReader.h"
#include "host/call-files/CallWriter.h"
#include "host/contact-files/ContactFormat.h"
#include "host/contact-files/ContactWriter.h"
#include "host/history/CallJson.h"
#include "host/log/LogText.h"
#include "host/text-files/CsvCell.h"
#include "host/text-files/CsvRows.h"

// Feeds any bytes to the readers of CSV files: as rows, as contacts, and as calls. What was read is written
// and must be read back equal.

namespace {

using fuzz::require;

constexpr std::size_t kMaxCells = 32;

std::vector<host::CsvRows::Row> rowsIn(const std::string& text) {
    std::istringstream file(text);
    host::CsvRows reader(file);
    std::vector<host::CsvRows::Row> rows;
    for (host::CsvRows::Row row; reader.next(row);) {
        rows.push_back(row);
    }
    return rows;
}

/// Spreadsheets take the full-width forms of the marks for formulas, too.
void checkNoFormula(const std::string& cell) {
    for (const char* const mark : {"=", "+", "-", "@", "\uFF1D", "\uFF0B", "\uFF0D", "\uFF20"}) {
        require(!cell.starts_with(mark), "a spreadsheet takes a cell for a formula");
    }
}

void checkWritten(const std::string& text) {
    fuzz::requireUtf8(text, "a CSV file is not UTF-8");
    require(!fuzz::hasControlCharacters(text), "a CSV file has control characters");
    for (const host::CsvRows::Row& row : rowsIn(text)) {
        std::for_each(row.cells.begin(), row.cells.end(), &checkNoFormula);
    }
}

/// True if CSV has no replacement for a character of the text.
bool isPlain(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char each) { return each == '\t' || each == '\n'; }, ' ');
    return host::escapedLogText(text) == text;
}

/// The cell of a file for a spreadsheet, with another one before it, as it is read back.
void checkCell(const std::string& cell) {
    const auto rows = rowsIn("a,b\r\nx," + host::csvCell(cell) + "\r\n");
    require(rows.size() == 2 && !rows[1].damaged && rows[1].cells.size() == 2,
            "a cell that was written is no cell");
    const std::string& shown = rows[1].cells[1];
    checkNoFormula(shown);
    if (isPlain(cell)) {
        require(host::textOfCsvCell(shown) == cell, "a cell that was written is read as another text");
    }
}

void checkRows(const std::string& text) {
    std::size_t left = kMaxCells;
    for (const host::CsvRows::Row& row : rowsIn(text)) {
        for (auto cell = row.cells.begin(); cell != row.cells.end() && left > 0; ++cell, --left) {
            checkCell(*cell);
        }
    }
}

void checkContacts(const std::string& text) {
    std::istringstream file(text);
    try {
        const auto reader = host::makeContactReader(file, host::ContactFormat::eCsv);
        while (const std::optional<host::ContactRecord> record = reader->next()) {
            if (!record->refusal.empty()) {
                continue;
            }
            const std::string written = host::contactFileHead(host::ContactFormat::eCsv) +
                                        host::contactFileEntry(host::ContactFormat::eCsv, record->contact);
            checkWritten(written);
            std::istringstream again(written);
            const auto read = host::makeContactReader(again, host::ContactFormat::eCsv)->next();
            require(read && read->refusal.empty() && read->contact == record->contact,
                    "a contact that was written as CSV is read as another one");
        }
    } catch (const host::ContactFileError&) {
        return;
    }
}

std::vector<host::CallRecord> callsIn(const std::string& text) {
    std::istringstream file(text);
    std::vector<host::CallRecord> records;
    try {
        host::readCalls(file, host::CallFormat::eCsv, std::nullopt, {},
                        [&records](const host::CallRecord& each) { records.push_back(each); });
    } catch (const host::CallFileError&) {
        return records;
    }
    return records;
}

using Json = nlohmann::ordered_json;

/// The call as it is read back from a file with this call.
Json writtenAndRead(const Json& call) {
    const std::string written = host::callCsvHead() + host::callCsvRow(call);
    checkWritten(written);
    const auto again = callsIn(written);
    require(again.size() == 1 && again.front().error.empty(), "a call that was written cannot be read");
    return host::callJson(again.front().call);
}

bool isPlain(const Json& call) {
    return std::all_of(call.begin(), call.end(), [](const Json& member) {
        return !member.is_string() || isPlain(member.get<std::string>());
    });
}

void checkCalls(const std::string& text) {
    for (const host::CallRecord& record : callsIn(text)) {
        if (!record.error.empty()) {
            continue;
        }
        const Json call = host::callJson(record.call);
        const Json again = writtenAndRead(call);
        require(!isPlain(call) || again == call, "a call that was written as CSV is read as another one");
        require(writtenAndRead(again) == again, "a call that was read back is changed by the next file");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    checkRows(text);
    checkContacts(text);
    checkCalls(text);
    return 0;
}
