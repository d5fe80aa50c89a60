#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "host/calls/LiveCallStoreIfc.h"
#include "host/data/HistoryRows.h"
#include "host/data/JournalChange.h"
#include "journal-items/ListTraits.h"
#include "platform/data/DataAccessServiceIfc.h"
#include "platform/framework/Executable.h"

class DigitAnalysisServiceIfc;

namespace journalxml {
struct DataRequest;
}

namespace host {

class Database;
class EventQueue;

/// The components from which the database of a line gets what its requests lack. All are borrowed, and may be
/// missing.
struct DataAccessSources {
    /// The calls that the link follows.
    LiveCallStoreIfc* calls = nullptr;
    /// The time by which the phone's zone is ahead of UTC; any thread calls it.
    std::function<std::chrono::seconds()> phoneAhead{};
    /// Gets the events of the changes; null without a webhook.
    const EventQueue* events = nullptr;
};

/// The journal's lists and settings of one line in the database, registered as "DataAccessServiceIfc".
/// Requests and responses are those of docs/messages.md.
///
/// The steps of a request: read the document, carry it out in one `Database::read` or `write` call, build
/// the response. A request that cannot be read or carried out gives "failed", one log text, and no change. A
/// change is durable when `processRequest` returns, with two exceptions:
///  - A change of the lists that the database refuses is kept and stored later (`Database::writeOrKeep`). The
///    response is that of the stored change. No list is read before it is stored.
///  - The deletion of the oldest entry of a list that is too long is durable with the next change.
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
    /// are written. Both services are borrowed; they outlive the object and the changes that it has kept.
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
    [[nodiscard]] std::string changeResponse(journalxml::DataRequest request, std::size_t bytes);

    // Constant after construction.
    Database& m_database;
    const std::string m_line;
    DigitAnalysisServiceIfc* const m_digits;
    const DataAccessSources m_sources;
    /// Shared with the changes that are kept.
    const std::shared_ptr<JournalChange::Line> m_shared;
};

}  // namespace host
