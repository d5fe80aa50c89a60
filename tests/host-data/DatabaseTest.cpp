#include "host/data/Database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "tests/host-data/TemporaryDatabase.h"
#include "tests/support/CapturedLog.h"

namespace {

using host::Database;
using host::Query;
using journaltest::CapturedLog;
using testing::ElementsAre;
using testing::HasSubstr;
using Session = Database::Session;
using namespace std::string_literals;

class DatabaseWork : public testing::Test {
protected:
    bool stores(const std::string& value) {
        return m_database->write("storing", [&](Session& session) {
            session.query("INSERT OR REPLACE INTO setting (line, key, value) VALUES ('1', 'k', ?)")
                .bind(value)
                .run();
        });
    }
    std::string stored() {
        std::string value;
        EXPECT_TRUE(m_database->read("reading", [&](Session& session) {
            Query query = session.query("SELECT value FROM setting");
            value = query.next() ? query.text() : "nothing";
        }));
        return value;
    }

    journaltest::TemporaryDatabase m_database;
};

TEST_F(DatabaseWork, IsSeenByOthersWhenItHasReturned) {
    EXPECT_TRUE(stores("x"));
    EXPECT_EQ(m_database.text("SELECT value FROM setting"), "x");
}

TEST_F(DatabaseWork, ThatThrowsIsUndoneAndLeavesOneLine) {
    EXPECT_TRUE(stores("before"));
    EXPECT_FALSE(m_database->write("the second piece", [&](Session& session) {
        session.query("UPDATE setting SET value = 'half'").run();
        throw std::runtime_error("the reason");
    }));
    EXPECT_EQ(stored(), "before");
    EXPECT_THAT(CapturedLog::lines("Database"), ElementsAre("the second piece failed: the reason"));
    EXPECT_FALSE(m_database->write("the third piece", [](Session&) { throw 3; }));
    EXPECT_TRUE(CapturedLog::contains("the third piece failed"));
    EXPECT_TRUE(stores("after"));
}

TEST_F(DatabaseWork, WithWrongSqlFailsAndCostsNothingElse) {
    EXPECT_FALSE(m_database->read(
        "nonsense", [](Session& session) { session.query("SELECT nonsense FROM setting").run(); }));
    EXPECT_TRUE(stores("x"));
}

TEST_F(DatabaseWork, KeepsEveryByteOfAText) {
    const std::string bytes = "\0a\0\xff\xc3 '\"%\0"s;
    EXPECT_TRUE(stores(bytes));
    EXPECT_EQ(stored(), bytes);
    EXPECT_TRUE(stores(""));
    EXPECT_EQ(stored(), "");
}

TEST_F(DatabaseWork, MayUseAStatementAgainButNotTwiceAtATime) {
    EXPECT_TRUE(m_database->read("one after the other", [](Session& session) {
        static_cast<void>(session.query("SELECT 1").next());
        static_cast<void>(session.query("SELECT 1").next());
    }));
    EXPECT_FALSE(m_database->read("one inside the other", [](Session& session) {
        Query outer = session.query("SELECT 1");
        const Query inner = session.query("SELECT 1");
    }));
    EXPECT_THAT(CapturedLog::lines("Database"), ElementsAre(HasSubstr("in use already: SELECT 1")));
}

TEST_F(DatabaseWork, DoesNotInheritTheValuesOfTheLastUse) {
    const char* const sql = "SELECT ifnull(?, 'unbound')";
    const auto use = [&](bool bound) {
        std::string read;
        EXPECT_TRUE(m_database->read("test", [&](Session& session) {
            Query query = session.query(sql);
            if (bound) {
                query.bind("old"s);
            }
            ASSERT_TRUE(query.next());
            read = query.text();
        }));
        return read;
    };
    EXPECT_EQ(use(true), "old");
    EXPECT_EQ(use(false), "unbound");
}

TEST_F(DatabaseWork, IsUnhealthyFromAFailureToTheNextSuccessOfItsKind) {
    const auto fails = [](Session&) { throw std::runtime_error("test"); };
    const auto works = [](Session&) {};
    EXPECT_TRUE(m_database->healthy());

    EXPECT_FALSE(m_database->read("reading", fails));
    EXPECT_FALSE(m_database->healthy());
    EXPECT_TRUE(m_database->read("reading", works));
    EXPECT_TRUE(m_database->healthy());

    EXPECT_FALSE(m_database->write("writing", fails));
    EXPECT_TRUE(m_database->read("reading", works));
    EXPECT_FALSE(m_database->healthy()) << "that it can be read says nothing about writing";
    EXPECT_TRUE(m_database->write("writing", works));
    EXPECT_TRUE(m_database->healthy());

    EXPECT_FALSE(m_database->read("reading", fails));
    EXPECT_TRUE(m_database->write("writing", works));
    EXPECT_TRUE(m_database->healthy());
}

TEST_F(DatabaseWork, CanBeProbedWithoutChangingAnything) {
    EXPECT_TRUE(stores("x"));
    EXPECT_TRUE(m_database->probe());
    {
        SQLite::Database other = m_database.otherConnection();
        other.exec("BEGIN IMMEDIATE");
        EXPECT_FALSE(m_database->probe());
        EXPECT_FALSE(m_database->healthy());
        other.exec("ROLLBACK");
    }
    EXPECT_TRUE(m_database->probe());
    EXPECT_TRUE(m_database->healthy());
    EXPECT_EQ(stored(), "x");
    m_database.reopen();
}

}  // namespace
