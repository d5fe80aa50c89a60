#include "host/database/DatabaseWriter.h"

#include <sqlite3.h>

#include <algorithm>
#include <string>

#include "host/database/DatabaseConnection.h"
#include "host/database/DatabaseError.h"
#include "host/database/PrivateFile.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

/// The SQLite error as a sentence for the user who starts the program.
std::string explanationOf(const std::filesystem::path& file, const SQLite::Exception& error) {
    switch (error.getErrorCode()) {
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
            return file.string() + " is damaged (" + error.what() +
                   "); restore it from a backup or move it away, then start again. Nothing in it was changed";
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return file.string() + " is locked by another program; end that one, then start again";
        case SQLITE_READONLY: return file.string() + " cannot be written: " + error.what();
        default: return file.string() + " cannot be used: " + error.what();
    }
}

/// A full disk or an interrupted copy leaves such a file. SQLite would delete a log beside it.
void reportEmptyFile(const std::filesystem::path& file) {
    if (!std::filesystem::exists(file) || std::filesystem::file_size(file) > 0) {
        return;
    }
    const std::string log = file.string() + "-wal";
    if (std::filesystem::exists(log) && std::filesystem::file_size(log) > 0) {
        throw DatabaseError(file.string() + " is empty, but " + log +
                            " is not; restore it from a backup or move both away, then start again");
    }
    logAppUni("Database", __FILE_NAME__, 3, __LINE__,
              "%s is empty, as a full disk or an interrupted copy leaves it; a new journal begins in it",
              file.c_str());
}

std::unique_ptr<DatabaseConnection> connectionTo(const std::filesystem::path& file,
                                                 std::chrono::milliseconds busyTime) {
    try {
        requireRegularFile(file);
        DatabaseFile::recover(file);
        reportEmptyFile(file);
        makePrivateFile(file);
        return std::make_unique<DatabaseConnection>(file, busyTime);
    } catch (const std::filesystem::filesystem_error& error) {
        throw DatabaseError(error.what());
    } catch (const SQLite::Exception& error) {
        throw DatabaseError(explanationOf(file, error));
    }
}

}  // namespace

DatabaseWriter::DatabaseWriter(std::filesystem::path file, std::chrono::milliseconds busyTime)
    : m_file(std::move(file)),
      m_busyTime(busyTime),
      m_connection(connectionTo(m_file, busyTime)),
      m_place(m_file),
      m_readers(m_file, m_place, busyTime) {
    m_lastItemId = m_connection->lastItemId();
    m_dataVersion = m_connection->dataVersion();
    m_connection->setRowChanges(m_changes);
}

DatabaseWriter::~DatabaseWriter() = default;

void DatabaseWriter::setLogListener(std::function<void()> listener) {
    m_logListener = std::move(listener);
    m_connection->setLogListener(m_logListener);
}

void DatabaseWriter::requireFile() {
    if (m_place.isInPlace()) {
        m_isInPlace = true;
        return;
    }
    if (m_isInPlace.exchange(false)) {
        logAppUni("Database", __FILE_NAME__, 2, __LINE__,
                  "%s, or its -wal or -shm, was deleted, renamed or replaced", m_file.c_str());
    }
    m_connection = m_place.putBack(*m_connection, m_busyTime);
    m_connection->setLogListener(m_logListener);
    m_connection->setRowChanges(m_changes);
    m_dataVersion = m_connection->dataVersion();
    m_changes.noteAll();
    m_changes.endTransaction();
    m_readers.renew();
    m_isInPlace = true;
    logAppUni("Database", __FILE_NAME__, 2, __LINE__,
              "%s is written anew, with all that was stored; a file that had replaced it is kept beside it",
              m_file.c_str());
}

void DatabaseWriter::noteForeignChanges() {
    if (const std::int64_t version = m_connection->dataVersion(); version != m_dataVersion) {
        m_dataVersion = version;
        m_changes.noteAll();
        if (!m_connection->isInTransaction()) {
            m_changes.endTransaction();
        }
    }
}

void DatabaseWriter::transact(const DatabaseWork& work, bool flushes) {
    transact(work, flushes, false);
}

void DatabaseWriter::transact(const DatabaseChange& change) {
    transact(change.work, true, change.leavesMinor);
}

void DatabaseWriter::transact(const DatabaseWork& work, bool flushes, bool leavesDeferred) {
    requireFile();
    m_connection->setFlushing(flushes);
    bool emptiesLog = false;
    carryOut(*m_connection, "BEGIN IMMEDIATE", [&](DatabaseSession& session) {
        noteForeignChanges();
        m_deferred.begin();
        makeDeferred(session, leavesDeferred);
        work(session);
        emptiesLog = session.emptiesLog();
    });
    committed(emptiesLog);
}

void DatabaseWriter::makeDeferred(DatabaseSession& session, bool isLeft) {
    if (isLeft && !m_deferred.areMany()) {
        session.setDeferred([this] { m_deferred.carryOut(*m_connection); });
    } else {
        m_deferred.carryOut(*m_connection);
    }
}

void DatabaseWriter::committed(bool emptiesLog) noexcept {
    m_deferred.committed();
    std::int64_t last = m_lastItemId;
    while (last < m_connection->lastItemId() &&
           !m_lastItemId.compare_exchange_weak(last, m_connection->lastItemId())) {}
    if (emptiesLog) {
        m_emptiesLog = true;
    }
}

void DatabaseWriter::transact(std::span<Grouped> group) noexcept {
    // A change that ends the transaction of all is left out of the next attempt. It is not tried with each of
    // many changes.
    constexpr int kAttempts = 3;
    std::optional<DatabaseFailure> failure;
    bool isDone = false;
    for (int attempt = 0; attempt < kAttempts && !isDone && !failure; ++attempt) {
        failure = DatabaseFailure::of([&] { isDone = transactOnce(group); });
    }
    if (!isDone) {
        for (Grouped& each : group) {
            if (!each.failure) {
                each.failure = failure ? failure : DatabaseFailure{SQLITE_ABORT, "other changes failed"};
            }
        }
    }
}

/// Makes the changes of the group that have not failed. Returns false if one of them has ended the
/// transaction; then none is made.
bool DatabaseWriter::transactOnce(std::span<Grouped> group) {
    requireFile();
    m_connection->setFlushing(true);
    bool emptiesLog = false;
    bool isEnded = false;
    const auto makeAll = [&](DatabaseSession& /*session*/) {
        noteForeignChanges();
        m_deferred.begin();
        for (Grouped& each : group) {
            if (!each.failure && !makeAlone(each, emptiesLog)) {
                isEnded = true;
                throw SQLite::Exception(each.failure->text, each.failure->code);
            }
        }
    };
    try {
        carryOut(*m_connection, "BEGIN IMMEDIATE", makeAll);
    } catch (const SQLite::Exception& error) {
        if (isEnded && DatabaseFailure{error.getErrorCode()}.mayBeOfOneWork()) {
            return false;
        }
        throw;
    }
    committed(emptiesLog);
    return true;
}

/// Makes one change of the open transaction, or none of it. Returns false if it has failed and the
/// transaction cannot go on.
bool DatabaseWriter::makeAlone(Grouped& grouped, bool& emptiesLog) {
    const bool deferredAreMade = m_deferred.areCarriedOut();
    m_connection->query("SAVEPOINT change").run();
    DatabaseSession session(*m_connection);
    grouped.failure = DatabaseFailure::of([&] {
        makeDeferred(session, grouped.change->leavesMinor);
        grouped.change->work(session);
    });
    if (grouped.failure) {
        // SQLite writes no more in a transaction that has met a damaged page.
        if (!m_connection->isInTransaction() || grouped.failure->code == SQLITE_CORRUPT) {
            return false;
        }
        m_connection->query("ROLLBACK TO change").run();
        m_connection->noteRolledBack();
        if (!deferredAreMade) {
            m_deferred.begin();
        }
    }
    m_connection->query("RELEASE change").run();
    emptiesLog = emptiesLog || (!grouped.failure && session.emptiesLog());
    return true;
}

std::optional<DatabaseFailure> DatabaseWriter::transactSoon(const DatabaseWork& work, bool flushes) noexcept {
    m_connection->setBusyTime(std::min(kShortWait, m_busyTime));
    auto failure = DatabaseFailure::of([&] { transact(work, flushes); });
    m_connection->setBusyTime(m_busyTime);
    return failure;
}

bool DatabaseWriter::isMinor(const DatabaseChange& change) noexcept {
    bool minor = false;
    m_connection->setBusyTime(std::min(kShortWait, m_busyTime));
    const auto failure = DatabaseFailure::of([&] {
        DatabaseSession session(*m_connection);
        minor = change.isMinor && change.isMinor(session);
    });
    m_connection->setBusyTime(m_busyTime);
    return !failure && minor;
}

}  // namespace host
