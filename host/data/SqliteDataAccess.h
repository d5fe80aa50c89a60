#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "host/calls/LiveCallStoreIfc.h"
#include "host/data/HistoryRows.h"
#include "journal-items/ListTraits.h"
#include "platform/data/DataAccessServiceIfc.h"
#include "platform/framework/Executable.h"

class DigitAnalysisServiceIfc;

namespace journalxml {
struct DataRequest;
}

namespace host {

class CallRows;
class Database;

/// The components from which the database of a line gets what its requests lack. All are borrowed, and may be
/// missing.
struct DataAccessSources {
    /// The calls that the link follows.
    LiveCallStoreIfc* calls = nullptr;
    /// The time by which the phone's zone is ahead of UTC; any thread calls it.
    std::function<std::chrono::seconds()> phoneAhead{};
};

/// The journal's lists and settings of one line in the database, registered as "DataAccessServiceIfc".
/// Requests and responses are those of docs/messages.md.
///
/// The steps of a request: read the document, carry it out in one `Database::read` or `write` call, build
/// the response. A request that cannot be read or carried out gives "failed", one log text, and no change. A
/// change is durable when `processRequest` returns.
///
/// Every occurrence that is written for the first time becomes a call of the history, in the same
/// transaction. It is the filing of a call that the link has seen end, if its call id is that call's: then
/// the call gets the times and the reason that the link knows, and the row of the live call is removed
/// (`CallFiling`). What becomes of the calls of a deleted entry: docs/database.md.
///
/// Thread-safe; requests are carried out one after the other.
class SqliteDataAccess final : public Executable, public DataAccessServiceIfc {
public:
    /// `line` is the device whose rows are read and written; a request never reaches those of another.
    /// `digits` normalises numbers where calls are matched with contacts; without it they are matched as they
    /// are written. Both services are borrowed and outlive the object.
    SqliteDataAccess(Database& database, std::string line, DigitAnalysisServiceIfc* digits = nullptr,
                     DataAccessSources sources = {});

    [[nodiscard]] std::string processRequest(const std::string& request) override;

    /// True if the database carried out the last request; see `Database::healthy`. Never blocks.
    [[nodiscard]] bool healthy() const noexcept;

private:
    [[nodiscard]] HistoryRows::Context context() const;
    [[nodiscard]] std::string responseTo(const std::string& request);
    [[nodiscard]] std::string readSettingsResponse();
    [[nodiscard]] std::string readResponse(const journalxml::DataRequest& request);
    // The journal shortens an entry of a group, as the switch's log demands, by deleting and writing it. Its
    // older calls and what the link knows of them stay meanwhile.
    void detachRewritten(const journalxml::DataRequest& request, CallRows& rows);
    void attachRewritten(const journalxml::DataRequest& request, const std::string& uniqueId, CallRows& rows);
    [[nodiscard]] std::string changeResponse(const journalxml::DataRequest& request);

    // Constant after construction.
    Database& m_database;
    const std::string m_line;
    DigitAnalysisServiceIfc* const m_digits;
    const DataAccessSources m_sources;

    /// The entry id and the calls of a group's entry that was deleted and may be written again. Used in
    /// transactions only, which run one at a time.
    std::optional<std::pair<std::string, HistoryRows::Detached>> m_rewritten;
};

}  // namespace host
