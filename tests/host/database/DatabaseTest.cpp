#include "host/database/Database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sqlite3.h>

#include <chrono>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include "tests/support/CapturedLog.h"
#include "tests/support/TemporaryDatabase.h"

namespace {

using host::Query;
using journaltest::CapturedLog;
using testing::ElementsAre;
using testing::HasSubstr;
using Session = host::Database::Session;

class DatabaseWork : public testing::Test {
protected:
    bool stores(const std::string& value) {
        return m_database->write("storing", [&](Session& session) {
            session.query("INSERT OR REPLACE INTO setting (line, key, value) VALUES ('1', 'k', ?)")
                .bind(value)
                .run();
        });
    }
    /// A change of another journal's setting, which is kept if the database refuses it.
    host::Database::Outcome keeps(const std::string& key, const std::string& sql = "SELECT 1") {
        return m_database->writeOrKeep(std::make_shared<host::DatabaseChange>(host::DatabaseChange{
            .what = "keeping " + key,
            .work =
                [=](Session& session) {
                    static_cast<void>(session.query(sql.c_str()).next());
                    session.query("INSERT INTO setting (line, key, value) VALUES ('2', ?, '')")
                        .bind(key)
                        .run();
                },
            .done = [=, this](bool stored) { m_done += key + (stored ? "+" : "-"); }}));
    }
    std::string m_done;

    /// The value that another connection reads.
    std::string stored() { return m_database.text("SELECT value FROM setting"); }

    journaltest::TemporaryDatabase m_database;
};

TEST_F(DatabaseWork, ThatThrowsIsRolledBackWithOneLogText) {
    EXPECT_TRUE(stores("before"));
    EXPECT_FALSE(m_database->write("the second piece", [&](Session& session) {
        session.query("UPDATE setting SET value = 'half'").run();
        throw std::runtime_error("the reason");
    }));
    EXPECT_EQ(stored(), "before");
    EXPECT_THAT(CapturedLog::lines("Database"), ElementsAre("the second piece failed: the reason"));
    EXPECT_FALSE(m_database->read("the third piece", [](Session&) { throw 3; }));
    EXPECT_TRUE(stores("after") && m_database->healthy());
    EXPECT_FALSE(m_database->read("the fourth piece", [](Session&) { throw 4; }) || m_database->healthy());
    EXPECT_TRUE(m_database->read("the fifth piece", [](Session&) {}) && m_database->healthy());
}

TEST_F(DatabaseWork, ReusesAStatementWithoutItsFormerValuesButNotTwiceAtATime) {
    const auto reads = [](Session& session, bool bound) {
        Query query = session.query("SELECT ifnull(?, 'unbound')");
        static_cast<void>((bound ? query.bind(std::string("old")) : query).next());
        return query.text();
    };
    EXPECT_TRUE(m_database->read("one after the other", [&reads](Session& session) {
        EXPECT_EQ(reads(session, true), "old");
        EXPECT_EQ(reads(session, false), "unbound");
    }));
    EXPECT_FALSE(m_database->read("one inside the other", [](Session& session) {
        Query outer = session.query("SELECT 1");
        const Query inner = session.query("SELECT 1");
    }));
    EXPECT_THAT(CapturedLog::lines("Database"), ElementsAre(HasSubstr("in use already: SELECT 1")));
}

TEST_F(DatabaseWork, CanBeProbedWithoutChangingAnything) {
    EXPECT_TRUE(stores("x"));
    SQLite::Database other = m_database.otherConnection();
    other.exec("BEGIN IMMEDIATE");
    EXPECT_FALSE(m_database->probe());
    EXPECT_FALSE(m_database->healthy());
    other.exec("ROLLBACK");
    EXPECT_TRUE(m_database->probe());
    EXPECT_TRUE(m_database->healthy());
    EXPECT_EQ(stored(), "x");
}

using Outcome = host::Database::Outcome;

TEST_F(DatabaseWork, IsKeptWithinABoundAndStoredInOrder) {
    SQLite::Database other = m_database.otherConnection();
    other.exec("BEGIN IMMEDIATE");
    for (std::size_t number = 0; number < host::KeptChanges::kMostChanges; ++number) {
        ASSERT_EQ(keeps(std::to_string(number)), Outcome::eKept);
    }
    EXPECT_EQ(keeps("one too many"), Outcome::eRefused);
    EXPECT_EQ(m_done, "one too many-");
    EXPECT_EQ(m_database->lostCount(), 1U);
    EXPECT_FALSE(stores("x") || m_database->healthy() || m_database->probe());
    other.exec("ROLLBACK");
    EXPECT_TRUE(stores("x") && m_database->healthy());
    EXPECT_EQ(m_database.number("SELECT count(*) FROM setting"), 10'001);
    EXPECT_EQ(m_done.substr(0, 24), "one too many-0+1+2+3+4+5");
}

TEST_F(DatabaseWork, ThatAlwaysFailsDoesNotKeepTheOthersWaiting) {
    SQLite::Database other = m_database.otherConnection();
    other.exec("BEGIN IMMEDIATE");
    EXPECT_EQ(keeps("bad", "SELECT * FROM missing"), Outcome::eKept);
    EXPECT_EQ(keeps("twice"), Outcome::eKept);
    EXPECT_EQ(keeps("twice"), Outcome::eKept);
    other.exec("ROLLBACK");
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!m_database->maintain() && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    EXPECT_EQ(m_done, "twice+bad-twice-");
    EXPECT_EQ(m_database->lostCount(), 2U);

    // Alone it is kept until something else can be written.
    other.exec("BEGIN IMMEDIATE");
    EXPECT_EQ(keeps("alone", "SELECT * FROM missing"), Outcome::eKept);
    other.exec("ROLLBACK");
    EXPECT_FALSE(stores("x"));
    while (!stores("x") && std::chrono::steady_clock::now() < end) {
        EXPECT_FALSE(m_database->probe());
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    EXPECT_EQ(m_done, "twice+bad-twice-alone-");
    EXPECT_TRUE(m_database->probe());
}

// Another statement does not use the damaged page.
TEST_F(DatabaseWork, ThatFoundDamageIsUnhealthyUntilItSucceedsItself) {
    const auto damaged = [](Session&) { throw SQLite::Exception("damaged", SQLITE_CORRUPT); };
    EXPECT_FALSE(m_database->write("filing", damaged));
    EXPECT_TRUE(stores("x"));
    EXPECT_FALSE(m_database->probe());
    EXPECT_TRUE(m_database->write("filing", [](Session&) {}) && m_database->probe());
}

TEST(FailureLog, WritesTheSameFailureOnceAMinuteWithItsCount) {
    CapturedLog::reset();
    host::FailureLog failures;
    const host::FailureLog::Clock::time_point begin{};
    for (const int second : {0, 10, 20, 59, 60, 61}) {
        failures.write("filing", "damaged", begin + std::chrono::seconds(second));
        failures.write("reading", second == 0 ? "locked" : "damaged", begin + std::chrono::seconds(second));
    }
    EXPECT_THAT(CapturedLog::lines("Database"),
                ElementsAre(HasSubstr("filing failed: damaged"), HasSubstr("reading failed: locked"),
                            HasSubstr("reading failed: damaged"),
                            HasSubstr("filing failed: damaged (3 times more since the last line)")));
}

// Rows: what becomes of the file under the open database, and the files that are there afterwards.
TEST_F(DatabaseWork, GoesOnInANewFileWhenItsOwnIsDeletedRenamedOrReplaced) {
    const auto file = m_database.file();
    const auto beside = [&file](const char* suffix) { return std::filesystem::path(file.string() + suffix); };
    EXPECT_TRUE(stores("1"));
    std::filesystem::remove(file);
    EXPECT_EQ(keeps("a"), Outcome::eStored);
    EXPECT_EQ(stored(), "1");
    std::filesystem::rename(file, beside(".renamed"));
    EXPECT_TRUE(m_database->maintain() && m_database->healthy());
    EXPECT_EQ(stored(), "1");
    std::filesystem::remove(file);
    std::ofstream(file) << "another";
    EXPECT_TRUE(m_database->probe());
    EXPECT_TRUE(stores("2"));
    EXPECT_EQ(stored(), "2");
    EXPECT_EQ(std::filesystem::file_size(beside(".replaced")), 7U);
    std::filesystem::remove(beside("-wal"));
    std::ofstream(beside("-wal")) << "other";
    EXPECT_TRUE(stores("3"));
    EXPECT_EQ(stored(), "3");
    EXPECT_EQ(std::filesystem::file_size(beside("-wal.replaced.2")), 5U);
    std::filesystem::remove(beside("-shm"));
    EXPECT_TRUE(m_database->maintain() && stores("4"));
    EXPECT_EQ(stored(), "4");
    std::filesystem::permissions(file, std::filesystem::perms::all);
    m_database.reopen();
    EXPECT_EQ(m_database.number("SELECT count(*) FROM setting"), 2);
    EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms::owner_all);
}

}  // namespace
