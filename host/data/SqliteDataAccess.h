#pragma once

#include <optional>
#include <set>
#include <string>

#include "host/data/ApproximateEnds.h"
#include "journal-items/ListTraits.h"
#include "platform/data/DataAccessServiceIfc.h"
#include "platform/framework/Executable.h"

class DigitAnalysisServiceIfc;

namespace journalxml {
struct DataRequest;
}

namespace host {

class Database;

/// The journal's lists and settings of one line in the database, registered as "DataAccessServiceIfc".
/// Requests and responses are those of docs/messages.md.
///
/// The steps of a request: read the document, carry it out in one `Database::read` or `write` call, build
/// the response. A request that cannot be read or carried out gives "failed", one log text, and no change. A
/// change is durable when `processRequest` returns.
///
/// A write during the delivery of an event that ends a call (`DeliveryContext`) is the filing of that call if
/// the newest occurrence of a written item has its call id. The same transaction then removes the row of the
/// live call, and marks the occurrence if the end of the call is approximate.
///
/// Thread-safe; requests are carried out one after the other.
class SqliteDataAccess final : public Executable, public DataAccessServiceIfc {
public:
    /// `line` is the device whose rows are read and written; a request never reaches those of another.
    /// `digits` normalises numbers where calls are matched with contacts; without it they are matched as they
    /// are written. Both services are borrowed and outlive the object.
    SqliteDataAccess(Database& database, std::string line, DigitAnalysisServiceIfc* digits = nullptr);

    [[nodiscard]] std::string processRequest(const std::string& request) override;

    /// The unique ids of the list's rows, of the callbacks the entry ids; `std::nullopt` if the database
    /// fails.
    [[nodiscard]] std::optional<std::set<std::string>> storedIds(ListName list);

    /// True if the database carried out the last request; see `Database::healthy`. Never blocks.
    [[nodiscard]] bool healthy() const noexcept;
    [[nodiscard]] const ApproximateEnds& approximateEnds() const noexcept { return m_approximateEnds; }

private:
    [[nodiscard]] std::string responseTo(const std::string& request);
    [[nodiscard]] std::string readSettingsResponse();
    [[nodiscard]] std::string readResponse(const journalxml::DataRequest& request);
    [[nodiscard]] std::string changeResponse(const journalxml::DataRequest& request);

    // Constant after construction.
    Database& m_database;
    const std::string m_line;
    DigitAnalysisServiceIfc* const m_digits;

    ApproximateEnds m_approximateEnds;
};

}  // namespace host
