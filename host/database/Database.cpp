#include "host/database/Database.h"

#include <sqlite3.h>

#include "host/database/DatabaseConnection.h"
#include "host/database/PrivateFile.h"
#include "host/database/Schema.h"
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

std::unique_ptr<DatabaseConnection> connectionTo(const std::filesystem::path& file,
                                                 std::chrono::milliseconds busyTime) {
    try {
        makePrivateFile(file);
        return std::make_unique<DatabaseConnection>(file, busyTime);
    } catch (const SQLite::Exception& error) {
        throw DatabaseError(explanationOf(file, error));
    }
}

}  // namespace

Query Database::Session::query(const char* sql) {
    return m_connection.query(sql);
}

std::int64_t Database::Session::lastInsertedId() const {
    return m_connection.lastInsertedId();
}

Database::Database(const std::filesystem::path& file) : Database(file, Options()) {}

Database::Database(const std::filesystem::path& file, Options options)
    : m_file(std::filesystem::absolute(file)),
      m_busyTime(options.busyTime),
      m_connection(connectionTo(m_file, options.busyTime)) {}

Database::~Database() = default;

bool Database::read(const char* what, const Work& work) noexcept {
    const bool done = guarded(what, [&] {
        const std::lock_guard lock(m_mutex);
        carryOut(*m_connection, "BEGIN", work);
    });
    m_readFailed = !done;
    return done;
}

bool Database::readAside(const char* what, const Work& work) noexcept {
    const bool done = guarded(what, [&] {
        std::unique_ptr<DatabaseConnection> reader = takeReader();
        carryOut(*reader, "BEGIN", work);
        const std::lock_guard lock(m_readersMutex);
        m_readers.push_back(std::move(reader));
    });
    truncateLogIfDue();
    m_readFailed = !done;
    return done;
}

std::unique_ptr<DatabaseConnection> Database::takeReader() {
    {
        const std::lock_guard lock(m_readersMutex);
        if (!m_readers.empty()) {
            std::unique_ptr<DatabaseConnection> reader = std::move(m_readers.back());
            m_readers.pop_back();
            return reader;
        }
    }
    return std::make_unique<DatabaseConnection>(m_file, m_busyTime, DatabaseConnection::ReadOnly());
}

bool Database::write(const char* what, const Work& work) noexcept {
    const auto begin = std::chrono::steady_clock::now();
    const bool done = guarded(what, [&] {
        const std::lock_guard lock(m_mutex);
        carryOut(*m_connection, "BEGIN IMMEDIATE", work);
    });
    if (m_writeListener) {
        m_writeListener(std::chrono::steady_clock::now() - begin);
    }
    m_writeFailed = !done;
    if (done) {
        m_readFailed = false;
    }
    truncateLogIfDue();
    return done;
}

bool Database::probe() noexcept {
    const bool doubtful = m_writeFailed;
    return write("probing the database", [doubtful](Session& session) {
        static_cast<void>(session.query("SELECT count(*) FROM setting").next());
        if (doubtful) {
            // Taking the lock does not detect a full disk: write a value that changes nothing.
            session.query(("PRAGMA user_version = " + std::to_string(Schema::version())).c_str()).run();
        }
    });
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
        static_cast<void>(guarded("emptying the log of the database", [this] {
            const std::lock_guard lock(m_mutex);
            m_logIsDue = !m_connection->truncateLog();
        }));
    }
}

void Database::removeMigrationCopy() noexcept {
    static_cast<void>(guarded("removing the copy of the older version", [this] {
        for (int version = 0; version < Schema::version(); ++version) {
            const std::filesystem::path copy = DatabaseConnection::copyOf(m_file, version);
            std::filesystem::remove(copy);
            std::filesystem::remove(copy.string() + ".unfinished");
        }
    }));
}

bool Database::guarded(const char* what, const std::function<void()>& work) noexcept {
    try {
        work();
        return true;
    } catch (const std::exception& error) {
        logAppUni("Database", __FILE_NAME__, 2, __LINE__, "%s failed: %s", what, error.what());
    } catch (...) {
        logAppUni("Database", __FILE_NAME__, 2, __LINE__, "%s failed", what);
    }
    return false;
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
