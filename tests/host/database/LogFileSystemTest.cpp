#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "host/database/LogFileSystem.h"
#include "tests/support/TemporaryDirectory.h"

namespace {

std::string contentOf(SQLite::Database& database) {
    const std::string state = database.execAndGet("PRAGMA integrity_check").getString();
    return state + " " +
           database.execAndGet("SELECT count(*) || ' ' || ifnull(sum(number), 0) FROM row").getString();
}

/// The files as they are now, without a flush and without an end of the connection.
std::string contentAfterKill(const std::filesystem::path& file, const std::filesystem::path& copy) {
    for (const char* suffix : {"", "-wal"}) {
        std::filesystem::copy_file(file.string() + suffix, copy.string() + suffix,
                                   std::filesystem::copy_options::overwrite_existing);
    }
    std::filesystem::remove(copy.string() + "-shm");
    SQLite::Database killed(copy.string(), SQLite::OPEN_READWRITE);
    return contentOf(killed);
}

TEST(LogFileSystem, WritesEachTransactionBeforeItCounts) {
    const TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "journal.db";
    for (const char* synchronous : {"FULL", "NORMAL"}) {
        std::filesystem::remove(file);
        SQLite::Database writer(file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE, 0,
                                host::logFileSystem());
        writer.exec("PRAGMA journal_mode = WAL; PRAGMA wal_autocheckpoint = 0");
        writer.exec(std::string("PRAGMA synchronous = ") + synchronous);
        // Few pages in memory: a larger transaction writes pages before its end, and the same ones again.
        writer.exec(
            "PRAGMA cache_size = 10; CREATE TABLE row (id INTEGER PRIMARY KEY, number INTEGER, text TEXT)");
        SQLite::Database reader(file.string(), SQLite::OPEN_READWRITE);
        const std::string fill =
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 400) "
            "INSERT INTO row (number, text) SELECT i, hex(zeroblob(400)) FROM n;";
        for (const std::string& work :
             {std::string("INSERT INTO row (number, text) VALUES (1, 'a')"), fill,
              fill + "UPDATE row SET number = number + 1;" + fill + "UPDATE row SET number = number + 1;",
              std::string("UPDATE row SET number = 5 WHERE id % 7 = 0")}) {
            writer.exec("BEGIN; " + work + "; COMMIT");
            const std::string expected = contentOf(writer);
            EXPECT_TRUE(expected.starts_with("ok ")) << expected;
            EXPECT_EQ(contentOf(reader), expected) << synchronous << work;
            EXPECT_EQ(contentAfterKill(file, directory.path() / "copy.db"), expected) << synchronous << work;
            // One that is rolled back after it has written pages.
            writer.exec("BEGIN; " + fill + "DELETE FROM row WHERE id % 2 = 0; ROLLBACK");
            EXPECT_EQ(contentOf(reader), expected);
        }
        SQLite::Database(file.string(), SQLite::OPEN_READWRITE).exec("PRAGMA wal_checkpoint(RESTART)");
        writer.exec("DELETE FROM row WHERE id > 3");  // at the begin of the log again
        EXPECT_EQ(contentAfterKill(file, directory.path() / "copy.db"), contentOf(writer));
    }
}

}  // namespace
