#include "tests/host-management/ManagementFixture.h"
#include "tests/support/CapturedLog.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

using ManagementValues = journaltest::ManagementFixture;

TEST_F(ManagementValues, ComeFromWhereTheyWereSetLast) {
    start({{"k", "file"}});
    EXPECT_EQ(valueOf("k"), "file");
    EXPECT_TRUE(write("k", "run time"));
    EXPECT_EQ(valueOf("k"), "run time");

    start({{"k", "another file"}});
    EXPECT_EQ(valueOf("k"), "run time");

    start({{"k", "file"}}, {{"k", "command line"}});
    EXPECT_EQ(valueOf("k"), "command line");

    start({{"k", "file"}});
    EXPECT_EQ(valueOf("k"), "run time") << "what the command line says holds for one run";

    start({{"k", "file"}}, {{"k", "command line"}});
    EXPECT_TRUE(write("k", "changed meanwhile"));
    EXPECT_EQ(valueOf("k"), "changed meanwhile");
    start();
    EXPECT_EQ(valueOf("k"), "changed meanwhile");
}

TEST_F(ManagementValues, ThatAreWrittenAsTheyAreStayWhenTheFileChanges) {
    start({{"k", "file"}});
    EXPECT_TRUE(write("k", "file"));
    start({{"k", "another file"}});
    EXPECT_EQ(valueOf("k"), "file");
}

TEST_F(ManagementValues, ThatAreEmptyAreThere) {
    start({{"k", "file"}});
    EXPECT_TRUE(write("k", ""));
    start({{"k", "file"}});
    EXPECT_EQ(valueOf("k"), "");
    EXPECT_EQ(valueOf("unknown"), std::nullopt);
}

TEST_F(ManagementValues, AreFilledInAsFarAsTheyAreThere) {
    start({{"a", "1"}, {"c", "3"}});
    ManageableData data;
    for (const char* const key : {"a", "b", "c"}) {
        data.setRootId(key, nullptr);
    }
    EXPECT_FALSE(management().read(data));
    EXPECT_EQ(data.interogate("a")->getValue(), "1");
    EXPECT_EQ(data.interogate("b"), nullptr);
    EXPECT_EQ(data.interogate("c")->getValue(), "3");
}

TEST_F(ManagementValues, OfAnotherLineAreItsOwn) {
    start();
    EXPECT_TRUE(write("k", "mine"));
    host::LocalManagement other(*m_database, "3001", {{"k", "theirs"}}, {},
                                [](const std::function<void()>&) {});
    EXPECT_THAT(other.values(), ElementsAre(Pair("k", "theirs")));
}

TEST_F(ManagementValues, AreStoredAllTogetherOrNotAtAll) {
    start({{"good", "old"}});
    ManageableData data;
    data.populate("good", "good", "new");
    data.setRootId("no-value", nullptr);
    data.populate("too-long", "too-long", std::string(4097, 'x'));
    data.populate("a key", "a key", "1");
    data.populate(std::string(101, 'k'), std::string(101, 'k'), "1");
    EXPECT_FALSE(management().write(data));
    EXPECT_EQ(valueOf("good"), "old");
    EXPECT_EQ(data.getRejectReasons().size(), 4U);
    EXPECT_EQ(data.getRejectReasons().count("good"), 0U);
    EXPECT_EQ(data.getRejectReasons().at("no-value").code, eRejectDataInvalid);
    EXPECT_THAT(data.getRejectReasons().at("too-long").text, HasSubstr("too-long"));
    start({{"good", "old"}});
    EXPECT_EQ(valueOf("good"), "old");
}

TEST_F(ManagementValues, AreTakenUpToTheirBounds) {
    start();
    const std::string key(100, 'k');
    const std::string value(4096, 'v');
    EXPECT_TRUE(write(key, value));
    start();
    EXPECT_EQ(valueOf(key), value);
}

TEST_F(ManagementValues, ThatCannotBeStoredStayAsTheyWereAndTellNobody) {
    start({{"k", "old"}});
    journaltest::RecordingAgent agent;
    management().observe("k", agent);
    SQLite::Database other = m_database.otherConnection();
    other.exec("BEGIN IMMEDIATE");
    ManageableData data;
    data.populate("k", "k", "new");
    EXPECT_FALSE(management().write(data));
    EXPECT_EQ(data.getRejectReasons().count("k"), 1U);
    EXPECT_EQ(journaltest::CapturedLog::count("storing management values failed"), 1);
    other.exec("ROLLBACK");
    runStrand();
    EXPECT_EQ(valueOf("k"), "old");
    EXPECT_THAT(agent.calls, IsEmpty());
    management().unregisterAgent(agent);
}

TEST_F(ManagementValues, ThatCannotBeReadAtTheStartEndTheProgram) {
    m_database.otherConnection().exec("DROP TABLE management_value");
    EXPECT_THROW(start(), host::DatabaseError);
}

}  // namespace
