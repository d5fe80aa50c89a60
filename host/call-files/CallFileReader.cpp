#include "host/call-files/CallFileReader.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "host/call-files/CallWriter.h"
#include "host/text-files/CsvCell.h"
#include "host/text-files/CsvRows.h"
#include "host/text-files/FileText.h"
#include "host/text-files/TextLineReader.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;
using Visitor = std::function<void(const CallRecord&)>;

constexpr const char* kOccurrences = "occurrences";

/// Gives the members of a list's entry, with one of its calls, the names that they have in a call.
void renameItemMembers(CallFields& fields) {
    const auto take = [&fields](const char* member) {
        auto node = fields.extract(member);
        return node.empty() ? std::string() : std::move(node.mapped());
    };
    std::string time = take("time");
    std::string name = take("firstName");
    const std::string surname = take("surname");
    name += (name.empty() || surname.empty() ? "" : " ") + surname;
    if (!time.empty()) {
        fields.emplace("start", std::move(time));
    }
    if (!name.empty()) {
        fields.emplace("name", std::move(name));
    }
    if (take("completedElsewhere") == "true") {
        fields.emplace("reason", wordOf(CallReason::eCompletedElsewhere));
    }
}

/// Turns the members of calls into records.
class RecordMaker {
public:
    RecordMaker(const CallReading& reading, const Visitor& visitor)
        : m_reading(reading), m_visitor(visitor) {}

    void take(std::size_t row, CallFields fields) const {
        make(row, [&] {
            renameItemMembers(fields);
            return fields;
        });
    }

    /// A call, or an entry with several.
    void take(std::size_t row, const Json& object) const {
        const auto occurrences = object.find(kOccurrences);
        if (occurrences == object.end()) {
            make(row, [&] {
                CallFields fields = callFieldsOf(object);
                renameItemMembers(fields);
                return fields;
            });
            return;
        }
        for (const Json& occurrence : *occurrences) {
            make(row, [&] { return fieldsOf(object, occurrence); });
        }
    }

    void refuse(std::size_t row, std::string why) const { m_visitor({row, {}, std::move(why)}); }

private:
    template <typename MakeFields>
    void make(std::size_t row, MakeFields makeFields) const {
        CallRecord record{row, {}, {}};
        try {
            record.call = callOf(makeFields(), m_reading);
        } catch (const CallFieldError& error) {
            record.error = error.what();
        }
        m_visitor(record);
    }

    [[nodiscard]] static CallFields fieldsOf(Json item, const Json& occurrence) {
        for (const char* const own : {kOccurrences, "number", "time"}) {
            item.erase(own);
        }
        CallFields fields = callFieldsOf(occurrence);
        fields.merge(callFieldsOf(item));
        renameItemMembers(fields);
        return fields;
    }

    const CallReading& m_reading;
    const Visitor& m_visitor;
};

/// The cells of the own files by the titles of their columns.
class OwnColumns {
public:
    explicit OwnColumns(const std::vector<std::string>& titles) {
        for (const std::string& title : titles) {
            m_titles.push_back(cleaned(title));
        }
        const auto has = [this](const char* title) {
            return std::find(m_titles.begin(), m_titles.end(), title) != m_titles.end();
        };
        if (!has("start") && !has("time")) {
            std::string names;
            for (const std::string_view member : kCallMembers) {
                names.append(names.empty() ? "" : ", ").append(member);
            }
            throw CallFileError(
                "its first row has no column start, so it needs --columns; its own columns are " + names);
        }
    }

    [[nodiscard]] CallFields fieldsIn(const std::vector<std::string>& cells) const {
        CallFields fields;
        for (std::size_t column = 0; column < std::min(m_titles.size(), cells.size()); ++column) {
            if (std::string text = textOfCsvCell(cells[column]); !text.empty()) {
                fields.emplace(m_titles[column], std::move(text));
            }
        }
        return fields;
    }

private:
    std::vector<std::string> m_titles;
};

template <typename Columns>
void readRows(CsvRows& rows, const Columns& columns, const RecordMaker& maker) {
    for (CsvRows::Row row; rows.next(row);) {
        if (row.damaged) {
            maker.refuse(row.line, "a quotation mark is not closed");
        } else if (!std::all_of(row.cells.begin(), row.cells.end(), &isUtf8)) {
            maker.refuse(row.line, "it is not UTF-8");
        } else {
            maker.take(row.line, columns.fieldsIn(row.cells));
        }
    }
}

void readCsv(std::istream& stream, const std::optional<CallColumns>& columns, const RecordMaker& maker) {
    CsvRows rows(stream);
    CsvRows::Row head;
    if ((!columns || columns->hasTitles()) && !rows.next(head)) {
        throw CallFileError("it is empty");
    }
    if (!columns) {
        readRows(rows, OwnColumns(head.cells), maker);
        return;
    }
    CallColumns found = *columns;
    if (found.hasTitles()) {
        try {
            found.find(head.cells);
        } catch (const CallFieldError& error) {
            throw CallFileError(error.what());
        }
    }
    readRows(rows, found, maker);
}

void readJsonLines(std::istream& stream, const RecordMaker& maker) {
    TextLineReader lines(stream);
    for (std::string line; lines.next(line);) {
        if (stripped(line).empty()) {
            continue;
        }
        const Json object = Json::parse(line, nullptr, false);
        if (object.is_object()) {
            maker.take(lines.number(), object);
        } else {
            maker.refuse(lines.number(), "it is no JSON object in UTF-8");
        }
    }
}

/// Takes each object of the array as soon as it is read, and keeps none.
void readJson(std::istream& stream, const RecordMaker& maker) {
    std::size_t count = 0;
    int depthOfCalls = 1;
    bool inCalls = true;
    const auto takeObject = [&](int depth, Json::parse_event_t event, Json& parsed) {
        if (depth == 0 && event == Json::parse_event_t::object_start) {
            depthOfCalls = 2;
        } else if (depth == 1 && event == Json::parse_event_t::key) {
            inCalls = parsed == "calls" || parsed == "items";
        }
        if (!inCalls || depth != depthOfCalls || event != Json::parse_event_t::object_end) {
            return true;
        }
        maker.take(++count, parsed);
        return false;
    };
    try {
        const Json whole = Json::parse(stream, takeObject);
        if (count == 0 && whole.is_object() && (whole.contains("start") || whole.contains(kOccurrences))) {
            maker.take(1, whole);
        } else if (count == 0 && !whole.is_array() && !whole.contains("calls") && !whole.contains("items")) {
            throw CallFileError("it has neither an array of calls nor one named \"calls\" or \"items\"");
        }
    } catch (const Json::exception& error) {
        throw CallFileError("after " + std::to_string(count) +
                            " calls it is no JSON in UTF-8: " + error.what());
    }
}

bool endsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && lower(text.substr(text.size() - end.size())) == end;
}

}  // namespace

std::optional<CallFormat> callFormatOf(std::string_view fileName) {
    if (endsWith(fileName, ".csv")) {
        return CallFormat::eCsv;
    }
    if (endsWith(fileName, ".jsonl") || endsWith(fileName, ".ndjson")) {
        return CallFormat::eJsonLines;
    }
    return endsWith(fileName, ".json") ? std::optional(CallFormat::eJson) : std::nullopt;
}

std::optional<CallFormat> callFormatNamed(std::string_view name) {
    return name.empty() ? std::nullopt : callFormatOf("." + std::string(name));
}

void readCalls(std::istream& stream, CallFormat format, const std::optional<CallColumns>& columns,
               const CallReading& reading, const Visitor& visitor) {
    const RecordMaker maker(reading, visitor);
    if (const int first = stream.peek(); first == 0xFF || first == 0xFE) {
        throw CallFileError("it is in UTF-16; save it as UTF-8");
    }
    switch (format) {
        case CallFormat::eCsv: return readCsv(stream, columns, maker);
        case CallFormat::eJsonLines: return readJsonLines(stream, maker);
        case CallFormat::eJson: break;
    }
    readJson(stream, maker);
}

}  // namespace host
