#pragma once

#include <string>

#include "platform/data/DataAccessServiceIfc.h"
#include "platform/framework/Executable.h"

class DigitAnalysisServiceIfc;

namespace journalxml {
struct DataRequest;
}

namespace host {

class Database;

/// The journal's lists and settings of one line in the database, registered as "DataAccessServiceIfc". Requests and
/// answers are those of docs/messages.md.
///
/// The road of a request: read the document, do all of it in one piece of work of the database, build the answer. A request
/// that cannot be read, or that the database does not carry out, is answered "failed", leaves one line in the log, and
/// has changed nothing. What a request changed is durable when `processRequest` returns.
///
/// Any thread may call, at any time; requests are carried out one after the other.
class SqliteDataAccess final : public Executable, public DataAccessServiceIfc {
public:
    /// `line` is the device whose rows are read and written; no request reaches those of another. `digits` brings the
    /// spellings of numbers together where calls are matched with contacts; without it they are matched as they stand. Both
    /// services are borrowed and outlive the object.
    SqliteDataAccess(Database& database, std::string line, DigitAnalysisServiceIfc* digits = nullptr);

    [[nodiscard]] std::string processRequest(const std::string& request) override;

    /// Whether the database carried out what it was asked for last; see `Database::healthy`. Never blocks.
    [[nodiscard]] bool healthy() const noexcept;

private:
    [[nodiscard]] std::string answer(const std::string& request);
    [[nodiscard]] std::string readSettingsResponse();
    [[nodiscard]] std::string readResponse(const journalxml::DataRequest& request);
    [[nodiscard]] std::string changeResponse(const journalxml::DataRequest& request);

    // Constant after construction.
    Database& m_database;
    const std::string m_line;
    DigitAnalysisServiceIfc* const m_digits;
};

}  // namespace host
