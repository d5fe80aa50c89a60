#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/host-data/DataAccessFixture.h"
#include "tests/support/CapturedLog.h"

namespace {

using host::Database;
using journaltest::call;
using journaltest::CapturedLog;
using journaltest::surnames;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

class DataAccessFaults : public journaltest::DataAccessFixture {
protected:
    void SetUp() override { journal().writeOne(call<MissedCallItem>("before", "05:00:00")); }

    /// A request that fails now: "failed", one line with the reason, and no health.
    void expectFailedWrite(const std::string& reason) {
        CapturedLog::reset();
        EXPECT_EQ(journal().writeOne(call<MissedCallItem>("lost", "06:00:00")), "failed");
        EXPECT_THAT(CapturedLog::lines("Database"),
                    ElementsAre(testing::AllOf(HasSubstr("CallLogMissedCalls failed"), HasSubstr(reason))));
        EXPECT_FALSE(m_access->healthy());
    }
    void expectWorkingAgain() {
        EXPECT_NE(journal().writeOne(call<MissedCallItem>("after", "07:00:00")), "failed");
        EXPECT_TRUE(m_access->healthy());
        EXPECT_THAT(surnames(journal().read<MissedCallItem>()), ElementsAre("after", "before"));
    }
    void pragma(const std::string& sql) {
        ASSERT_TRUE(m_database->read("test", [&](Database::Session& session) {
            static_cast<void>(session.query(sql.c_str()).next());
        }));
    }
};

TEST_F(DataAccessFaults, ALockThatAnotherProcessHoldsFailsWritesAndLetsReadsThrough) {
    SQLite::Database other = m_database.otherConnection();
    other.exec("BEGIN IMMEDIATE");
    expectFailedWrite("locked");
    EXPECT_THAT(surnames(journal().read<MissedCallItem>()), ElementsAre("before"));
    EXPECT_FALSE(m_access->healthy());
    EXPECT_EQ(m_access->processRequest(JournalServiceHelper::updateSettings("call-log-enabled", "true")),
              "failed");
    EXPECT_EQ(journal().removeAll<MissedCallItem>(), "failed");
    other.exec("ROLLBACK");
    expectWorkingAgain();
}

TEST_F(DataAccessFaults, AFullDatabaseFailsWritesUntilThereIsRoom) {
    pragma("PRAGMA max_page_count = 1");
    auto item = call<MissedCallItem>("big", "06:00:00");
    item.setFirstname(std::string(100000, 'x'));
    CapturedLog::reset();
    EXPECT_EQ(journal().writeOne(item), "failed");
    EXPECT_THAT(CapturedLog::lines("Database"), ElementsAre(HasSubstr("full")));
    EXPECT_FALSE(m_access->healthy());
    pragma("PRAGMA max_page_count = 100000");
    expectWorkingAgain();
}

TEST_F(DataAccessFaults, ADatabaseThatMayNotBeWrittenFailsWritesOnly) {
    pragma("PRAGMA query_only = ON");
    expectFailedWrite("readonly");
    EXPECT_THAT(surnames(journal().read<MissedCallItem>()), ElementsAre("before"));
    pragma("PRAGMA query_only = OFF");
    expectWorkingAgain();
}

TEST_F(DataAccessFaults, OfManyEntriesInOneRequestAllAreWrittenOrNone) {
    // The second item breaks a rule that another program has put upon the table.
    m_database.otherConnection().exec(
        "CREATE TRIGGER refusal BEFORE INSERT ON call_item WHEN new.surname = 'bad' BEGIN SELECT "
        "RAISE(ABORT, 'bad item'); END");
    auto kept = journal().read<MissedCallItem>().front();
    kept.setViewed(true);
    CapturedLog::reset();
    EXPECT_EQ(journal().write<MissedCallItem>(
                  {kept, call<MissedCallItem>("good", "06:00:00"), call<MissedCallItem>("bad", "07:00:00")}),
              "failed");
    EXPECT_THAT(CapturedLog::lines("Database"), ElementsAre(HasSubstr("bad item")));
    const auto read = journal().read<MissedCallItem>();
    EXPECT_THAT(surnames(read), ElementsAre("before"));
    EXPECT_FALSE(read.front().getViewed());
}

TEST_F(DataAccessFaults, OfManyEntriesInOneDeleteRequestAllGoOrNone) {
    auto first = call<MissedCallItem>("first", "06:00:00");
    auto second = call<MissedCallItem>("second", "07:00:00");
    journal().file(first);
    journal().file(second);
    m_database.otherConnection().exec(
        "CREATE TRIGGER refusal BEFORE DELETE ON call_item WHEN old.surname = 'second' BEGIN SELECT "
        "RAISE(ABORT, 'stays'); END");
    EXPECT_EQ(journal().remove<MissedCallItem>({first, second}), "failed");
    EXPECT_THAT(surnames(journal().read<MissedCallItem>()), ElementsAre("second", "first", "before"));
    EXPECT_EQ(m_database.number("SELECT count(*) FROM occurrence"), 3);
}

TEST_F(DataAccessFaults, ADatabaseThatIsDamagedWhileItIsUsedFailsAndNothingCrashes) {
    for (int items = 0; items < 200; ++items) {
        journal().writeOne(call<MissedCallItem>(std::string(100, 'x'), "05:00:00"));
    }
    // Everything goes into the file itself, which is then overwritten behind its header.
    m_access.reset();
    m_database.reopen();
    m_access = std::make_unique<host::SqliteDataAccess>(*m_database, "2001");
    const int file = ::open(m_database.file().c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_GE(file, 0);
    struct stat status {};
    ASSERT_EQ(::fstat(file, &status), 0);
    const std::string rubbish(static_cast<std::size_t>(status.st_size) - 4096, '\x55');
    ASSERT_EQ(::pwrite(file, rubbish.data(), rubbish.size(), 4096), static_cast<ssize_t>(rubbish.size()));
    ::close(file);
    pragma("PRAGMA shrink_memory");

    CapturedLog::reset();
    EXPECT_EQ(m_access->processRequest(CallListDatabaseAdapterHelper::readMissedCallList()), "failed");
    EXPECT_EQ(journal().writeOne(call<MissedCallItem>("lost", "06:00:00")), "failed");
    EXPECT_THAT(CapturedLog::lines("Database"), SizeIs(2));
    EXPECT_THAT(CapturedLog::lines("Database").front(), HasSubstr("malformed"));
    EXPECT_FALSE(m_access->healthy());
}

}  // namespace
