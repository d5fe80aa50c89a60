#include <thread>

#include "tests/host-directory/PhonebookFixture.h"
#include "tests/support/CapturedLog.h"

namespace {

using testing::IsEmpty;

using PhonebookFaults = journaltest::PhonebookFixture;

TEST_F(PhonebookFaults, AreAnsweredLikeAnAbsentContactAndChangeNothing) {
    Contact contact = named("Miller", "4711");
    contact.setUniqueId(knows(contact));
    m_database.otherConnection().exec("ALTER TABLE contact RENAME TO hidden");

    EXPECT_EQ(whoHas("4711"), "");
    EXPECT_FALSE(m_phonebook.add(named("New")));
    EXPECT_FALSE(m_phonebook.add(std::vector<Contact>{named("New")}));
    EXPECT_FALSE(m_phonebook.update(contact));
    EXPECT_FALSE(m_phonebook.remove(contact.getUniqueId()));
    EXPECT_FALSE(m_phonebook.find(contact.getUniqueId()));
    EXPECT_THAT(m_phonebook.list(0, 10), IsEmpty());
    EXPECT_EQ(m_phonebook.count(), 0U);
    EXPECT_FALSE(m_phonebook.import({contact}));
    EXPECT_FALSE(m_phonebook.search("", 0, 1));
    EXPECT_FALSE(m_phonebook.useRules("others"));
    EXPECT_EQ(journaltest::CapturedLog::lines("Database").size(), 11U);
    EXPECT_FALSE(m_database->healthy());

    m_database.otherConnection().exec("ALTER TABLE hidden RENAME TO contact");
    EXPECT_EQ(whoHas("4711"), "Miller");
}

TEST_F(PhonebookFaults, OfOneContactUndoTheWholeImport) {
    m_database.otherConnection().exec(
        "CREATE TRIGGER refusal BEFORE INSERT ON contact WHEN new.surname = 'bad' BEGIN SELECT RAISE(ABORT, "
        "'bad contact'); END");
    EXPECT_FALSE(m_phonebook.add({named("good", "1"), named("bad", "2")}));
    EXPECT_EQ(m_phonebook.count(), 0U);
    EXPECT_EQ(m_database.number("SELECT count(*) FROM contact_number"), 0);
}

TEST_F(PhonebookFaults, DoNotComeFromManyThreads) {
    knows(named("Miller", "4711"));
    std::atomic<bool> done{false};
    std::atomic<int> wrong{0};
    std::thread reader([&] {
        Contact contact;
        while (!done) {
            contact.setSearchNumber("4711");
            wrong += m_phonebook.lookUpContact(contact) && contact.getSurname() == "Miller" ? 0 : 1;
        }
    });
    std::vector<std::thread> writers;
    for (int thread = 0; thread < 3; ++thread) {
        writers.emplace_back([&, thread] {
            for (int each = 0; each < 30; ++each) {
                const auto uniqueId = m_phonebook.add(named("New", std::to_string(thread)));
                wrong += uniqueId && m_phonebook.remove(*uniqueId) ? 0 : 1;
            }
        });
    }
    for (std::thread& each : writers) {
        each.join();
    }
    done = true;
    reader.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(m_phonebook.count(), 1U);
}

}  // namespace
