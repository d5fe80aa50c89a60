#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "host/database/DatabaseError.h"
#include "host/database/Query.h"

namespace host {

class DatabaseConnection;

/// The host's database: one SQLite file with one connection, which several components share
/// (docs/database.md).
///
/// Work with the database is a function that the caller passes:
///
///     const bool done = database.write("storing a contact", [&](Database::Session& session) {
///         session.query("INSERT INTO ...").bind(surname).run();
///     });
///
/// A change is durable when `write` returns true (write-ahead log, synchronous=FULL), and is rolled back as a
/// whole when it returns false. Other processes may use the file at the same time; work waits for them up to
/// the busy time, then fails.
///
/// Threads: any thread may call; `read` and `write` run one at a time, on the caller's thread. The function
/// passed must not call the database except through its session, and must not wait for another thread.
///
/// Errors: no operation throws at run time. On a failure (locked, full, damaged, read-only, an exception of
/// the work) `read` and `write` return false and write one log text; `healthy` then returns false.
class Database {
public:
    struct Options {
        /// The time that work waits for another process that holds the lock.
        std::chrono::milliseconds busyTime{2000};
    };

    /// The connection during one `read` or `write` call.
    class Session {
    public:
        /// Returns a statement by its text; it is prepared at its first use and kept. Requires: no earlier
        /// `Query` of the same text is alive.
        [[nodiscard]] Query query(const char* sql);
        /// The row id of the last row that was inserted.
        [[nodiscard]] std::int64_t lastInsertedId() const;

    private:
        friend class Database;
        explicit Session(DatabaseConnection& connection) noexcept : m_connection(connection) {}
        DatabaseConnection& m_connection;
    };
    using Work = std::function<void(Session&)>;

    /// Opens the file, creates it (mode 0600) if it is missing, and migrates its tables to the current
    /// version. Throws `DatabaseError` on failure: no permission, not a database of this program, damaged,
    /// locked, or written by a newer version of the program. A file that cannot be used is not changed.
    explicit Database(const std::filesystem::path& file);
    Database(const std::filesystem::path& file, Options options);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Sets a listener for the duration of each write, called on the thread that wrote. Call it before the
    /// first write.
    void setWriteListener(std::function<void(std::chrono::duration<double>)> listener) {
        m_writeListener = std::move(listener);
    }

    /// Runs work that only reads, in one state of the database. `what` completes "... failed" in the log.
    bool read(const char* what, const Work& work) noexcept;
    /// The same on a connection of its own, so that a long read does not delay a write. Reads the state of
    /// the last write that was done before. The work must only read.
    bool readAside(const char* what, const Work& work) noexcept;
    /// Runs work in one transaction, isolated from other processes: all of it or none.
    bool write(const char* what, const Work& work) noexcept;

    /// False from a failed `read` or `write` until a later one succeeds; after a failed write that must be
    /// a write. Never blocks.
    [[nodiscard]] bool healthy() const noexcept { return !m_readFailed && !m_writeFailed; }
    /// Tests if the database can be read and written now, without a change; updates and returns `healthy`.
    [[nodiscard]] bool probe() noexcept;

    /// Moves the log into the file and empties it, so that no deleted text stays in the log. Call it after a
    /// deletion. If a reader uses the log now, it is done when that reader has finished.
    void truncateLog() noexcept;
    /// Removes the copy that a migration has kept, if there is one. Call it at a clean end.
    void removeMigrationCopy() noexcept;

    [[nodiscard]] const std::filesystem::path& file() const noexcept { return m_file; }

private:
    bool guarded(const char* what, const std::function<void()>& work) noexcept;
    static void carryOut(DatabaseConnection& connection, const char* begin, const Work& work);
    [[nodiscard]] std::unique_ptr<DatabaseConnection> takeReader();
    void truncateLogIfDue() noexcept;

    // Constant after construction.
    const std::filesystem::path m_file;
    const std::chrono::milliseconds m_busyTime;
    // Constant from the first write on.
    std::function<void(std::chrono::duration<double>)> m_writeListener;

    std::atomic<bool> m_readFailed{false};
    std::atomic<bool> m_writeFailed{false};
    /// True from a deletion until the log is empty.
    std::atomic<bool> m_logIsDue{false};
    /// Each attempt flushes the disk; while a reader uses the log, there is one a second.
    std::atomic<std::chrono::steady_clock::time_point> m_nextAttempt{};

    std::mutex m_mutex;
    // Guarded by m_mutex.
    std::unique_ptr<DatabaseConnection> m_connection;

    std::mutex m_readersMutex;
    // Guarded by m_readersMutex: the connections of `readAside` that are idle.
    std::vector<std::unique_ptr<DatabaseConnection>> m_readers;
};

}  // namespace host
