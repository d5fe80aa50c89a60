#include "host/data/SqliteDataAccess.h"

#include <optional>
#include <utility>
#include <variant>

#include "host/calls/DeliveryContext.h"
#include "host/data/CallBackRows.h"
#include "host/data/CallContacts.h"
#include "host/data/CallFiling.h"
#include "host/data/CallRows.h"
#include "host/data/SettingRows.h"
#include "host/database/Database.h"
#include "host/database/RowId.h"
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

/// The rows that a request may change.
struct Rows {
    Rows(Database::Session& session, const HistoryRows::Context& context)
        : calls(session, context),
          callBacks(session, context.line),
          settings(session, SettingRows::Table::eJournalSettings, context.line) {}

    CallRows calls;
    CallBackRows callBacks;
    SettingRows settings;
};

/// Writes the items; returns the last unique id.
std::string writeItems(Rows& rows, const std::vector<DataRequest::Item>& items, const CallFiling& filing) {
    std::string lastUniqueId;
    for (const DataRequest::Item& item : items) {
        const CallFacts* const facts = filing.factsOf(CallFiling::newestOf(item));
        if (const auto* const callBack = std::get_if<CallBackItem>(&item)) {
            rows.callBacks.write(*callBack);
        } else {
            std::visit(
                [&](const auto& call) {
                    if constexpr (!std::is_same_v<std::decay_t<decltype(call)>, CallBackItem>) {
                        lastUniqueId = rows.calls.write(call, facts);
                    }
                },
                item);
        }
    }
    return lastUniqueId;
}

/// The treatment of the calls of an entry that the journal deletes:
///  - of the oldest one of a list that is too long, and of the missed entry of a party that is called back
///    now, they stay in the history;
///  - the switch's log, whose events are delivered, has the listed ones only;
///  - a user deletes all of them.
CallRows::Calls callsOfDeleted(ListName list, const DataRequest::Key& key, CallRows& rows) {
    using Fate = CallRows::Calls::Fate;
    if (rows.isOldestBeyond(std::int64_t{Words::kListRows}, list, key.uniqueId, key.entryId)) {
        return {.fate = Fate::eKept};
    }
    const DeliveryContext* const delivery = DeliveryContext::current();
    if (list == ListName::eMissed && delivery != nullptr && delivery->establishes) {
        return {.fate = Fate::eKept,
                .calledBackAt = std::chrono::time_point_cast<std::chrono::seconds>(*delivery->time)};
    }
    return {.fate = delivery != nullptr ? Fate::eListedDeleted : Fate::eDeleted};
}

/// Deletes rows of a call list; returns the last unique id.
std::string deleteCalls(CallRows& rows, ListName list, const DataRequest& request) {
    if (request.allEntries) {
        return rows.removeAll(list).value_or("");
    }
    std::string lastUniqueId;
    for (const DataRequest::Key& key : request.keys) {
        lastUniqueId = rows.remove(list, key.uniqueId, key.entryId, callsOfDeleted(list, key, rows))
                           .value_or(lastUniqueId);
    }
    return lastUniqueId;
}

void deleteCallBacks(CallBackRows& rows, const DataRequest& request) {
    if (request.allEntries) {
        rows.removeAll();
    }
    for (const DataRequest::Key& key : request.keys) {
        rows.remove(key.entryId);
    }
}

/// Carries out a request that changes rows; returns the last unique id.
std::string change(Rows& rows, const DataRequest& request, const CallFiling& filing) {
    switch (request.reason) {
        case DataRequest::Reason::eWrite: return writeItems(rows, request.items, filing);
        case DataRequest::Reason::eDelete:
            if (const auto list = listOfTable(request.schema); list && list != ListName::eCallbacks) {
                return deleteCalls(rows.calls, *list, request);
            }
            deleteCallBacks(rows.callBacks, request);
            return {};
        case DataRequest::Reason::eUpdate:
            for (const auto& setting : request.settings) {
                rows.settings.write(setting);
            }
            return {};
        case DataRequest::Reason::eRead: break;
    }
    return {};
}

std::string textFor(const DataRequest& request, const char* doing) {
    return std::string(doing) + ' ' + request.schema;
}

}  // namespace

SqliteDataAccess::SqliteDataAccess(Database& database, std::string line, DigitAnalysisServiceIfc* digits,
                                   DataAccessSources sources)
    : m_database(database), m_line(std::move(line)), m_digits(digits), m_sources(std::move(sources)) {
    const HistoryRows::Context context{m_line, m_digits};
    static_cast<void>(m_database.write("listing the newest calls", [&](Database::Session& session) {
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
    const std::optional<DataRequest> read = journalxml::parseDataRequest(request);
    if (!read) {
        logAppUni("Database", __FILE_NAME__, 2, __LINE__, "a request of %zu bytes cannot be read",
                  request.size());
        return Words::FAILED;
    }
    if (read->reason != DataRequest::Reason::eRead) {
        return changeResponse(*read);
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

void SqliteDataAccess::detachRewritten(const DataRequest& request, CallRows& rows) {
    m_rewritten.reset();
    const bool deletesOne = request.reason == DataRequest::Reason::eDelete && request.keys.size() == 1 &&
                            listOfTable(request.schema) == ListName::eMissed;
    const auto group = deletesOne && DeliveryContext::current() != nullptr
                           ? rows.rewrittenGroup(request.keys.front().uniqueId)
                           : std::nullopt;
    if (group) {
        m_rewritten = {request.keys.front().entryId, rows.history().detach(*group)};
    }
}

void SqliteDataAccess::attachRewritten(const DataRequest& request, const std::string& uniqueId,
                                       CallRows& rows) {
    const auto* const item =
        request.items.size() == 1 ? std::get_if<MissedCallItem>(&request.items.front()) : nullptr;
    const auto rewritten = std::exchange(m_rewritten, std::nullopt);
    if (rewritten && item != nullptr && item->getUniqueId().empty() &&
        item->getEntryId() == rewritten->first) {
        rows.history().attach(rowIdOf(uniqueId).value_or(0), rewritten->second);
    }
}

std::string SqliteDataAccess::changeResponse(const DataRequest& request) {
    std::string lastUniqueId;
    const CallFiling filing(request, m_sources.calls);
    const HistoryRows::Context context = this->context();
    bool hasDeleted = false;
    const bool done = m_database.write(textFor(request, "changing").c_str(), [&](Database::Session& session) {
        Rows rows(session, context);
        if (request.reason == DataRequest::Reason::eDelete) {
            detachRewritten(request, rows.calls);
        }
        lastUniqueId = change(rows, request, filing);
        if (request.reason == DataRequest::Reason::eWrite) {
            attachRewritten(request, lastUniqueId, rows.calls);
        }
        filing.removeLiveCalls(session, m_line);
        hasDeleted = rows.calls.history().removeTraces();
    });
    filing.setFiled(done);
    if (!done) {
        return Words::FAILED;
    }
    if (hasDeleted) {
        m_database.truncateLog();
    }
    return journalxml::buildUpdateResponse(request.schema, lastUniqueId);
}

}  // namespace host
