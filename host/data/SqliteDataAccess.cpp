#include "host/data/SqliteDataAccess.h"

#include <memory>
#include <optional>
#include <utility>

#include "host/data/CallBackRows.h"
#include "host/data/CallContacts.h"
#include "host/data/CallRows.h"
#include "host/data/SettingRows.h"
#include "host/database/Database.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/DataRequest.h"
#include "platform/journal-library/DataResponse.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

using journalxml::DataRequest;
using journalxml::ListDocument;
using Words = CallListDatabaseAdapterHelper;

/// The memory that a kept change needs beside its texts.
constexpr std::size_t kBytesOfChange = 2048;

/// Reads the rows of a read request into a document; false for a schema that is no list.
bool readList(Database::Session& session, const HistoryRows::Context& context, const DataRequest& request,
              ListDocument& document) {
    const std::int64_t offset = request.offset;
    const std::int64_t limit = request.rowLimit;
    const std::optional<ListName> list = listOfTable(request.schema);
    if (list == ListName::eCallbacks) {
        CallBackRows(session, context.line).read(offset, limit, document);
    } else if (list) {
        CallRows(session, context).read(*list, offset, limit, document);
    } else if (request.schema == Words::CONVERSATIONS_SCHEMA) {
        CallRows(session, context).readAll(offset, limit, document);
    } else if (request.schema == Words::CALLLOGPHONEBOOK_SCHEMA) {
        CallContacts(session, context.line, context.digits).read(offset, limit, document);
    } else {
        return false;
    }
    return true;
}

std::string textFor(const DataRequest& request, const char* doing) {
    return std::string(doing) + ' ' + request.schema;
}

}  // namespace

SqliteDataAccess::SqliteDataAccess(Database& database, std::string line, DigitAnalysisServiceIfc* digits,
                                   DataAccessSources sources)
    : m_database(database),
      m_line(std::move(line)),
      m_digits(digits),
      m_sources(std::move(sources)),
      m_shared(std::make_shared<JournalChange::Line>(JournalChange::Line{
          .device = m_line, .digits = digits, .calls = m_sources.calls, .events = m_sources.events})) {
    const HistoryRows::Context context{m_line, m_digits};
    static_cast<void>(m_database.write("listing the newest calls", [&](Database::Session& session) {
        CallRows(session, context).shortenLists();
        CallRows(session, context).listNewestCalls();
    }));
}

bool SqliteDataAccess::healthy() const noexcept {
    return m_database.healthy();
}

HistoryRows::Context SqliteDataAccess::context() const {
    return {m_line, m_digits, m_sources.phoneAhead ? m_sources.phoneAhead() : std::chrono::seconds(0)};
}

std::string SqliteDataAccess::processRequest(const std::string& request) {
    try {
        return responseTo(request);
    } catch (const std::exception& error) {
        logAppUni("Database", __FILE_NAME__, 2, __LINE__, "a request failed: %s", error.what());
    }
    return Words::FAILED;
}

std::string SqliteDataAccess::responseTo(const std::string& request) {
    std::optional<DataRequest> read = journalxml::parseDataRequest(request);
    if (!read) {
        logAppUni("Database", __FILE_NAME__, 2, __LINE__, "a request of %zu bytes cannot be read",
                  request.size());
        return Words::FAILED;
    }
    if (read->reason != DataRequest::Reason::eRead) {
        return changeResponse(std::move(*read), request.size());
    }
    return read->schema == JournalServiceHelper::SETTINGS_SCHEMA ? readSettingsResponse()
                                                                 : readResponse(*read);
}

std::string SqliteDataAccess::readSettingsResponse() {
    std::vector<SettingRows::KeyAndValue> settings;
    const bool done = m_database.read("reading the settings", [&](Database::Session& session) {
        settings = SettingRows(session, SettingRows::Table::eJournalSettings, m_line).read();
    });
    return done ? journalxml::buildSettingsResponse(settings) : Words::FAILED;
}

std::string SqliteDataAccess::readResponse(const DataRequest& request) {
    // Without what is kept the journal would load too little.
    if (!m_database.storeKept()) {
        return Words::FAILED;
    }
    m_database.makeDeferred();
    ListDocument document(request.schema);
    bool known = false;
    const bool done = m_database.read(textFor(request, "reading").c_str(), [&](Database::Session& session) {
        known = readList(session, context(), request, document);
    });
    if (done && !known) {
        logAppUni("Database", __FILE_NAME__, 2, __LINE__, "a request reads %s, which is unknown",
                  request.schema.c_str());
    }
    return done && known ? document.text() : Words::FAILED;
}

std::string SqliteDataAccess::changeResponse(DataRequest request, std::size_t bytes) {
    const HistoryRows::Context context = this->context();
    const auto change = std::make_shared<JournalChange>(std::move(request), m_shared, context.phoneAhead);
    const DataRequest& made = change->request();
    const std::string what = textFor(made, "changing");
    const auto carryOut = [change](Database::Session& session) { change->carryOut(session); };
    if (made.reason == DataRequest::Reason::eUpdate) {
        // The journal does not use a setting that is not stored.
        return m_database.write(what.c_str(), carryOut) ? journalxml::buildUpdateResponse(made.schema, "")
                                                        : Words::FAILED;
    }
    const auto outcome = m_database.writeOrKeep(std::make_shared<DatabaseChange>(DatabaseChange{
        .what = what,
        .work = carryOut,
        .line = m_shared.get(),
        .isMinor = [change](Database::Session& session) { return change->isEviction(session); },
        .leavesMinor = change->leavesEvictions(),
        .keep = [this, change] { change->keep(m_database); },
        .done = [change](bool stored) { change->done(stored); },
        .bytes = kBytesOfChange + 2 * bytes,
        .calls = change->callCount()}));
    return outcome == Database::Outcome::eRefused
               ? Words::FAILED
               : journalxml::buildUpdateResponse(made.schema, change->lastUniqueId());
}

}  // namespace host
