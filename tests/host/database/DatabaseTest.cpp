#include "host/database/Database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

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

}  // namespace
