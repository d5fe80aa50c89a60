#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include <SQLiteCpp/SQLiteCpp.h>

#include "host/database/Query.h"
#include "host/database/RowChanges.h"

namespace host {

/// The open SQLite file with its prepared statements. Requires: the database's lock is held. Every operation
/// throws `SQLite::Exception` if SQLite fails.
class DatabaseConnection {
public:
    /// Opens the file, checks that it is undamaged and belongs to this program, and migrates its tables to
    /// the current version. Throws `DatabaseError` for a file of another program or of a newer version.
    DatabaseConnection(const std::filesystem::path& file, std::chrono::milliseconds busyTime);
    struct ReadOnly {};
    /// Opens a file that another connection has checked, for reading only.
    DatabaseConnection(const std::filesystem::path& file, std::chrono::milliseconds busyTime, ReadOnly how);

    /// The copy of the file that the migration from that version keeps.
    [[nodiscard]] static std::filesystem::path copyOf(const std::filesystem::path& file, int version);

    [[nodiscard]] Query query(const char* sql);
    [[nodiscard]] std::int64_t lastInsertedId() const { return m_database.getLastInsertRowid(); }
    /// Moves the log into the file and empties it. Returns false, at once, if another connection reads it.
    [[nodiscard]] bool truncateLog();
    /// Calls `listener` after each commit that finds the log long, so that it is moved into the file
    /// elsewhere (`LogCheckpoint`). Without a listener, or if the log becomes very long, the commit does so
    /// itself.
    void setLogListener(std::function<void()> listener) { m_logListener = std::move(listener); }
    /// Moves the log into the file, without waiting for other connections.
    void checkpoint() noexcept;
    /// Sets the time that work waits for another process that holds the lock.
    void setBusyTime(std::chrono::milliseconds time) noexcept;
    /// Sets if a commit flushes the disk, which it does at first. Requires: no transaction is open.
    void setFlushing(bool flushes);
    /// Notes the rows that this connection changes from now on; `changes` is borrowed.
    void setRowChanges(RowChanges& changes) noexcept { m_changes = &changes; }
    /// Changes when another connection, also of another program, has changed the database.
    [[nodiscard]] std::int64_t dataVersion();
    /// The greatest row id that `call_item` has had; read from the file, then noted at each insertion.
    [[nodiscard]] std::int64_t lastItemId() const noexcept { return m_items.lastId; }
    /// Grows by the number of rows that are added to `call_item` or removed, rolled back or not, and at each
    /// rollback.
    [[nodiscard]] std::uint64_t itemChanges() const noexcept { return m_items.changes; }
    /// Call it when a part of a transaction was rolled back.
    void noteRolledBack() noexcept { ++m_items.changes; }
    /// A number that no other connection of this process has.
    [[nodiscard]] std::uint64_t serial() const noexcept { return m_serial; }
    /// Copies the whole database, in the state of its last commit, into an empty file.
    void copyTo(const std::filesystem::path& file);

    [[nodiscard]] bool isInTransaction() const noexcept;
    /// Rolls back the open transaction, if there is one; it never throws.
    void rollBack() noexcept;

private:
    struct Prepared {
        Prepared(const SQLite::Database& database, const char* sql) : statement(database, sql) {}

        SQLite::Statement statement;
        bool inUse = false;
    };

    /// Lets a statement be found without a copy of its text.
    struct TextHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const noexcept {
            return std::hash<std::string_view>()(text);
        }
    };

    void refuseForeign();
    void refuseDamaged();
    void configure();
    /// Adds the SQL function search_text(name, number), `SearchText::searchable`.
    void addSearchText();
    void followRows();
    void noteRow(int operation, const char* table, std::int64_t id) noexcept;
    void followTransactions();
    void logHasGrown(int pages) noexcept;
    void migrate();
    void keepCopy(int version);
    [[nodiscard]] int number(const char* sql);

    // In pages: 4 MiB, 12 MiB, 1 MiB.
    static constexpr int kLongLog = 2000;
    static constexpr int kVeryLongLog = 6000;
    static constexpr int kLogStep = 500;

    static std::uint64_t newSerial() noexcept;

    const std::uint64_t m_serial = newSerial();
    const std::filesystem::path m_file;
    const int m_busyMilliseconds;
    bool m_flushes = true;
    struct ItemRows {
        std::int64_t lastId = 0;
        std::uint64_t changes = 0;
    };
    ItemRows m_items;
    std::function<void()> m_logListener;
    /// Pages of the log after the last commit, and from which number on a checkpoint is due.
    int m_logPages = 0;
    int m_logDue = kLongLog;
    RowChanges* m_changes = nullptr;
    SQLite::Database m_database;
    std::unordered_map<std::string, Prepared, TextHash, std::equal_to<>> m_statements;
};

}  // namespace host
