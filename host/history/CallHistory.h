#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "host/history/Call.h"
#include "host/history/CallFilter.h"
#include "host/history/CallPage.h"

class DigitAnalysisServiceIfc;

namespace host {

class Database;

/// The calls of one line for readers: every call that was filed and not deleted, also those that the lists of
/// the library do not have any more. Thread-safe; a read delays no filing.
class CallHistory {
public:
    /// The database and `digits` are borrowed and outlive the history. Without `digits` numbers are compared
    /// as they are written.
    CallHistory(Database& database, std::string line, DigitAnalysisServiceIfc* digits)
        : m_database(database), m_line(std::move(line)), m_digits(digits) {}

    /// The next `limit` calls of a selection. Takes milliseconds with a million calls (docs/performance.md).
    /// Calls that are filed between two pages are on no page twice. Returns std::nullopt if the database
    /// failed. Requires: the cursor is empty or readable (`keyOfCursor`).
    [[nodiscard]] std::optional<CallPage> page(const CallQuery& query) const;
    /// Reads one call; `call` is std::nullopt if there is none with that id. Returns false if the database
    /// failed.
    [[nodiscard]] bool find(std::int64_t id, std::optional<Call>& call) const;

private:
    Database& m_database;
    const std::string m_line;
    DigitAnalysisServiceIfc* const m_digits;
};

}  // namespace host
