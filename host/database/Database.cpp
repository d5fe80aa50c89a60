#include "host/database/Database.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "host/database/DatabaseConnection.h"
#include "host/database/Schema.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

/// SQLite would create the file readable for all; its companion files get the file's own mode.
void makePrivateFile(const std::filesystem::path& file) {
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0) {
        throw DatabaseError(file.string() + " cannot be opened: " + std::generic_category().message(errno));
    }
    ::close(descriptor);
}

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
    return m_database.m_connection->query(sql);
}

std::int64_t Database::Session::lastInsertedId() const {
    return m_database.m_connection->lastInsertedId();
}

Database::Database(const std::filesystem::path& file) : Database(file, Options()) {}

Database::Database(const std::filesystem::path& file, Options options)
    : m_file(std::filesystem::absolute(file)), m_connection(connectionTo(m_file, options.busyTime)) {}

Database::~Database() = default;

bool Database::read(const char* what, const Work& work) noexcept {
    const bool done = run(what, "BEGIN", work);
    m_readFailed = !done;
    return done;
}

bool Database::write(const char* what, const Work& work) noexcept {
    const auto begin = std::chrono::steady_clock::now();
    const bool done = run(what, "BEGIN IMMEDIATE", work);
    if (m_writeListener) {
        m_writeListener(std::chrono::steady_clock::now() - begin);
    }
    m_writeFailed = !done;
    if (done) {
        m_readFailed = false;
    }
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

bool Database::run(const char* what, const char* begin, const Work& work) noexcept {
    try {
        const std::lock_guard lock(m_mutex);
        carryOut(begin, work);
        return true;
    } catch (const std::exception& error) {
        logAppUni("Database", __FILE_NAME__, 2, __LINE__, "%s failed: %s", what, error.what());
    } catch (...) {
        logAppUni("Database", __FILE_NAME__, 2, __LINE__, "%s failed", what);
    }
    return false;
}

void Database::carryOut(const char* begin, const Work& work) {
    try {
        m_connection->query(begin).run();
        Session session(*this);
        work(session);
        m_connection->query("COMMIT").run();
    } catch (...) {
        m_connection->rollBack();
        throw;
    }
}

}  // namespace host
