#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "host/database/Database.h"
#include "host/database/DatabaseCopy.h"
#include "host/database/Schema.h"
#include "tests/support/TemporaryDatabase.h"

namespace {

using host::Database;
using journaltest::TemporaryDatabase;
using testing::HasSubstr;

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// The text of the error for a file; empty if it is opened.
std::string refusalOf(const std::filesystem::path& file) {
    try {
        const Database database(file, {std::chrono::milliseconds(20)});
    } catch (const host::DatabaseError& error) {
        return error.what();
    }
    return {};
}

TEST(Opening, UsesAWriteAheadLogThatIsWrittenThrough) {
    const TemporaryDatabase database;
    EXPECT_EQ(database.text("PRAGMA journal_mode"), "wal");
    EXPECT_TRUE(database->read("test", [](Database::Session& session) {
        host::Query query = session.query("PRAGMA synchronous");
        EXPECT_TRUE(query.next() && query.text() == "2");
    }));
}

// Each content is made from that of a file of the current version, which itself is opened.
TEST(Opening, LeavesARefusedFileUnchangedAndReportsWhy) {
    const struct {
        void (*change)(std::string& content, std::size_t begin);
        const char* refusal;
    } cases[] = {
        {[](std::string&, std::size_t) {}, ""},
        // The version and the application id in the header.
        {[](std::string& content, std::size_t) { ++content[63]; }, "newer version"},
        {[](std::string& content, std::size_t) { ++content[71]; }, "another program"},
        {[](std::string& content, std::size_t) { content.assign(5000, 'x'); }, "restore it from a backup"},
        {[](std::string& content, std::size_t) { content.resize(content.size() / 2); }, "damaged"},
        {[](std::string& content, std::size_t begin) { content.replace(begin, 64, 64, '\x7f'); }, "damaged"},
    };
    for (const auto& each : cases) {
        TemporaryDatabase database;
        // The page of one table only, which opening the file does not read.
        const auto page = database.number("SELECT rootpage FROM sqlite_schema WHERE name = 'party'");
        database.close();
        std::string content = contentOf(database.file());
        each.change(content, static_cast<std::size_t>(page - 1) * host::Schema::kPageBytes);
        std::ofstream(database.file(), std::ios::binary) << content;
        const std::string refusal = refusalOf(database.file());
        EXPECT_THAT(refusal, HasSubstr(each.refusal));
        EXPECT_EQ(refusal.find(database.file().string()), refusal.empty() ? std::string::npos : 0) << refusal;
        EXPECT_TRUE(contentOf(database.file()) == content) << refusal;
    }
}

TEST(Opening, BeginsInAnEmptyFileUnlessItHasALog) {
    const TemporaryDirectory directory;
    const auto file = directory.path() / "journal.db";
    const auto log = directory.path() / "journal.db-wal";
    std::ofstream(file).flush();
    std::ofstream(log) << "pages";
    EXPECT_THAT(refusalOf(file), HasSubstr("is empty, but"));
    EXPECT_EQ(contentOf(log), "pages");
    std::filesystem::remove(log);
    EXPECT_EQ(refusalOf(file), "");
}

TEST(Opening, RefusesALinkAndLeavesTheFileThatItNamesAsItIs) {
    namespace fs = std::filesystem;
    const TemporaryDirectory directory;
    const fs::path text = directory.path() / "text";
    std::ofstream(text) << "a text";
    fs::permissions(text, fs::perms(0644));
    for (const fs::path& target : {text, directory.path() / "missing"}) {
        const fs::path link = directory.path() / ("to-" + target.filename().string());
        fs::create_symlink(target, link);
        EXPECT_THAT(refusalOf(link), HasSubstr("is not a regular file"));
    }
    EXPECT_EQ(fs::status(text).permissions(), fs::perms(0644));
    EXPECT_FALSE(fs::exists(directory.path() / "missing"));
}

TEST(Opening, RefusesALockedFileAfterItsTimeAndAPlaceWhereNoFileCanBe) {
    const TemporaryDirectory directory;
    const auto file = directory.path() / "journal.db";
    SQLite::Database other(file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    other.exec("BEGIN EXCLUSIVE");
    EXPECT_THAT(refusalOf(file), HasSubstr("locked by another program"));
    EXPECT_THAT(refusalOf(directory.path() / "absent" / "journal.db"), HasSubstr("cannot be opened"));
    EXPECT_THAT(refusalOf(directory.path()), HasSubstr("is not a regular file"));
}

TEST(Copying, LeavesNoFileWhenItIsInterrupted) {
    const TemporaryDatabase database;
    const auto target = database.file().parent_path() / "copy";
    EXPECT_THROW(host::copyDatabase(database.file(), target, [](auto, auto) { return false; }),
                 host::DatabaseError);
    for (const auto& each : std::filesystem::directory_iterator(target.parent_path())) {
        EXPECT_THAT(each.path().filename().string(), HasSubstr("journal.db"));
    }
}

}  // namespace
