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

#include "host/data/DatabaseError.h"
#include "host/data/Query.h"

namespace host {

class DatabaseConnection;

/// The host's database: one SQLite file, one connection, shared by the parts that keep something in it (docs/database.md).
///
/// Work with it is a function that is handed over:
///
///     const bool done = database.write("storing a contact", [&](Database::Session& session) {
///         session.query("INSERT INTO ...").bind(surname).run();
///     });
///
/// What is written is durable when `write` has returned true (write-ahead log, synchronous=FULL), and is undone as a whole when
/// it has returned false. Other processes may use the file at the same time; work waits for them up to the busy
/// time, then fails.
///
/// Threads: any thread may call; pieces of work run one at a time, on the caller's thread. A piece of work must not
/// call the database again except through its session, and nothing that might wait for another thread.
///
/// Errors: failures at run time (locked, full, damaged, read-only, an exception of the work) make `read` and `write` answer
/// false and leave one line in the log; nothing throws. `healthy` says whether the last attempt went well.
class Database {
public:
    struct Options {
        /// How long work waits for another process that holds the lock.
        std::chrono::milliseconds busyTime{2000};
    };

    /// The connection, in the hands of one piece of work.
    class Session {
    public:
        /// A statement by its text, prepared at its first use and kept. The same text may be used again only when the
        /// former `Query` is gone.
        [[nodiscard]] Query query(const char* sql);
        /// The row id of the last row that was inserted.
        [[nodiscard]] std::int64_t lastInsertedId() const;

    private:
        friend class Database;
        explicit Session(Database& database) noexcept : m_database(database) {}
        Database& m_database;
    };
    using Work = std::function<void(Session&)>;

    /// Opens the file, makes it (mode 0600) when it is not there, and brings its tables to the present version. Throws
    /// `DatabaseError` when that cannot be done: no permission, no database of ours, damaged, locked, or written by a
    /// newer version of the program. A file that cannot be used is left as it is.
    explicit Database(const std::filesystem::path& file);
    Database(const std::filesystem::path& file, Options options);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Told how long each piece of writing took, on the thread that wrote. Before anybody writes.
    void setWriteListener(std::function<void(std::chrono::duration<double>)> listener) {
        m_writeListener = std::move(listener);
    }

    /// Runs work that only reads, and sees one state of the database. `what` completes "... failed" in the log.
    bool read(const char* what, const Work& work) noexcept;
    /// Runs work in one transaction, which no other process can come between: all of it or nothing.
    bool write(const char* what, const Work& work) noexcept;

    /// False from a failed piece of work until a later one succeeds; after a failed write that must be a write. Never
    /// blocks.
    [[nodiscard]] bool healthy() const noexcept { return !m_readFailed && !m_writeFailed; }
    /// Tries whether the database can be read and written now, changing nothing; updates and answers `healthy`.
    [[nodiscard]] bool probe() noexcept;

    [[nodiscard]] const std::filesystem::path& file() const noexcept { return m_file; }

private:
    bool run(const char* what, const char* begin, const Work& work) noexcept;
    void carryOut(const char* begin, const Work& work);

    // Constant after construction.
    const std::filesystem::path m_file;
    // Constant once somebody writes.
    std::function<void(std::chrono::duration<double>)> m_writeListener;

    std::atomic<bool> m_readFailed{false};
    std::atomic<bool> m_writeFailed{false};

    std::mutex m_mutex;
    // Guarded by m_mutex.
    std::unique_ptr<DatabaseConnection> m_connection;
};

}  // namespace host
