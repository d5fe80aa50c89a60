#include "host/directory/Phonebook.h"

#include <rapidcheck.h>

#include "tests/host-directory/PhonebookFixture.h"
#include "tests/journal-library/RandomItems.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Phonebook : public journaltest::PhonebookFixture {
protected:
    std::vector<std::string> surnames(std::size_t offset = 0, std::size_t limit = 100) {
        std::vector<std::string> names;
        for (const Contact& contact : m_phonebook.list(offset, limit)) {
            names.push_back(contact.getSurname());
        }
        return names;
    }
};

TEST_F(Phonebook, GivesAContactBackEqualWhateverBytesItHolds) {
    EXPECT_TRUE(rc::check([this] {
        Contact contact = journaltest::some<Contact>();
        const auto uniqueId = m_phonebook.add(contact);
        RC_ASSERT(uniqueId);
        contact.setUniqueId(*uniqueId);
        contact.setSearchNumber({});
        contact.setMatchedKind(0);
        contact.setCallRecords({});
        RC_ASSERT(m_phonebook.find(*uniqueId) == contact);
    }));
}

TEST_F(Phonebook, ChangesAContactWithItsNumbers) {
    Contact contact = named("Miller", "4711");
    contact.setUniqueId(knows(contact));
    contact.setSurname("Lovelace");
    contact.setOffice("4712");
    contact.setMobile("0170");
    EXPECT_TRUE(m_phonebook.update(contact));
    EXPECT_EQ(whoHas("4711"), "");
    EXPECT_EQ(whoHas("4712"), "Lovelace");
    EXPECT_EQ(whoHas("0170"), "Lovelace");
    EXPECT_EQ(m_phonebook.count(), 1U);
}

TEST_F(Phonebook, RemovesAContactWithItsNumbers) {
    const std::string uniqueId = knows(named("Miller", "4711"));
    EXPECT_TRUE(m_phonebook.remove(uniqueId));
    EXPECT_EQ(whoHas("4711"), "");
    EXPECT_FALSE(m_phonebook.find(uniqueId));
    EXPECT_EQ(m_database.number("SELECT count(*) FROM contact_number"), 0);
    EXPECT_NE(knows(named("Another")), uniqueId) << "an id must never come to mean somebody else";
}

TEST_F(Phonebook, KnowsNoContactByAnIdThatNoneHas) {
    knows(named("Miller", "4711"));
    for (const char* const unknown : {"", "0", "2", "-1", "01", "1 ", "one"}) {
        Contact contact = named("Changed", "4711");
        contact.setUniqueId(unknown);
        EXPECT_FALSE(m_phonebook.update(contact)) << unknown;
        EXPECT_FALSE(m_phonebook.remove(unknown)) << unknown;
        EXPECT_FALSE(m_phonebook.find(unknown)) << unknown;
    }
    EXPECT_EQ(whoHas("4711"), "Miller");
}

TEST_F(Phonebook, ListsByNameWithoutRegardToCapitals) {
    Contact zoe = named("miller");
    zoe.setFirstname("zoe");
    Contact ada = named("Miller");
    ada.setFirstname("Ada");
    ASSERT_TRUE(m_phonebook.add({named("Zuse"), zoe, named("adams"), ada, named("Babbage")}));
    EXPECT_THAT(surnames(), ElementsAre("adams", "Babbage", "Miller", "miller", "Zuse"));
    EXPECT_THAT(surnames(1, 2), ElementsAre("Babbage", "Miller"));
    EXPECT_THAT(surnames(4, 100), ElementsAre("Zuse"));
    EXPECT_THAT(surnames(5, 1), IsEmpty());
    EXPECT_EQ(m_phonebook.count(), 5U);
}

TEST_F(Phonebook, FindsContactsUnderNewRulesAfterTheyWereIndexedAnew) {
    knows(named("Miller", "4711"));
    m_database.otherConnection().exec("UPDATE contact_number SET number = 'by older rules'");
    EXPECT_EQ(whoHas("4711"), "");
    EXPECT_TRUE(m_phonebook.reindex());
    EXPECT_EQ(whoHas("4711"), "Miller");
    EXPECT_EQ(m_database.number("SELECT count(*) FROM contact_number"), 1);
}

}  // namespace
