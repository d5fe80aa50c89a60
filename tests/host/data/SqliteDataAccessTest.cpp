#include "tests/host/data/DataAccessFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "tests/support/CapturedLog.h"
#include "tests/support/Table.h"
#include "tests/support/TemporaryDatabase.h"

namespace {

using journaltest::CapturedLog;
using journaltest::DataAccessFixture;
using journaltest::table;
using journaltest::TemporaryDatabase;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

/// Rows: the script; the result of its last request; the lists after it.
void expectRows(const std::string& rows) {
    for (const auto& row : table(3, rows)) {
        SCOPED_TRACE(row[0]);
        const TemporaryDatabase database;
        DataAccessFixture journal(*database);
        EXPECT_EQ(journal.plays(row[0]), row[1]);
        EXPECT_EQ(journal.contents(), row[2]);
        EXPECT_EQ(database.number("SELECT count(*) FROM call_item WHERE calls <> "
                                  "(SELECT count(*) FROM call WHERE item = call_item.id)"),
                  0);
    }
}

// A known item must not be a second caller after the next start.
TEST(SqliteDataAccess, WritesTheRowOfTheUniqueIdOrANewOne) {
    expectRows(R"(
        missed a 05                                                 | new | missed a
        missed a 05; missed b 06; missed A 07 id=a                  | a   | missed A b
        missed a 05 calls=3; missed A 05 id=a calls=2               | a   | missed A*2
        dialled a 05; remove dialled a; dialled b 06                | new | dialled b
        missed a 05; missed b 06 id=999                             | new | missed b a
        missed a 05; missed b 06 id=-1                              | new | missed b a
        missed a 05; missed b 06 id=01                              | new | missed b a
        missed a 05; missed b 06 id=99999999999999999999            | new | missed b a
        missed a 05; received b 05 id=a                             | new | missed a, received b
        missed a 05; 3001 missed b 05 id=a                          | new | missed a, 3001 missed b
        callback a 05; callback b 06; callback a 07                 |     | callback a b
        callback a 05; 3001 callback a 06                           |     | callback a, 3001 callback a
    )");
}

TEST(SqliteDataAccess, RemovesTheRowsOfTheKeysAndNoOthers) {
    expectRows(R"(
        forwarded a 05; forwarded b 06 calls=2; forwarded c 07; remove forwarded a c    | c | forwarded b*2
        missed a 05; missed b 06; remove missed :a                                      | a | missed b
        missed a 05; missed b 05; remove missed :a                                      | b | missed a
        missed a 05; remove missed 999:a                                                |   | missed a
        missed a 05; missed b 06; remove missed a 999:b                                 | a | missed b
        missed a 05; remove dialled a                                                   |   | missed a
        missed a 05; 3001 remove missed a :a                                            |   | missed a
        missed a 05; missed b 06; dialled c 05; 3001 missed d 05; empty missed   | b | dialled c, 3001 missed d
        missed a 05; remove missed                                                | failed  | missed a
        callback a 05; callback b 06; callback c 07; remove callback b unknown          |   | callback c a
        callback a 05; callback b 06; 3001 callback c 07; empty callback                |   | 3001 callback c
    )");
}

TEST(SqliteDataAccess, ReadsTheNewestFirstUpToTheLimit) {
    expectRows(R"(
        dialled a 05; dialled b 07; dialled c 06; read dialled 2      | dialled b c   | dialled b c a
        dialled a 05; dialled b 07; dialled c 06; read dialled 9 1    | dialled c a   | dialled b c a
        dialled a 05; read dialled 0                                  |               | dialled a
        callback a 05; callback b 07; callback c 06; read callback 2  | callback b c  | callback b c a
        missed a 05 entry=01; missed b 05 entry=03; missed c 05 entry=02 | new        | missed b c a
        missed a 05; missed b 06 calls=0; missed c 07                 | new           | missed c b*0 a
        missed a 05; dialled b 08; received c 06; forwarded d 07; callback e 09; 3001 missed f 05; read all
          +                  | missed a, dialled b, received c, forwarded d
          +                  | missed a, dialled b, received c, forwarded d, callback e, 3001 missed f
        missed a 05; dialled b 08; received c 06; forwarded d 07; read all 2 | dialled b, forwarded d
          +                  | missed a, dialled b, received c, forwarded d
    )");
    expectRows("read all||\n read contacts||\n read callback||");
}

// First the contacts with calls, in the order of these, then the others by name.
TEST(SqliteDataAccess, ReadsContactsWithTheirCalls) {
    for (const auto& row : table(2, R"(
        knows Bo 9; knows Al 8; knows Mo +49-30-4711; 3001 knows Else 1; missed 0049/30/4711 05; dialled 1 06
          +                                            ; read contacts | contacts Mo/missed05 Al Bo
        knows Mo 4711; missed 4711 05; dialled 47-11 07; received 4711 06; forwarded 4711 04; read contacts
          +                                        | contacts Mo/dialled07/received06/missed05/forwarded04
        knows b 2; knows a 1; missed 1 05; missed 2 06; read contacts     | contacts b/missed06 a/missed05
        knows b 2; knows a 1; missed 1 05; missed 2 06; read contacts 1   | contacts b/missed06
        knows b 2; knows a 1; missed 1 05; read contacts 1 1              | contacts b
        knows a 1; missed 1 05; read contacts 0                           |
    )")) {
        SCOPED_TRACE(row[0]);
        const TemporaryDatabase database;
        EXPECT_EQ(DataAccessFixture(*database).plays(row[0]), row[1]);
    }
}

TEST(SqliteDataAccess, ReadsEntriesOfTheFutureLast) {
    const TemporaryDatabase database;
    DataAccessFixture journal(*database);
    journal.plays("missed a 05; missed b 07");
    auto items = journal.read<MissedCallItem>();
    auto calls = items.back().getMissedCallInfoList();
    calls.front().setTimeAndDate("2199-01-01T00:00:00Z");
    items.back().setMissedCallInfoList(calls);
    journal.write<MissedCallItem>({items.back()});
    EXPECT_EQ(journal.plays("missed c 06; read missed 2"), "missed b c");
    EXPECT_EQ(journal.plays("read all 2 1"), "missed c a");
}

TEST(SqliteDataAccess, KeepsTheSettingsOfALineApart) {
    using Helper = JournalServiceHelper;
    const TemporaryDatabase database;
    DataAccessFixture(*database).sends(Helper::updateSettings("call-log-enabled", "true"));
    bool value = false;
    for (const char* const line : {"2001", "3001"}) {
        const std::string read =
            host::SqliteDataAccess(*database, line).processRequest(Helper::readSettings());
        EXPECT_EQ(Helper::getXMLValue(read, "call-log-enabled", value), line[0] == '2');
    }
    EXPECT_TRUE(value);
}

TEST(SqliteDataAccess, FailsWithOneLogTextForAnUnreadableRequestAndStaysHealthy) {
    const TemporaryDatabase database;
    DataAccessFixture journal(*database);
    journal.plays("missed a 05");
    const char* const unknown =
        R"(<Schema name='CallLogAll'><ReasonForMessage>read_request</ReasonForMessage></Schema>)";
    for (const char* const each : {"", "<Schema", "<x/>", "\x01", unknown}) {
        CapturedLog::reset();
        EXPECT_EQ(journal.sends(each), "failed");
        EXPECT_EQ(CapturedLog::lines("Database").size(), 1U) << each;
    }
    EXPECT_TRUE(journal.healthy());
    EXPECT_EQ(journal.contents(), "missed a");
}

// Rows: the connection that breaks it, the SQL that breaks and the SQL that repairs it; the reason in the
// log; the results of the write and of a read meanwhile; the list afterwards. What the database refuses is
// kept; a request that is wrong itself is not.
TEST(SqliteDataAccess, WritesARequestAsAWholeAtOnceOrLaterOrNotAtAll) {
    for (const auto& row : table(7, R"(
        other | BEGIN IMMEDIATE                   | ROLLBACK                          | locked   | 2 | failed | missed after bad changed
        own   | PRAGMA query_only = ON            | PRAGMA query_only = OFF           | readonly | 2 | failed | missed after bad changed
        own   | PRAGMA max_page_count = 1         | PRAGMA max_page_count = 100000    | full     | 2 | failed | missed after bad changed
        other | ALTER TABLE call_item RENAME TO x | ALTER TABLE x RENAME TO call_item | no such  | 2 | failed | missed after bad changed
        other | CREATE TRIGGER refusal BEFORE INSERT ON call_item WHEN new.surname = 'bad'
              + BEGIN SELECT RAISE(ABORT, 'a reason'); END | DROP TRIGGER refusal     | a reason | failed | missed a | missed after a
    )")) {
        SCOPED_TRACE(row[1]);
        const TemporaryDatabase database;
        SQLite::Database other = database.otherConnection();
        const auto executes = [&](const std::string& sql) {
            if (row[0] == "other") {
                other.exec(sql);
            } else {
                database->read("test", [&sql](host::Database::Session& session) {
                    static_cast<void>(session.query(sql.c_str()).next());
                });
            }
        };
        DataAccessFixture journal(*database);
        journal.plays("missed a 05");
        auto changed = journal.read<MissedCallItem>().front();
        changed.setSurname("changed");
        changed.setPictureClip(std::string(100000, 'x'));
        auto bad = changed;
        bad.setUniqueId({});
        bad.setSurname("bad");
        executes(row[1]);
        CapturedLog::reset();
        const std::string response = journal.write<MissedCallItem>({changed, bad});
        EXPECT_EQ(response == "failed" ? response : JournalServiceHelper::parseLastUniqueId(response),
                  row[4]);
        EXPECT_THAT(CapturedLog::lines("Database").front(),
                    AllOf(HasSubstr("CallLogMissedCalls failed"), HasSubstr(row[3])));
        EXPECT_EQ(journal.plays("read missed"), row[5]);
        EXPECT_FALSE(journal.healthy());
        executes(row[2]);
        EXPECT_EQ(journal.plays("missed after 07; read missed"), row[6]);
        EXPECT_TRUE(journal.healthy());
    }
}

// Rows: what the journal writes while the database is locked, and the lists afterwards.
TEST(SqliteDataAccess, KeepsChangesInOrderWithTheRowsThatTheyConcern) {
    for (const auto& row : table(2, R"(
        missed a 05; missed b 06; missed A 07 id=a calls=2         | missed A*2 b old
        missed a 05; remove missed a; missed b 06                  | missed b old
        empty missed; missed a 05; dialled a 05; callback c 05     | missed a, dialled a, callback c
        missed a 05; missed A 07 id=a calls=2; remove missed A     | missed old
    )")) {
        SCOPED_TRACE(row[0]);
        const TemporaryDatabase database;
        DataAccessFixture journal(*database);
        journal.plays("missed old 01");
        SQLite::Database other = database.otherConnection();
        other.exec("BEGIN IMMEDIATE");
        EXPECT_NE(journal.plays(row[0]), "failed");
        EXPECT_EQ(database->keptCount(), journaltest::split(row[0], ';').size());
        // No other change overtakes what is kept.
        EXPECT_FALSE(database->write("a note", [](host::Database::Session& /*session*/) {}));
        other.exec("ROLLBACK");
        EXPECT_TRUE(database->maintain());
        EXPECT_EQ(journal.contents(), row[1]);
        EXPECT_EQ(database->lostCount(), 0U);
    }
}

// The entries have one time and ids in the other order, so that the row that is dropped is not the oldest.
TEST(SqliteDataAccess, KeepsTheCallsOfTheEntryThatIsDroppedFromAFullList) {
    const TemporaryDatabase database;
    DataAccessFixture journal(*database);
    const auto nameOf = [](int entry) { return std::to_string(9000 - entry); };
    for (int entry = 0; entry <= 1000; ++entry) {
        EXPECT_EQ(journal.plays("missed " + nameOf(entry) + " 05 entry=0000" + nameOf(entry)), "new");
    }
    EXPECT_EQ(journal.plays("remove missed " + nameOf(0)), nameOf(0));
    EXPECT_EQ(database.number("SELECT count(*) FROM call"), 1001);
    EXPECT_EQ(journal.plays("remove missed " + nameOf(1)), nameOf(1));
    EXPECT_EQ(database.number("SELECT count(*) FROM call"), 1000);
}

// They wait for each other. A call of an entry that waits stays one call when it is filed again.
TEST(SqliteDataAccess, DropsEntriesFromAFullListTogether) {
    const TemporaryDatabase database;
    DataAccessFixture journal(*database);
    const auto entryOf = [](int number) {
        const std::string time = "2026-11-21T05:00:00Z";
        const std::string text = std::to_string(1000 + number);
        auto item = journaltest::itemOf<MissedCallItem>(time + "0000" + text, "", {{text, time}});
        auto calls = item.getMissedCallInfoList();
        calls.front().setCallId(text);
        item.setMissedCallInfoList(calls);
        return item;
    };
    std::vector<MissedCallItem> full;
    for (int entry = 0; entry < 1000; ++entry) {
        full.push_back(entryOf(entry));
    }
    EXPECT_NE(journal.write(full), "failed");
    const auto dropsOldest = [&](int entry) {
        EXPECT_NE(journal.write<MissedCallItem>({entryOf(1000 + entry)}), "failed");
        EXPECT_NE(journal.plays("remove missed " + std::to_string(entry + 1) + ":x"), "failed");
    };
    for (int entry = 0; entry < 3; ++entry) {
        dropsOldest(entry);
    }
    const char* const counts = "SELECT count(*) || ' ' || (SELECT count(*) FROM call) FROM call_item";
    EXPECT_EQ(database.text(counts), "1003 1003");
    EXPECT_NE(journal.write<MissedCallItem>({entryOf(0)}), "failed");
    EXPECT_EQ(database.text(counts), "1001 1003");
    for (int entry = 3; entry < 103; ++entry) {
        dropsOldest(entry);
        EXPECT_LE(database.number("SELECT count(*) FROM call_item"), 1020);
    }
    database->makeDeferred();
    EXPECT_EQ(database.text(counts), "1001 1103");
}

// Each thread finds exactly its own rows, while the others write and read.
TEST(SqliteDataAccess, IsUsedByManyThreadsWithoutLosingARow) {
    const TemporaryDatabase database;
    std::atomic<int> wrong{0};
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&] {
            DataAccessFixture journal(*database);
            for (int item = 0; item < 25; ++item) {
                wrong += journal.plays("missed a 05; dialled b 05; missed A 05 id=a calls=2") == "a" ? 0 : 1;
                wrong += journal.plays("read missed").find(" A*2") == std::string::npos ? 1 : 0;
                wrong += journal.plays("remove dialled b") == "b" ? 0 : 1;
            }
        });
    }
    threads.clear();  // waits for them
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(database.number("SELECT count(*) * 1000 + (SELECT count(*) FROM call) FROM call_item"), 100200);
}

}  // namespace
