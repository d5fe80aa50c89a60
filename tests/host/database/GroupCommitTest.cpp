#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sqlite3.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "host/database/Database.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/TemporaryDatabase.h"

namespace {

using journaltest::CapturedLog;
using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;
using Outcome = host::Database::Outcome;
using Session = host::Database::Session;

class GroupCommit : public testing::Test {
protected:
    struct Change {
        std::string key;
        host::DatabaseWork work = [](Session&) {};
        const void* line = nullptr;
    };

    Outcome make(const Change& change) {
        return m_database->writeOrKeep(std::make_shared<host::DatabaseChange>(host::DatabaseChange{
            .what = "storing " + change.key,
            .work =
                [=](Session& session) {
                    session.query("INSERT INTO setting (line, key, value) VALUES ('1', ?, '')")
                        .bind(change.key)
                        .run();
                    change.work(session);
                },
            .line = change.line,
            .done = [=, this](bool stored) { noteDone(change.key, stored); }}));
    }
    /// Makes the changes on a thread each, which all wait at the same moment, in their order. Meanwhile it
    /// runs `beforehand`. Returns the outcomes.
    std::vector<Outcome> makeTogether(
        const std::vector<Change>& changes, const std::function<void()>& beforehand = [] {}) {
        std::vector<Outcome> outcomes(changes.size());
        std::vector<std::thread> threads;
        EXPECT_TRUE(m_database->read("holding the lock", [&](Session&) {
            for (std::size_t at = 0; at < changes.size(); ++at) {
                threads.emplace_back([&, at] { outcomes[at] = make(changes[at]); });
                while (m_database->waitingCount() <= at) {
                    std::this_thread::yield();
                }
            }
            beforehand();
        }));
        std::for_each(threads.begin(), threads.end(), [](std::thread& each) { each.join(); });
        return outcomes;
    }

    [[nodiscard]] std::string keys() {
        return m_database.text(
            "SELECT ifnull(group_concat(key, ' '), '') FROM (SELECT key FROM setting ORDER BY key)");
    }
    [[nodiscard]] std::size_t commits() const { return m_logSizes.size(); }

    void noteDone(const std::string& key, bool stored) {
        if (!stored) {
            ++m_lost;
        } else {
            m_done += (m_done.empty() ? "" : " ") + key;
            m_logSizes.insert(std::filesystem::file_size(m_database.file().string() + "-wal"));
        }
    }

    journaltest::TemporaryDatabase m_database;
    std::atomic<int> m_lost{0};
    // Changed with the database's lock.
    std::string m_done;
    /// Each commit makes the log longer.
    std::set<std::uintmax_t> m_logSizes;
};

TEST_F(GroupCommit, StoresWhatWaitsAtTheSameMomentInOneTransactionAndInOrder) {
    std::vector<Change> changes;
    for (const char* key : {"a", "b", "c", "d", "e", "f"}) {
        changes.push_back({key});
    }
    EXPECT_THAT(makeTogether(changes), Each(Outcome::eStored));
    EXPECT_EQ(keys(), "a b c d e f");
    EXPECT_EQ(m_done, "a b c d e f");
    EXPECT_EQ(commits(), 1U);
    EXPECT_EQ(make({"g"}), Outcome::eStored);
    EXPECT_EQ(commits(), 2U);
}

TEST_F(GroupCommit, StoresChangesOfOneLineInOrderAndEachAfterTheOneBeforeIsDone) {
    const int lines[2]{};
    const auto seesDone = [this](const std::string& done) {
        return [=, this](Session&) { EXPECT_EQ(m_done, done); };
    };
    EXPECT_THAT(makeTogether({{"a1", seesDone(""), &lines[0]},
                              {"a2", seesDone("a1 b1"), &lines[0]},
                              {"b1", seesDone(""), &lines[1]},
                              {"a3", seesDone("a1 b1 a2 b2"), &lines[0]},
                              {"b2", seesDone("a1 b1"), &lines[1]}}),
                Each(Outcome::eStored));
    EXPECT_EQ(m_done, "a1 b1 a2 b2 a3");
    EXPECT_EQ(commits(), 3U);
}

// Rows: what the second of three changes does, its outcome, and the commits of the others.
TEST_F(GroupCommit, LetsOneChangeFailAlone) {
    struct Row {
        const char* name;
        host::DatabaseWork work;
        Outcome outcome;
    };
    const Row rows[]{
        {"an exception", [](Session&) { throw std::runtime_error("the reason"); }, Outcome::eRefused},
        {"a constraint",
         [](Session& session) { session.query("INSERT INTO setting (line, key) VALUES ('1', NULL)").run(); },
         Outcome::eRefused},
        {"a wrong statement", [](Session& session) { session.query("SELECT * FROM missing").run(); },
         Outcome::eKept},
        {"a damaged page", [](Session&) { throw SQLite::Exception("damaged", SQLITE_CORRUPT); },
         Outcome::eKept},
        {"an end of the transaction",
         [](Session& session) {
             session.query("ROLLBACK").run();
             throw SQLite::Exception("not readable", SQLITE_IOERR);
         },
         Outcome::eKept},
    };
    for (const Row& row : rows) {
        m_database.reopen();
        m_database->write("clearing", [](Session& session) { session.query("DELETE FROM setting").run(); });
        m_done.clear();
        m_logSizes.clear();
        CapturedLog::reset();
        EXPECT_THAT(makeTogether({{"a"}, {"b", row.work}, {"c"}}),
                    ElementsAre(Outcome::eStored, row.outcome, Outcome::eStored))
            << row.name;
        EXPECT_EQ(keys(), "a c") << row.name;
        EXPECT_EQ(commits(), 1U) << row.name;
        EXPECT_EQ(m_database->keptCount(), row.outcome == Outcome::eKept ? 1U : 0U) << row.name;
        EXPECT_EQ(m_done, "a c") << row.name;
        EXPECT_EQ(m_lost.exchange(0), row.outcome == Outcome::eKept ? 0 : 1) << row.name;
        EXPECT_THAT(CapturedLog::lines("Database"), SizeIs(row.outcome == Outcome::eKept ? 2 : 1))
            << row.name;
    }
}

TEST_F(GroupCommit, ThatFailsAsAWholeFailsForEachAndIsRepeatedInOrder) {
    SQLite::Database other = m_database.otherConnection();
    EXPECT_THAT(makeTogether({{"a"}, {"b"}, {"c"}}, [&other] { other.exec("BEGIN IMMEDIATE"); }),
                Each(Outcome::eKept));
    EXPECT_TRUE(keys().empty() && m_done.empty() && !m_database->healthy());
    other.exec("ROLLBACK");
    EXPECT_TRUE(m_database->maintain() && m_database->healthy());
    EXPECT_EQ(keys(), "a b c");
    EXPECT_EQ(m_done, "a b c");
}

TEST_F(GroupCommit, StoresTheMinorChangesOfAChangeThatFailsWithTheNextOne) {
    const auto deferred = std::make_shared<host::DatabaseChange>(host::DatabaseChange{
        .what = "a minor change",
        .work =
            [](Session& session) {
                session.query("INSERT INTO setting (line, key, value) VALUES ('1', 'minor', '')").run();
            },
        .isMinor = [](Session&) { return true; },
        .done = [this](bool stored) { noteDone("minor", stored); }});
    EXPECT_EQ(m_database->writeOrKeep(deferred), Outcome::eStored);
    const auto fails = [](Session&) { throw std::runtime_error("the reason"); };
    EXPECT_THAT(makeTogether({{"a", fails}, {"b"}}), ElementsAre(Outcome::eRefused, Outcome::eStored));
    EXPECT_EQ(keys(), "b minor");
    EXPECT_EQ(m_done, "minor b");
}

TEST_F(GroupCommit, LosesNoChangeOfManyThreads) {
    constexpr int kThreads = 8;
    constexpr int kChanges = 50;
    std::vector<std::thread> threads;
    std::atomic<int> stored{0};
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&, thread] {
            for (int number = 0; number < kChanges; ++number) {
                const std::string key = std::to_string(thread) + "." + std::to_string(number);
                const bool fails = number % 10 == 3;
                const Outcome outcome =
                    make(fails ? Change{key, [](Session&) { throw std::runtime_error("no"); }} : Change{key});
                EXPECT_EQ(outcome, fails ? Outcome::eRefused : Outcome::eStored);
                stored += outcome == Outcome::eStored ? 1 : 0;
            }
        });
    }
    std::for_each(threads.begin(), threads.end(), [](std::thread& each) { each.join(); });
    EXPECT_EQ(m_database.number("SELECT count(*) FROM setting"), stored);
    EXPECT_EQ(stored, kThreads * kChanges * 9 / 10);
    EXPECT_EQ(m_lost, kThreads * kChanges / 10);
}

}  // namespace
