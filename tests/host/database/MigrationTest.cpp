#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "host/database/Database.h"
#include "host/database/Schema.h"
#include "tests/support/TemporaryDatabase.h"

namespace {

using journaltest::TemporaryDatabase;

std::string storedFile(int version) {
    std::ifstream stream(std::string(STORED_FILES) + "/" + std::to_string(version) + ".sql");
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// Replaces the database by one that a program with tables of that version has written.
void writeAs(TemporaryDatabase& database, int version) {
    database.close();
    for (const char* const suffix : {"", "-wal", "-shm"}) {
        std::filesystem::remove(database.file().string() + suffix);
    }
    SQLite::Database older(database.file().string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    older.exec(storedFile(version));
}

TEST(Migration, MakesACallOfTheHistoryFromEveryCallOfAnEntry) {
    for (int version = 1; version < host::Schema::version(); ++version) {
        SCOPED_TRACE(version);
        TemporaryDatabase database;
        writeAs(database, version);
        database.reopen();
        const std::string approximate = version < 3 ? "0" : "1";
        EXPECT_EQ(database.text(
                      "SELECT group_concat(list || ' ' || item || ' ' || call_id || '/' || part || ' ' || "
                      "datetime(start, 'unixepoch') || ' ' || duration || ' ' || end_approximate || "
                      "' ' || reason || ' ' || number || ' ' || name, '; ') FROM "
                      "(SELECT * FROM call JOIN party ON party.id = call.party ORDER BY call.id)"),
                  "2 8 /0 1970-01-01 00:00:00 0 0 0 4712 Bob; "
                  "2 8 43/1 2026-11-20 10:00:00 5 " +
                      approximate +
                      " 0 4712 Bob; "
                      "2 8 43/0 2026-11-20 10:00:00 4511 " +
                      approximate +
                      " 0 4712 Bob; "
                      "0 7 41/0 2026-11-20 11:00:00 0 0 6 +49 30 4711 Ann Müller; "
                      "0 7 42/0 2026-11-21 05:22:05 0 0 0 +49 30 4711 Ann Müller");
        EXPECT_EQ(database.text("SELECT group_concat(id || ' ' || calls) FROM call_item"), "7 2,8 3");
        EXPECT_EQ(database.text("SELECT name FROM party JOIN call ON party.id = redirecting"), "Désk");
        EXPECT_EQ(database.number("SELECT count(*) FROM contact WHERE instr(search, 'zoe økland')"), 1);

        // The copy is what the older program has written.
        const std::string copy = database.file().string() + ".version-" + std::to_string(version);
        const std::string calls = version < 4 ? "occurrence" : "call";
        EXPECT_EQ(SQLite::Database(copy).execAndGet("SELECT count(*) FROM " + calls).getInt(), 5);
        EXPECT_EQ(std::filesystem::status(copy).permissions(),
                  std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
        database->removeMigrationCopy();
        EXPECT_FALSE(std::filesystem::exists(copy));
    }
}

}  // namespace
