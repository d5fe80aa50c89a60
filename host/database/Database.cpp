#include "host/database/Database.h"

#include <sqlite3.h>

#include <algorithm>
#include <thread>
#include <utility>

#include "host/database/DatabaseConnection.h"
#include "host/database/PrivateFile.h"
#include "host/database/Schema.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

/// The time that a change waits for others while changes are kept, and the time between attempts to store
/// them.
constexpr std::chrono::milliseconds kShortWait{50};
constexpr std::chrono::milliseconds kBetweenStores{250};

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

/// A mutex with a time limit makes ThreadSanitizer report false alarms.
bool lockWithin(std::unique_lock<std::mutex>& lock, std::chrono::milliseconds time) {
    constexpr std::chrono::milliseconds kPause{2};
    for (const auto end = std::chrono::steady_clock::now() + time; !lock.try_lock();) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(kPause);
    }
    return true;
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

Query DatabaseSession::query(const char* sql) {
    return m_connection.query(sql);
}

std::int64_t DatabaseSession::lastInsertedId() const {
    return m_connection.lastInsertedId();
}

std::uint64_t DatabaseSession::itemChanges() const {
    return m_connection.itemChanges();
}

Database::Database(const std::filesystem::path& file) : Database(file, Options()) {}

Database::Database(const std::filesystem::path& file, Options options)
    : m_file(std::filesystem::absolute(file)),
      m_busyTime(options.busyTime),
      m_connection(connectionTo(m_file, options.busyTime)),
      m_place(m_file),
      m_readers(m_file, m_place, m_busyTime) {
    m_lastItemId = m_connection->lastItemId();
}

Database::~Database() = default;

bool Database::read(const char* what, const Work& work) noexcept {
    makeDeferred();
    return guarded(what, false, [&] {
        const std::lock_guard lock(m_mutex);
        carryOut(*m_connection, "BEGIN", work);
    });
}

bool Database::readAside(const char* what, const Work& work) noexcept {
    makeDeferred();
    const bool done = guarded(what, false, [&] {
        m_readers.run([&work](DatabaseConnection& reader) { carryOut(reader, "BEGIN", work); });
    });
    truncateLogIfDue();
    return done;
}

bool Database::write(const char* what, const Work& work) noexcept {
    bool done = false;
    measured([&] {
        static_cast<void>(storeKept());
        done = guarded(what, true, [&] {
            const std::lock_guard lock(m_mutex);
            if (m_kept.size() > 0 && !m_kept.isHopelessAndAlone()) {
                throw std::runtime_error("earlier changes are not stored yet");
            }
            transact(work, true);
            if (m_kept.size() > 0) {
                giveUpFirst(m_keptFor);
            }
        });
    });
    return done;
}

std::optional<DatabaseFailure> Database::note(const Work& work) noexcept {
    const std::lock_guard lock(m_mutex);
    return transactSoon(work, false);
}

void Database::measured(const std::function<void()>& write) {
    const auto begin = Clock::now();
    write();
    if (m_writeListener) {
        m_writeListener(Clock::now() - begin);
    }
    truncateLogIfDue();
}

void Database::transact(const Work& work, bool flushes) {
    requireFile();
    m_connection->setFlushing(flushes);
    bool emptiesLog = false;
    carryOut(*m_connection, "BEGIN IMMEDIATE", [&](Session& session) {
        m_deferred.carryOut(*m_connection);
        work(session);
        emptiesLog = session.m_emptiesLog;
    });
    m_deferred.committed();
    std::int64_t last = m_lastItemId;
    while (last < m_connection->lastItemId() &&
           !m_lastItemId.compare_exchange_weak(last, m_connection->lastItemId())) {}
    if (emptiesLog) {
        m_nextAttempt = Clock::time_point();
        m_logIsDue = true;
    }
}

/// Waits for other programs for a short time only.
std::optional<DatabaseFailure> Database::transactSoon(const Work& work, bool flushes) noexcept {
    m_connection->setBusyTime(std::min(kShortWait, m_busyTime));
    const auto failure = DatabaseFailure::of([&] { transact(work, flushes); });
    m_connection->setBusyTime(m_busyTime);
    return failure;
}

void Database::makeDeferred() noexcept {
    if (!m_deferred.isEmpty()) {
        const std::lock_guard lock(m_mutex);
        // If it fails, the next transaction repeats it.
        static_cast<void>(transactSoon([](Session&) {}, false));
    }
}

bool Database::isMinor(const DatabaseChange& change) {
    bool minor = false;
    const auto failure = DatabaseFailure::of([&] {
        Session session(*m_connection);
        minor = change.isMinor && change.isMinor(session);
    });
    return !failure && minor;
}

Database::Outcome Database::writeOrKeep(const std::shared_ptr<DatabaseChange>& change) noexcept {
    Outcome outcome = Outcome::eRefused;
    measured([&] {
        try {
            outcome = changeOrKeep(change);
        } catch (const std::exception& error) {
            failed(change->what, true, {0, error.what()});
        }
    });
    if (outcome == Outcome::eRefused) {
        m_kept.countLost();
        change->finish(false);
    }
    return outcome;
}

Database::Outcome Database::changeOrKeep(const std::shared_ptr<DatabaseChange>& change) {
    const auto outcomeOf = [](bool kept) { return kept ? Outcome::eKept : Outcome::eRefused; };
    if (const auto kept = m_kept.addBehindOthers(change)) {
        const auto now = Clock::now();
        if (now >= m_nextStore.load()) {
            m_nextStore = now + kBetweenStores;
            static_cast<void>(storeFirst());
        }
        return outcomeOf(*kept);
    }
    const std::lock_guard lock(m_mutex);
    if (const auto kept = m_kept.addBehindOthers(change)) {
        return outcomeOf(*kept);
    }
    if (isMinor(*change)) {
        m_deferred.add(change);
        return Outcome::eStored;
    }
    const auto failure = DatabaseFailure::of([&] { transact(change->work, true); });
    if (!failure) {
        m_health.succeeded(change->what, true);
        change->finish(true);
        return Outcome::eStored;
    }
    failed(change->what, true, *failure);
    if (!failure->isOfDatabase()) {
        return Outcome::eRefused;
    }
    const bool kept = m_kept.add(change);
    if (kept) {
        logAppUni("Database", __FILE_NAME__, 2, __LINE__, "%s is kept in memory and repeated",
                  change->what.c_str());
        m_keptFor = failure->text;
    }
    return outcomeOf(kept);
}

bool Database::storeKept() noexcept {
    bool goesOn = true;
    const auto failure = DatabaseFailure::of([&] {
        while (goesOn && m_kept.size() > 0) {
            goesOn = storeFirst();
        }
    });
    truncateLogIfDue();
    return !failure && goesOn;
}

/// Returns false if the first kept change cannot be stored now.
bool Database::storeFirst() {
    std::unique_lock lock(m_mutex, std::defer_lock);
    if (!lockWithin(lock, kShortWait)) {
        return false;
    }
    const std::deque<KeptChanges::Kept> kept = m_kept.first(2);
    if (kept.empty()) {
        return true;
    }
    DatabaseChange& first = *kept.front().change;
    // Each change is a transaction of its own; the last flushes all of them.
    const bool isLast = kept.size() == 1;
    if (const auto failure = transactSoon(first.work, isLast)) {
        passFirst(kept, *failure);
        return m_kept.size() == 0;
    }
    m_health.succeeded(first.what, true);
    m_kept.remove(0, false);
    m_isUnflushed = !isLast;
    first.finish(true);
    if (isLast) {
        m_keptFor.clear();
        logAppUni("Database", __FILE_NAME__, 4, __LINE__, "the changes that were kept are stored");
    }
    return true;
}

/// Drops a change that fails while the one after it can be made. Requires: m_mutex is held.
void Database::passFirst(const std::deque<KeptChanges::Kept>& kept, const DatabaseFailure& failure) {
    DatabaseChange& first = *kept.front().change;
    if (m_keptFor != failure.text) {
        m_keptFor = failure.text;
        failed(first.what, true, failure);
    } else {
        m_health.failed(first.what, true, failure.code);
    }
    bool isLost = !failure.isOfDatabase();
    if (!isLost && m_kept.noteFailure(failure.mayBeOfOneWork()) && kept.size() > 1 &&
        !transactSoon(kept[1].change->work, true)) {
        m_kept.remove(1, false);
        m_isUnflushed = false;
        kept[1].change->finish(true);
        isLost = true;
    }
    if (isLost) {
        giveUpFirst(failure.text);
        if (m_kept.size() == 0 && std::exchange(m_isUnflushed, false)) {
            truncateLog();  // flushes what was stored before
        }
    }
}

/// Requires: m_mutex is held.
void Database::giveUpFirst(const std::string& reason) {
    const std::shared_ptr<DatabaseChange> first = m_kept.first(1).front().change;
    logAppUni("Database", __FILE_NAME__, 2, __LINE__, "%s is given up: %s", first->what.c_str(),
              reason.c_str());
    m_kept.remove(0, true);
    first->finish(false);
}

bool Database::maintain() noexcept {
    if (const std::unique_lock lock(m_mutex, std::try_to_lock); lock.owns_lock()) {
        if (const auto failure = DatabaseFailure::of([this] { requireFile(); })) {
            failed("putting the database back", true, *failure);
        }
    }
    makeDeferred();
    return storeKept();
}

void Database::requireFile() {
    if (m_place.isInPlace()) {
        m_fileIsInPlace = true;
        return;
    }
    if (m_fileIsInPlace.exchange(false)) {
        logAppUni("Database", __FILE_NAME__, 2, __LINE__,
                  "%s, or its -wal or -shm, was deleted, renamed or replaced", m_file.c_str());
    }
    m_connection = m_place.putBack(*m_connection, m_busyTime);
    m_readers.renew();
    m_fileIsInPlace = true;
    logAppUni("Database", __FILE_NAME__, 2, __LINE__,
              "%s is written anew, with all that was stored; a file that had replaced it is kept beside it",
              m_file.c_str());
}

bool Database::healthy() const noexcept {
    return m_health.healthy() && m_fileIsInPlace && m_kept.size() == 0;
}

bool Database::probe() noexcept {
    if (!maintain()) {
        return healthy();
    }
    const bool doubtful = m_health.writeFailed();
    static_cast<void>(write("probing the database", [doubtful](Session& session) {
        static_cast<void>(session.query("SELECT count(*) FROM setting").next());
        if (doubtful) {
            // Taking the lock does not detect a full disk: write a value that changes nothing.
            session.query(("PRAGMA user_version = " + std::to_string(Schema::version())).c_str()).run();
        }
    }));
    return healthy();
}

void Database::truncateLog() noexcept {
    m_logIsDue = true;
    m_nextAttempt = std::chrono::steady_clock::time_point();
    truncateLogIfDue();
}

void Database::truncateLogIfDue() noexcept {
    constexpr std::chrono::seconds kBetweenAttempts{1};
    const auto now = std::chrono::steady_clock::now();
    if (m_logIsDue && now >= m_nextAttempt.load()) {
        m_nextAttempt = now + kBetweenAttempts;
        static_cast<void>(guarded("emptying the log of the database", false, [this] {
            const std::lock_guard lock(m_mutex);
            m_logIsDue = !m_connection->truncateLog();
        }));
    }
}

void Database::removeMigrationCopy() noexcept {
    static_cast<void>(guarded("removing the copy of the older version", false, [this] {
        for (int version = 0; version < Schema::version(); ++version) {
            const std::filesystem::path copy = DatabaseConnection::copyOf(m_file, version);
            std::filesystem::remove(copy);
            std::filesystem::remove(copy.string() + ".unfinished");
        }
    }));
}

bool Database::guarded(const char* what, bool isWrite, const std::function<void()>& work) noexcept {
    const auto failure = DatabaseFailure::of(work);
    if (failure) {
        failed(what, isWrite, *failure);
    } else {
        m_health.succeeded(what, isWrite);
    }
    return !failure;
}

void Database::failed(const std::string& what, bool isWrite, const DatabaseFailure& failure) noexcept {
    m_health.failed(what, isWrite, failure.code);
    logAppUni("Database", __FILE_NAME__, 2, __LINE__, "%s failed: %s", what.c_str(), failure.text.c_str());
}

void Database::carryOut(DatabaseConnection& connection, const char* begin, const Work& work) {
    try {
        connection.query(begin).run();
        Session session(connection);
        work(session);
        connection.query("COMMIT").run();
    } catch (...) {
        connection.rollBack();
        throw;
    }
}

}  // namespace host
