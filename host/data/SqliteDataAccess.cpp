#include "host/data/SqliteDataAccess.h"

#include <optional>
#include <utility>
#include <variant>

#include "host/calls/DeliveryContext.h"
#include "host/data/CallBackRows.h"
#include "host/data/CallContacts.h"
#include "host/data/CallRows.h"
#include "host/data/LiveCallRows.h"
#include "host/data/SettingRows.h"
#include "host/database/Database.h"
#include "journal-items/Occurrences.h"
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

template <typename Item>
const CallInfo* newestCall(const Item& item) {
    const auto& occurrences = occurrencesOf(item);
    return occurrences.empty() ? nullptr : &occurrences.front();
}
const CallInfo* newestCall(const CallBackItem& /*item*/) {
    return nullptr;
}

/// Reads the rows of a read request into a document; false for a schema that is no list.
bool readList(Database::Session& session, const std::string& line, DigitAnalysisServiceIfc* digits,
              const DataRequest& request, ListDocument& document) {
    const std::int64_t offset = request.offset;
    const std::int64_t limit = request.rowLimit;
    const std::optional<ListName> list = listOfTable(request.schema);
    if (list == ListName::eCallbacks) {
        CallBackRows(session, line).read(offset, limit, document);
    } else if (list) {
        CallRows(session, line).read(*list, offset, limit, document);
    } else if (request.schema == Words::CONVERSATIONS_SCHEMA) {
        CallRows(session, line).readAll(offset, limit, document);
    } else if (request.schema == Words::CALLLOGPHONEBOOK_SCHEMA) {
        CallContacts(session, line, digits).read(offset, limit, document);
    } else {
        return false;
    }
    return true;
}

/// Writes the items; returns the last unique id.
std::string writeItems(Database::Session& session, const std::string& line,
                       const std::vector<DataRequest::Item>& items) {
    std::string lastUniqueId;
    for (const DataRequest::Item& item : items) {
        if (const auto* const callBack = std::get_if<CallBackItem>(&item)) {
            CallBackRows(session, line).write(*callBack);
        } else {
            std::visit(
                [&](const auto& call) {
                    if constexpr (!std::is_same_v<std::decay_t<decltype(call)>, CallBackItem>) {
                        lastUniqueId = CallRows(session, line).write(call);
                    }
                },
                item);
        }
    }
    return lastUniqueId;
}

/// Deletes rows of a call list; returns the last unique id.
std::string deleteCalls(CallRows&& rows, ListName list, const DataRequest& request) {
    if (request.allEntries) {
        return rows.removeAll(list).value_or("");
    }
    std::string lastUniqueId;
    for (const DataRequest::Key& key : request.keys) {
        lastUniqueId = rows.remove(list, key.uniqueId, key.entryId).value_or(lastUniqueId);
    }
    return lastUniqueId;
}

void deleteCallBacks(CallBackRows&& rows, const DataRequest& request) {
    if (request.allEntries) {
        rows.removeAll();
    }
    for (const DataRequest::Key& key : request.keys) {
        rows.remove(key.entryId);
    }
}

/// Carries out a request that changes rows; returns the last unique id.
std::string change(Database::Session& session, const std::string& line, const DataRequest& request) {
    switch (request.reason) {
        case DataRequest::Reason::eWrite: return writeItems(session, line, request.items);
        case DataRequest::Reason::eDelete:
            if (const auto list = listOfTable(request.schema); list && list != ListName::eCallbacks) {
                return deleteCalls(CallRows(session, line), *list, request);
            }
            deleteCallBacks(CallBackRows(session, line), request);
            return {};
        case DataRequest::Reason::eUpdate:
            for (const auto& setting : request.settings) {
                SettingRows(session, SettingRows::Table::eJournalSettings, line).write(setting);
            }
            return {};
        case DataRequest::Reason::eRead: break;
    }
    return {};
}

/// Removes the noted calls that ended before the event being delivered, if one is, and that are filed now.
void removeEndedLiveCalls(Database::Session& session, const std::string& line, const DataRequest& request) {
    if (request.reason != DataRequest::Reason::eWrite) {
        return;
    }
    for (const DataRequest::Item& item : request.items) {
        const CallInfo* const newest = std::visit([](const auto& one) { return newestCall(one); }, item);
        if (newest != nullptr) {
            session.query(LiveCallRows::kRemoveEnded).bind(line).bind(newest->getCallId()).run();
        }
    }
}

/// A call that the request files, and the occurrence for it.
struct FiledCall {
    DeliveryContext::EndedCall* call = nullptr;
    const CallInfo* occurrence = nullptr;
};

/// Finds the calls, of those that the event being delivered ends, that the request files.
std::vector<FiledCall> filedCalls(const DataRequest& request, DeliveryContext* delivery) {
    std::vector<FiledCall> filed;
    if (delivery == nullptr || request.reason != DataRequest::Reason::eWrite) {
        return filed;
    }
    for (const DataRequest::Item& item : request.items) {
        const CallInfo* const newest = std::visit([](const auto& one) { return newestCall(one); }, item);
        for (DeliveryContext::EndedCall& each : delivery->ends) {
            if (newest != nullptr &&
                newest->getCallId() == (each.deliveredId.empty() ? each.call.callId : each.deliveredId)) {
                filed.push_back({&each, newest});
            }
        }
    }
    return filed;
}

void removeLiveCall(Database::Session& session, const std::string& line, const PhoneCallKey& call) {
    session.query(LiveCallRows::kRemove)
        .bind(line)
        .bind(call.device)
        .bind(call.callId)
        .bind(LiveCallRows::numberOf(call.firstEvent))
        .run();
}

std::string textFor(const DataRequest& request, const char* doing) {
    return std::string(doing) + ' ' + request.schema;
}

}  // namespace

SqliteDataAccess::SqliteDataAccess(Database& database, std::string line, DigitAnalysisServiceIfc* digits)
    : m_database(database), m_line(std::move(line)), m_digits(digits), m_approximateEnds(m_line) {
    m_approximateEnds.load(m_database);
}

bool SqliteDataAccess::healthy() const noexcept {
    return m_database.healthy();
}

std::optional<std::set<std::string>> SqliteDataAccess::storedIds(ListName list) {
    std::set<std::string> ids;
    const bool done = m_database.read("reading the ids of a list", [&](Database::Session& session) {
        ids = list == ListName::eCallbacks ? CallBackRows(session, m_line).ids()
                                           : CallRows(session, m_line).ids(list);
    });
    return done ? std::optional(std::move(ids)) : std::nullopt;
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
        known = readList(session, m_line, m_digits, request, document);
    });
    if (done && !known) {
        logAppUni("Database", __FILE_NAME__, 2, __LINE__, "a request reads %s, which is unknown",
                  request.schema.c_str());
    }
    return done && known ? document.text() : Words::FAILED;
}

std::string SqliteDataAccess::changeResponse(const DataRequest& request) {
    std::string lastUniqueId;
    DeliveryContext* const delivery = DeliveryContext::current();
    const std::vector<FiledCall> filed = filedCalls(request, delivery);
    const bool approximate = !filed.empty() && delivery->endApproximate;
    const bool done = m_database.write(textFor(request, "changing").c_str(), [&](Database::Session& session) {
        lastUniqueId = change(session, m_line, request);
        removeEndedLiveCalls(session, m_line, request);
        for (const FiledCall& each : filed) {
            removeLiveCall(session, m_line, each.call->call);
            if (approximate) {
                m_approximateEnds.write(session, *each.occurrence);
            }
        }
    });
    for (const FiledCall& each : done ? filed : std::vector<FiledCall>()) {
        each.call->filed = true;
        if (approximate) {
            m_approximateEnds.add(*each.occurrence);
        }
    }
    return done ? journalxml::buildUpdateResponse(request.schema, lastUniqueId) : Words::FAILED;
}

}  // namespace host
