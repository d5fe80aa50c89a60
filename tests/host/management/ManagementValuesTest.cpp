#include "tests/host/management/ManagementFixture.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/Table.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Key;
using testing::Pair;

using PhoneValues = journaltest::ManagementFixture;

// Each row is a run of the program: the key, its value in the file and on the command line, the value that is
// written, and the value afterwards. "-" means no value, "''" an empty one.
TEST_F(PhoneValues, ComeFromTheirLastChange) {
    for (const auto& row : journaltest::table(5, R"(
        k     | file    | -       | -        | file
        k     | file    | -       | run time | run time
        k     | another | -       | -        | run time
        k     | file    | command | -        | command
        k     | file    | -       | -        | run time
        k     | file    | command | written  | written
        k     | -       | -       | -        | written
        same  | file    | -       | file     | file
        same  | another | -       | -        | file
        empty | file    | -       | ''       | ''
        empty | file    | -       | -        | ''
        none  | -       | -       | -        | -
    )")) {
        const auto keys = [&row](const std::string& value) {
            return value == "-" ? Keys() : Keys{{row[0], value}};
        };
        start(keys(row[1]), keys(row[2]));
        if (row[3] != "-") {
            EXPECT_TRUE(write(row[0], row[3] == "''" ? "" : row[3]));
        }
        const std::string value = valueOf(row[0]).value_or("-");
        EXPECT_EQ(value.empty() ? "''" : value, row[4]) << row[0] << " " << row[1] << " " << row[2];
    }
}

TEST_F(PhoneValues, AreReadAsFarAsTheLineHasThem) {
    start({{"a", "1"}, {"c", "3"}});
    ManageableData data;
    for (const char* const key : {"a", "b", "c"}) {
        data.setRootId(key, nullptr);
    }
    EXPECT_FALSE(management().read(data));
    EXPECT_EQ(data.interogate("a")->getValue() + data.interogate("c")->getValue(), "13");
    EXPECT_EQ(data.interogate("b"), nullptr);

    EXPECT_TRUE(write("k", "mine"));
    const host::LocalManagement other(*m_database, "3001", {{"k", "theirs"}}, {}, m_post);
    EXPECT_THAT(other.values(), ElementsAre(Pair("k", "theirs")));
}

TEST_F(PhoneValues, AreStoredTogetherOrNotAtAll) {
    start({{"good", "old"}});
    ManageableData data = journaltest::dataOf("good", "new");
    data.setRootId("no-value", nullptr);
    data.populate("too-long", "too-long", std::string(4097, 'x'));
    data.populate("a key", "a key", "1");
    data.populate(std::string(101, 'k'), std::string(101, 'k'), "1");
    EXPECT_FALSE(management().write(data));
    EXPECT_THAT(data.getRejectReasons(),
                ElementsAre(Key("a key"), Key(std::string(101, 'k')), Key("no-value"), Key("too-long")));
    EXPECT_EQ(data.getRejectReasons().at("no-value").code, eRejectDataInvalid);
    EXPECT_THAT(data.getRejectReasons().at("too-long").text, HasSubstr("too-long"));

    EXPECT_TRUE(write("software-type", "norlith sip"));
    start({{"software-type", "Norlith SIP"}});
    EXPECT_EQ(valueOf("software-type"), "Norlith SIP") << "a stored value that is not valid has no effect";

    const std::string longest(4096, 'v');
    EXPECT_TRUE(write(longest.substr(0, 100), longest));
    start({{"good", "old"}});
    EXPECT_EQ(valueOf("good"), "old");
    EXPECT_EQ(valueOf(longest.substr(0, 100)), longest);
}

TEST_F(PhoneValues, StayUnchangedWithoutNotificationIfTheyCannotBeStored) {
    start({{"k", "old"}});
    journaltest::RecordingAgent agent;
    management().observe("k", agent);
    SQLite::Database other = m_database.otherConnection();
    other.exec("BEGIN IMMEDIATE");
    ManageableData data = journaltest::dataOf("k", "new");
    EXPECT_FALSE(management().write(data));
    EXPECT_THAT(data.getRejectReasons(), ElementsAre(Key("k")));
    EXPECT_EQ(journaltest::CapturedLog::count("storing management values failed"), 1);
    other.exec("ROLLBACK");
    runStrand();
    EXPECT_EQ(valueOf("k"), "old");
    EXPECT_THAT(agent.calls, IsEmpty());
    management().unregisterAgent(agent);

    other.exec("DROP TABLE management_value");
    EXPECT_THROW(start(), host::DatabaseError) << "values that cannot be read at start";
}

}  // namespace
