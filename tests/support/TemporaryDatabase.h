#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "host/database/Database.h"
#include "tests/support/TemporaryDirectory.h"

namespace journaltest {

/// A database in a directory of the test's own, which can be closed, opened again, and looked at from another
/// connection. Waits 20 ms for locks.
class TemporaryDatabase {
public:
    TemporaryDatabase() { reopen(); }

    [[nodiscard]] host::Database& operator*() const { return *m_database; }
    [[nodiscard]] host::Database* operator->() const { return m_database.get(); }

    [[nodiscard]] std::filesystem::path file() const { return m_directory.path() / "journal.db"; }
    void close() { m_database.reset(); }
    void reopen() {
        close();
        m_database =
            std::make_unique<host::Database>(file(), host::Database::Options{std::chrono::milliseconds(20)});
    }

    /// Another connection to the file, as another process would have it.
    [[nodiscard]] SQLite::Database otherConnection() const {
        return {file().string(), SQLite::OPEN_READWRITE};
    }
    /// The number that another connection reads with the statement.
    [[nodiscard]] std::int64_t number(const std::string& sql) const {
        return otherConnection().execAndGet(sql).getInt64();
    }
    [[nodiscard]] std::string text(const std::string& sql) const {
        return otherConnection().execAndGet(sql).getString();
    }

private:
    TemporaryDirectory m_directory;
    std::unique_ptr<host::Database> m_database;
};

}  // namespace journaltest
