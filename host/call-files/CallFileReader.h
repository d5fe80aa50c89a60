#pragma once

#include <cstddef>
#include <functional>
#include <istream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "host/call-files/CallColumns.h"
#include "host/call-files/CallFields.h"
#include "host/history/Call.h"

namespace host {

/// The formats of files with calls.
enum class CallFormat { eCsv, eJson, eJsonLines };

/// Returns the format for the end of a file's name (".csv", ".json", ".jsonl" or ".ndjson", in any case);
/// std::nullopt for any other.
[[nodiscard]] std::optional<CallFormat> callFormatOf(std::string_view fileName);
/// The same for the name of a format: "csv", "json" or "jsonl".
[[nodiscard]] std::optional<CallFormat> callFormatNamed(std::string_view name);

/// A file without calls in the expected format. `what()` gives the reason.
class CallFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One call of a file. A plain value.
struct CallRecord {
    /// The line of text in which it begins, from 1 on; of a JSON file the number of its object.
    std::size_t row = 0;
    Call call;
    /// The reason why it cannot be read; empty if it can.
    std::string error;
};

/// Reads the calls of a file and passes them one by one to `visitor`; an error in one does not affect the
/// next. The memory that it takes does not grow with the file. The files are
///
///   - CSV as `callCsvRow` or `csvRows` writes it; with `columns`, any other with a row for each call;
///   - JSON: an array of calls, or an object that has it as "calls" or "items". An entry of a list stands for
///     its calls, its "occurrences";
///   - JSON lines: an object as in the JSON file on each line.
///
/// Any thread may call; `stream` is borrowed. Throws `CallFileError`, and what `visitor` throws.
void readCalls(std::istream& stream, CallFormat format, const std::optional<CallColumns>& columns,
               const CallReading& reading, const std::function<void(const CallRecord&)>& visitor);

}  // namespace host
