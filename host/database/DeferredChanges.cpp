#include "host/database/DeferredChanges.h"

#include <utility>

#include "host/database/DatabaseConnection.h"
#include "host/database/DatabaseFailure.h"
#include "platform/logging/Logging.h"

namespace host {

void DeferredChanges::add(const std::shared_ptr<DatabaseChange>& change) {
    m_changes.reserve(m_changes.size() + 1);
    if (change->keep) {
        change->keep();
    }
    m_changes.push_back({.change = change});
    m_isEmpty = false;
}

void DeferredChanges::begin() noexcept {
    m_areCarriedOut = false;
}

void DeferredChanges::carryOut(DatabaseConnection& connection) {
    if (std::exchange(m_areCarriedOut, true)) {
        return;
    }
    for (Deferred& each : m_changes) {
        each.isMade = make(*each.change, connection);
    }
}

bool DeferredChanges::make(DatabaseChange& change, DatabaseConnection& connection) {
    connection.query("SAVEPOINT deferred").run();
    const auto failure = DatabaseFailure::of([&] {
        DatabaseSession session(connection);
        change.work(session);
    });
    if (failure) {
        logAppUni("Database", __FILE_NAME__, 2, __LINE__, "%s failed: %s", change.what.c_str(),
                  failure->text.c_str());
        if (!connection.isInTransaction()) {
            throw SQLite::Exception(failure->text, failure->code);
        }
        connection.query("ROLLBACK TO deferred").run();
    }
    connection.query("RELEASE deferred").run();
    return !failure;
}

void DeferredChanges::committed() noexcept {
    if (!std::exchange(m_areCarriedOut, false)) {
        return;
    }
    m_isEmpty = true;
    for (const Deferred& each : std::exchange(m_changes, {})) {
        each.change->finish(each.isMade);
    }
}

}  // namespace host
