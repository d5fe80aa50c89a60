#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <iterator>
#include <string>

#include "host/data/Database.h"
#include "host/data/Schema.h"
#include "tests/host-data/TemporaryDatabase.h"

namespace {

using host::Database;
using host::DatabaseError;
using host::Schema;
using journaltest::TemporaryDatabase;
using testing::AllOf;
using testing::HasSubstr;

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// The sentence with which a file is refused; empty when it is not.
std::string refusalOf(const std::filesystem::path& file) {
    try {
        const Database database(file, {std::chrono::milliseconds(20)});
    } catch (const DatabaseError& error) {
        return error.what();
    }
    return {};
}

class Opening : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path file() const { return m_directory.path() / "journal.db"; }
    /// What a file of that content is refused with; checks that it is left as it is.
    std::string refusalOfContent(const std::string& content) {
        std::ofstream(file(), std::ios::binary) << content;
        std::string refusal = refusalOf(file());
        EXPECT_TRUE(contentOf(file()) == content);
        return refusal;
    }

    TemporaryDirectory m_directory;
};

TEST_F(Opening, MakesAFileForItsOwnerOnlyWithAWriteAheadLogThatIsWrittenThrough) {
    Database database(file());
    for (const char* const name : {"journal.db", "journal.db-wal"}) {
        struct stat status {};
        ASSERT_EQ(::stat((m_directory.path() / name).c_str(), &status), 0) << name;
        EXPECT_EQ(status.st_mode & 0777U, 0600U) << name;
    }
    const struct {
        const char* pragma;
        const char* value;
    } cases[] = {{"PRAGMA journal_mode", "wal"}, {"PRAGMA synchronous", "2"}, {"PRAGMA foreign_keys", "1"}};
    for (const auto& each : cases) {
        std::string value;
        EXPECT_TRUE(database.read("test", [&](Database::Session& session) {
            host::Query query = session.query(each.pragma);
            ASSERT_TRUE(query.next());
            value = query.text();
        }));
        EXPECT_EQ(value, each.value) << each.pragma;
    }
}

TEST_F(Opening, LeavesAFileOfThePresentVersionAsItIs) {
    { const Database database(file()); }
    const std::string before = contentOf(file());
    { const Database database(file()); }
    EXPECT_TRUE(contentOf(file()) == before);
}

TEST_F(Opening, GivesEveryTableItsLine) {
    TemporaryDatabase database;
    EXPECT_GE(database.number(
                  "SELECT count(*) FROM sqlite_schema WHERE type = 'table' AND name NOT LIKE 'sqlite%'"),
              7);
    EXPECT_EQ(database.text("SELECT ifnull(group_concat(name), '') FROM sqlite_schema AS s WHERE type = "
                            "'table' AND name NOT LIKE 'sqlite%' "
                            "AND NOT EXISTS (SELECT 1 FROM pragma_table_info(s.name) AS c WHERE c.name = "
                            "'line' AND c.\"notnull\")"),
              "");
}

TEST_F(Opening, RefusesTheFileOfANewerVersionAndLeavesItAsItIs) {
    { const Database database(file()); }
    {
        SQLite::Database newer(file().string(), SQLite::OPEN_READWRITE);
        newer.exec("PRAGMA user_version = " + std::to_string(Schema::version() + 1));
    }
    const std::string before = contentOf(file());
    EXPECT_THAT(refusalOf(file()), AllOf(HasSubstr(file().string()), HasSubstr("newer version"),
                                         HasSubstr(std::to_string(Schema::version() + 1))));
    EXPECT_TRUE(contentOf(file()) == before);
}

TEST_F(Opening, RefusesTheDatabaseOfAnotherProgram) {
    {
        SQLite::Database other(file().string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        other.exec("CREATE TABLE recipe (name TEXT)");
    }
    EXPECT_THAT(refusalOfContent(contentOf(file())), HasSubstr("another program"));
}

TEST_F(Opening, RefusesAFileThatIsNoDatabase) {
    EXPECT_THAT(refusalOfContent(std::string(5000, 'x')),
                AllOf(HasSubstr(file().string()), HasSubstr("damaged"), HasSubstr("backup")));
}

// The page of one table only: nothing that the opening itself has to read.
TEST_F(Opening, RefusesADatabaseWithADamagedPage) {
    { const Database database(file()); }
    std::size_t page = 0;
    {
        SQLite::Database other(file().string(), SQLite::OPEN_READWRITE);
        page = other.execAndGet("SELECT rootpage FROM sqlite_schema WHERE name = 'occurrence'").getUInt();
    }
    std::string content = contentOf(file());
    content.replace((page - 1) * 4096, 64, 64, '\x7f');
    EXPECT_THAT(refusalOfContent(content), HasSubstr("damaged"));
}

TEST_F(Opening, RefusesADatabaseThatWasCutOff) {
    { const Database database(file()); }
    std::string content = contentOf(file());
    content.resize(content.size() / 2);
    EXPECT_THAT(refusalOfContent(content), HasSubstr("damaged"));
}

TEST_F(Opening, RefusesALockedFileAfterItsTime) {
    SQLite::Database other(file().string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    other.exec("BEGIN EXCLUSIVE");
    EXPECT_THAT(refusalOf(file()), HasSubstr("locked by another program"));
    other.exec("COMMIT");
    EXPECT_EQ(refusalOf(file()), "");
}

TEST_F(Opening, RefusesAPlaceWhereNoFileCanBe) {
    EXPECT_THAT(refusalOf(m_directory.path() / "absent" / "journal.db"), HasSubstr("cannot be opened"));
    EXPECT_THAT(refusalOf(m_directory.path()), HasSubstr("cannot be opened"));
}

// Two programs that start at the same moment: both open the file, one of them makes the tables.
TEST_F(Opening, LetsTwoConnectionsMakeTheTablesAtOnce) {
    std::vector<std::thread> threads;
    std::atomic<int> refused{0};
    for (int each = 0; each < 4; ++each) {
        threads.emplace_back([this, &refused] {
            try {
                const Database database(file());
            } catch (const DatabaseError&) {
                ++refused;
            }
        });
    }
    for (std::thread& each : threads) {
        each.join();
    }
    EXPECT_EQ(refused, 0);
    EXPECT_EQ(refusalOf(file()), "");
}

}  // namespace
