#include "host/data/ContactRows.h"
#include "tests/host-directory/PhonebookFixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using Source = Contact::eOrderedContactSource;

using PhonebookLookUp = journaltest::PhonebookFixture;

TEST_F(PhonebookLookUp, FindsANumberInEverySpelling) {
    knows(named("Miller", "+49 (0)30 47-11"));
    for (const char* const spelling :
         {"+49304711", "0049304711", "+49 30 4711", "+49-30/4711", "0049 (0) 30 4711", "(030) 4711"}) {
        EXPECT_EQ(whoHas(spelling), "Miller") << spelling;
    }
    for (const char* const other : {"", "4711", "304711", "+4930471", "+493047111", "-"}) {
        lookedUp(other);
        EXPECT_FALSE(m_found) << other;
    }
}

// The kinds are the journal's: it takes kind 1 for the fourth number and 2 to 4 for the first to the third.
TEST_F(PhonebookLookUp, TellsWhichOfTheNumbersMatched) {
    Contact contact = named("Miller", "1");
    contact.setMobile("2");
    contact.setPrivate("3");
    contact.setOffice2("4");
    knows(contact);
    const struct {
        const char* number;
        int kind;
    } cases[] = {{"1", 2}, {"2", 3}, {"3", 4}, {"4", 1}};
    for (const auto& each : cases) {
        EXPECT_EQ(lookedUp(each.number).getMatchedKind(), each.kind) << each.number;
    }
}

TEST_F(PhonebookLookUp, TakesTheFirstOfTwoNumbersThatAreTheSame) {
    Contact contact = named("Miller");
    contact.setMobile("47 11");
    contact.setOffice2("4711");
    knows(contact);
    EXPECT_EQ(lookedUp("4711").getMatchedKind(), 3);
}

TEST_F(PhonebookLookUp, FillsEverythingInButTheQuestionAndTheCallRecords) {
    Contact contact = named("Miller", "4711");
    contact.setFirstname("Ada");
    contact.setPicture("pictures/ada.png");
    contact.setSearchNumber("stored?");
    contact.setMatchedKind(9);
    contact.addCallRecord({"stored?", "missed"});
    const std::string uniqueId = knows(contact);

    Contact asked;
    asked.setSearchNumber("47 11");
    asked.setSurname("switch's name");
    asked.setUniqueId("7777");
    asked.addCallRecord({"entry", "missed"});
    ASSERT_TRUE(m_phonebook.lookUpContact(asked));

    contact.setUniqueId(uniqueId);
    contact.setSearchNumber("47 11");
    contact.setMatchedKind(2);
    contact.setCallRecords({{"entry", "missed"}});
    EXPECT_EQ(asked, contact) << asked.serialize();
}

TEST_F(PhonebookLookUp, ChangesNothingWhenNobodyHasTheNumber) {
    knows(named("Miller", "4711"));
    Contact asked = named("switch's name");
    asked.setSearchNumber("4712");
    const Contact before = asked;
    EXPECT_FALSE(m_phonebook.lookUpContact(asked));
    EXPECT_EQ(asked, before);
    asked.setSearchNumber("");
    EXPECT_FALSE(m_phonebook.lookUpContact(asked));
}

TEST_F(PhonebookLookUp, PrefersTheBestSourceAndThenTheOldestContact) {
    const Source worstFirst[] = {Source::eUnknown, Source::eCallLog, Source::eExchange,
                                 Source::eLdap,    Source::eCompany, Source::ePersonal};
    for (const Source source : worstFirst) {
        Contact contact = named(std::to_string(static_cast<int>(source)), "4711");
        contact.setContactSource(source);
        knows(contact);
        EXPECT_EQ(whoHas("4711"), contact.getSurname());
        contact.setSurname("a later one");
        knows(contact);
        EXPECT_NE(whoHas("4711"), "a later one");
    }
}

TEST_F(PhonebookLookUp, KeepsTheLinesApart) {
    host::Phonebook other(*m_database, m_digits, "3001");
    const std::string uniqueId = other.add(named("Theirs", "4711")).value_or("");
    EXPECT_EQ(whoHas("4711"), "");
    EXPECT_FALSE(m_phonebook.find(uniqueId));
    EXPECT_FALSE(m_phonebook.remove(uniqueId));
    Contact changed = named("Mine", "4711");
    changed.setUniqueId(uniqueId);
    EXPECT_FALSE(m_phonebook.update(changed));
    EXPECT_EQ(m_phonebook.count(), 0U);
    EXPECT_EQ(other.find(uniqueId)->getSurname(), "Theirs");
}

// Not the clock but the plan: whatever the number of contacts, a look-up walks down two trees.
TEST_F(PhonebookLookUp, GoesThroughTheIndexOfNumbers) {
    std::vector<Contact> contacts;
    for (int number = 0; number < 20000; ++number) {
        contacts.push_back(named("Contact", std::to_string(1000000 + number)));
    }
    ASSERT_TRUE(m_phonebook.add(contacts));
    knows(named("Miller", "1019999 1"));
    EXPECT_EQ(whoHas("10199991"), "Miller");

    std::string plan;
    const std::string sql = std::string("EXPLAIN QUERY PLAN ") + host::ContactRows::kLookUpSql;
    ASSERT_TRUE(m_database->read("test", [&](host::Database::Session& session) {
        host::Query query = session.query(sql.c_str());
        query.bind(std::string("2001")).bind(std::string("4711"));
        while (query.next()) {
            static_cast<void>(query.number() + query.number() + query.number());
            plan += query.text() + '\n';
        }
    }));
    EXPECT_THAT(
        plan, AllOf(HasSubstr("SEARCH contact_number USING PRIMARY KEY (line=? AND number=?)"),
                    HasSubstr("SEARCH contact USING INTEGER PRIMARY KEY (rowid=?)"), Not(HasSubstr("SCAN"))));
}

}  // namespace
