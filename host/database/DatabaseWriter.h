#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "host/database/DatabaseFailure.h"
#include "host/database/DatabaseFile.h"
#include "host/database/DatabaseSession.h"
#include "host/database/DeferredChanges.h"
#include "host/database/ReadConnections.h"
#include "host/database/RowChanges.h"

namespace host {

class DatabaseConnection;

/// The connection that writes, with its file in its place and the changes that wait for a transaction.
///
/// Requires, but for what is marked as thread-safe: the database's lock is held.
class DatabaseWriter {
public:
    /// The time that work waits for other programs or threads if it must not wait long.
    static constexpr std::chrono::milliseconds kShortWait{50};

    /// Opens the file, creates it (mode 0600) if it is missing, and migrates its tables. Throws
    /// `DatabaseError`.
    DatabaseWriter(std::filesystem::path file, std::chrono::milliseconds busyTime);
    ~DatabaseWriter();
    DatabaseWriter(const DatabaseWriter&) = delete;
    DatabaseWriter& operator=(const DatabaseWriter&) = delete;

    /// The rows that were changed. Thread-safe.
    [[nodiscard]] RowChanges& rowChanges() noexcept { return m_changes; }
    /// Notes if another program has changed rows.
    void noteForeignChanges();

    [[nodiscard]] DatabaseConnection& connection() noexcept { return *m_connection; }
    /// The place of the open files. Thread-safe.
    [[nodiscard]] const DatabaseFile& place() const noexcept { return m_place; }
    /// Thread-safe, as all that these connections do.
    [[nodiscard]] ReadConnections& readers() noexcept { return m_readers; }
    [[nodiscard]] unsigned generation() const noexcept { return m_readers.generation(); }
    /// False from the time at which `requireFile` found another file until it has put the open one back.
    /// Thread-safe.
    [[nodiscard]] bool isInPlace() const noexcept { return m_isInPlace; }
    /// A row id for a new row of `call_item` that no row has had. Thread-safe.
    [[nodiscard]] std::int64_t newItemId() noexcept { return ++m_lastItemId; }
    /// See `DatabaseConnection::setLogListener`; it holds for the next connection too.
    void setLogListener(std::function<void()> listener);

    /// Puts the file back if it was deleted or replaced. Throws if that fails.
    void requireFile();
    /// Runs the work and before it the deferred changes in one transaction. Throws what SQLite or the work
    /// throws, after all was rolled back.
    void transact(const DatabaseWork& work, bool flushes);
    /// The same in a transaction that is flushed. A change that allows it leaves the deferred changes until
    /// there are many.
    void transact(const DatabaseChange& change);
    /// A change of a group, and the reason if it failed.
    struct Grouped {
        const DatabaseChange* change = nullptr;
        std::optional<DatabaseFailure> failure{};
    };
    /// Makes changes in one transaction that is flushed, and sets the failure of each that is not made: its
    /// own, or that of the transaction.
    void transact(std::span<Grouped> group) noexcept;
    /// The same as the first, but waits for other programs for `kShortWait` only, and returns the failure.
    [[nodiscard]] std::optional<DatabaseFailure> transactSoon(const DatabaseWork& work,
                                                              bool flushes) noexcept;
    /// True once after a transaction that wants the log to be emptied. Thread-safe.
    [[nodiscard]] bool takeEmptiesLog() noexcept { return m_emptiesLog && m_emptiesLog.exchange(false); }

    [[nodiscard]] bool isMinor(const DatabaseChange& change) noexcept;
    void defer(const std::shared_ptr<DatabaseChange>& change) { m_deferred.add(change); }
    /// Thread-safe.
    [[nodiscard]] bool hasDeferred() const noexcept { return !m_deferred.isEmpty(); }

private:
    void transact(const DatabaseWork& work, bool flushes, bool leavesDeferred);
    void makeDeferred(DatabaseSession& session, bool isLeft);
    [[nodiscard]] bool transactOnce(std::span<Grouped> group);
    [[nodiscard]] bool makeAlone(Grouped& grouped, bool& emptiesLog);
    void committed(bool emptiesLog) noexcept;

    // Constant after construction.
    const std::filesystem::path m_file;
    const std::chrono::milliseconds m_busyTime;

    std::atomic<bool> m_isInPlace{true};
    std::atomic<std::int64_t> m_lastItemId{0};
    std::atomic<bool> m_emptiesLog{false};

    RowChanges m_changes;
    std::unique_ptr<DatabaseConnection> m_connection;
    std::int64_t m_dataVersion = 0;
    std::function<void()> m_logListener;
    DeferredChanges m_deferred;
    // After the connection, which creates the file.
    DatabaseFile m_place;
    ReadConnections m_readers;
};

}  // namespace host
