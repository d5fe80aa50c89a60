#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "host/database/CommitQueue.h"
#include "host/database/DatabaseError.h"
#include "host/database/DatabaseFailure.h"
#include "host/database/DatabaseHealth.h"
#include "host/database/DatabaseSession.h"
#include "host/database/DatabaseWriter.h"
#include "host/database/FailureLog.h"
#include "host/database/KeptChanges.h"
#include "host/database/LogCheckpoint.h"

namespace host {

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
/// Threads: any thread may call; `read` and `write` run one at a time, on the caller's thread; a change of
/// `writeOrKeep` may run on the thread of another one. The function passed must not call the database except
/// through its session, and must not wait for another thread.
///
/// Errors: no operation throws at run time. On a failure (locked, full, damaged, read-only, an exception of
/// the work) `read` and `write` return false and write one log text; `healthy` then returns false. A change
/// that its maker cannot repeat is kept (`writeOrKeep`). While changes are kept, no other change is made
/// before them: `write` stores them first, or fails. Only a kept change that has failed alone, often and for
/// long is given up when another one succeeds.
class Database {
public:
    struct Options {
        /// The time that work waits for another process that holds the lock.
        std::chrono::milliseconds busyTime{2000};
    };

    using Session = DatabaseSession;
    using Work = DatabaseWork;

    /// Opens the file, creates it (mode 0600) if it is missing, and migrates its tables to the current
    /// version. Throws `DatabaseError` on failure: no permission, not a database of this program, damaged,
    /// locked, or written by a newer version of the program. A file that cannot be used is not changed.
    explicit Database(const std::filesystem::path& file);
    Database(const std::filesystem::path& file, Options options);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Gets the duration of a write, and the number of ended calls that it has filed.
    using WriteListener = std::function<void(std::chrono::duration<double> time, std::size_t calls)>;
    /// Sets a listener for each write, called on the thread that wrote. Call it before the first write.
    void setWriteListener(WriteListener listener) { m_writeListener = std::move(listener); }

    /// Sets a listener that is called while work runs, on its thread, when `checkpoint` should be called
    /// soon; an empty one leaves that to the writes. The listener must not call the database.
    void setLogListener(std::function<void()> listener);
    /// Moves the log into the file while other work goes on; that waits for the last pages only.
    void checkpoint() noexcept;

    /// Makes the minor changes that wait for another transaction, unless other work takes long. Call it
    /// before a `read` of call lists.
    void makeDeferred() noexcept;
    /// Runs work that only reads, in one state of the database. `what` completes "... failed" in the log.
    bool read(const char* what, const Work& work) noexcept;
    /// The same on a connection of its own, so that a long read does not delay a write. Reads the state of
    /// the last write that was done before. The work must only read.
    bool readAside(const char* what, const Work& work) noexcept;
    /// The same for a reader to whom rows do not matter that a minor change still has to delete.
    bool readAsideSoon(const char* what, const Work& work) noexcept;
    /// The rows that were changed lately. What another program has changed is noted too, but while a write
    /// runs only when that has begun. Never waits.
    [[nodiscard]] RowChanges& rowChanges() noexcept;
    /// Runs work in one transaction, isolated from other processes: all of it or none.
    bool write(const char* what, const Work& work) noexcept;

    /// Runs work in one transaction that is not flushed, and not ordered with the changes that are kept: for
    /// what a power cut may take, and its maker repeats. Waits for other programs no longer than some 50 ms.
    /// Returns the reason if it fails, without a log text.
    [[nodiscard]] std::optional<DatabaseFailure> note(const Work& work) noexcept;

    using Outcome = ChangeOutcome;
    /// Makes the change in one transaction; keeps it if the database refuses it, or if others are kept. Then
    /// it waits for the database no longer than some 100 ms. Changes that wait at the same moment share one
    /// transaction (`CommitQueue`), made by one of their threads: each is stored or fails for itself. A minor
    /// change is made with another transaction, within a second or before the next `readAside`; it counts as
    /// stored.
    [[nodiscard]] Outcome writeOrKeep(const std::shared_ptr<DatabaseChange>& change) noexcept;
    /// The number of changes of `writeOrKeep` that wait for their transaction.
    [[nodiscard]] std::size_t waitingCount() const { return m_commits.size(); }
    /// Tries to store what is kept, in order; returns true if no change is kept afterwards. Waits for other
    /// programs and threads no longer than some 100 ms for each change.
    bool storeKept() noexcept;
    /// Puts the file back if it was deleted or replaced, then stores what is kept. Call it about every
    /// second.
    bool maintain() noexcept;
    /// The number of changes that are kept, and of those that were lost; and of the calls that these changes
    /// file. None blocks.
    [[nodiscard]] std::size_t keptCount() const { return m_kept.size(); }
    [[nodiscard]] std::size_t keptCalls() const { return m_kept.calls(); }
    [[nodiscard]] std::uint64_t lostCount() const { return m_kept.lost(); }
    [[nodiscard]] std::uint64_t lostCalls() const { return m_kept.lostCalls(); }
    /// A row id for a new row of `call_item` that no row has had. Also if the database fails.
    [[nodiscard]] std::int64_t newItemId() noexcept { return m_writer.newItemId(); }

    /// False from a failed `read` or `write` until a later one succeeds (`DatabaseHealth`), and while changes
    /// are kept or the file is not in its place. Never blocks.
    [[nodiscard]] bool healthy() const noexcept;
    /// Tests if the database can be read and written now, without a change; updates and returns `healthy`.
    [[nodiscard]] bool probe() noexcept;

    /// Moves the log into the file and empties it, so that no deleted text stays in the log. Call it after a
    /// deletion. If a reader uses the log now, it is done when that reader has finished.
    void truncateLog() noexcept;
    /// Removes the copy that a migration has kept, if there is one. Call it at a clean end.
    void removeMigrationCopy() noexcept;

    [[nodiscard]] const std::filesystem::path& file() const noexcept { return m_file; }
    /// Changes when the file was put back: then other connections must open it again.
    [[nodiscard]] unsigned generation() const noexcept { return m_writer.generation(); }

private:
    using Clock = std::chrono::steady_clock;

    /// Runs the work, updates the health and logs a failure.
    bool guarded(const char* what, bool isWrite, const std::function<void()>& work) noexcept;
    void failed(const std::string& what, bool isWrite, const DatabaseFailure& failure) noexcept;
    [[nodiscard]] Outcome changeOrKeep(const std::shared_ptr<DatabaseChange>& change);
    void commit(CommitQueue::Group group) noexcept;
    [[nodiscard]] bool keepOrDefer(CommitQueue::Waiting& waiting);
    void settle(CommitQueue::Waiting& waiting, const std::optional<DatabaseFailure>& failure);
    bool storeFirst();
    void giveUpFirst(const std::string& reason);
    bool passFirst(const std::deque<KeptChanges::Kept>& kept, const DatabaseFailure& failure);
    void measured(std::size_t calls, const std::function<void()>& write);
    void truncateLogIfDue() noexcept;
    void emptyLog() noexcept;

    // Constant after construction.
    const std::filesystem::path m_file;
    // Constant from the first write on.
    WriteListener m_writeListener;

    DatabaseHealth m_health;
    FailureLog m_failures;
    KeptChanges m_kept;
    /// While changes are kept, a further one tries to store them from this time on.
    std::atomic<Clock::time_point> m_nextStore{};
    /// True from a deletion until the log is empty.
    std::atomic<bool> m_logIsDue{false};
    /// Each attempt flushes the disk; while a reader uses the log, there is one a second.
    std::atomic<std::chrono::steady_clock::time_point> m_nextAttempt{};

    std::mutex m_mutex;
    // Guarded by m_mutex.
    DatabaseWriter m_writer;
    /// The last transaction was not flushed.
    bool m_isUnflushed = false;
    /// The last error for which the first kept change was not stored.
    std::string m_keptFor;

    CommitQueue m_commits{m_mutex, [this](CommitQueue::Group group) { commit(group); }};

    std::mutex m_checkpointMutex;
    // Guarded by m_checkpointMutex, which is taken before m_mutex.
    LogCheckpoint m_checkpoint;
};

}  // namespace host
