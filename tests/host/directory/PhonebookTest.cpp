#include "host/directory/Phonebook.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <chrono>

#include "host/data/ContactRows.h"
#include "host/digits/DigitAnalysis.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/RandomItems.h"
#include "tests/support/Table.h"
#include "tests/support/TemporaryDatabase.h"

namespace {

using journaltest::table;
using testing::HasSubstr;
using testing::Not;

/// The phonebook of line "2001" with the host's own dialling rules.
class Phonebook : public testing::Test {
protected:
    /// A contact by its fields, as "surname=Miller;office=4711;".
    static Contact contactOf(const std::string& fields) {
        Contact contact;
        EXPECT_TRUE(Contact::deserialize(fields, contact)) << fields;
        return contact;
    }
    static Contact miller() { return contactOf("surname=Miller;office=4711;"); }
    /// Stores the contact; returns its unique id.
    std::optional<Contact> find(const std::string& uniqueId) {
        std::optional<Contact> contact;
        EXPECT_TRUE(m_phonebook.find(uniqueId, contact));
        return contact;
    }
    std::string store(const Contact& contact) { return m_phonebook.add(contact).value_or("failed"); }
    /// The surname of the contact with the number, and the kind of the number; empty if there is none.
    std::string whoHas(const std::string& number) {
        Contact contact;
        contact.setSearchNumber(number);
        return m_phonebook.lookUpContact(contact)
                   ? contact.getSurname() + " " + std::to_string(contact.getMatchedKindCode())
                   : "";
    }
    std::string surnames(std::size_t offset, std::size_t limit) {
        std::string names;
        for (const Contact& contact : m_phonebook.list(offset, limit)) {
            names += contact.getSurname() + contact.getFirstname() + ' ';
        }
        return names;
    }

    journaltest::TemporaryDatabase m_database;
    host::DigitAnalysis m_digits{"DE", {}};
    host::Phonebook m_phonebook{*m_database, m_digits, "2001"};
};

TEST_F(Phonebook, ReturnsAContactEqualForAnyBytes) {
    EXPECT_TRUE(rc::check([this] {
        auto contact = journaltest::some<Contact>();
        const auto uniqueId = m_phonebook.add(contact);
        RC_ASSERT(uniqueId);
        contact.setUniqueId(*uniqueId);
        contact.setSearchNumber({});
        contact.setMatchedKindCode(0);
        contact.setCallRecords({});
        RC_ASSERT(find(*uniqueId) == contact);
    }));
}

// The journal's kinds: 1 is the fourth number, 2 to 4 are the first to the third.
TEST_F(Phonebook, FindsANumberInEverySpellingWithItsKind) {
    for (const char* const fields :
         {"surname=Miller;office=+49 (0)30 47-11;", "surname=A;office=1;mobile=2;private=3;office2=4;",
          "surname=B;mobile=47 12;office2=4712;"}) {
        store(contactOf(fields));
    }
    for (const auto& row : table(2, R"(
        Miller 2 | +49304711, 0049304711, +49 30 4711, +49-30/4711, 0049 (0) 30 4711, (030) 4711
        A 2      | 1
        A 3      | 2
        A 4      | 3
        A 1      | 4
        B 3      | 4712
                 | , 4711, 304711, +4930471, +493047111, -
    )")) {
        for (const std::string& number : journaltest::split(row[1], ',')) {
            EXPECT_EQ(whoHas(number), row[0]) << number;
        }
    }
}

TEST_F(Phonebook, FillsInAllButTheSearchNumberAndTheCallRecordsOfAKnownNumber) {
    store(contactOf("surname=Miller;firstname=Ada;office=4711;picture=a.png;record=stored?,missed;"));
    const std::string names = "surname=switch's name;uniqueId=7777;record=entry,missed;searchNumber=47 1";
    Contact unknown = contactOf(names + "2;");
    EXPECT_FALSE(m_phonebook.lookUpContact(unknown));
    EXPECT_EQ(unknown, contactOf(names + "2;"));
    Contact known = contactOf(names + "1;");
    EXPECT_TRUE(m_phonebook.lookUpContact(known));
    EXPECT_EQ(known, contactOf("surname=Miller;firstname=Ada;office=4711;picture=a.png;record=entry,missed;"
                               "searchNumber=47 11;uniqueId=1;matchedKind=2;"))
        << known.serialize();
}

TEST_F(Phonebook, PrefersTheBestSourceAndThenTheOldestContact) {
    using Source = Contact::eOrderedContactSource;
    for (const Source source : {Source::eUnknown, Source::eCallLog, Source::eExchange, Source::eLdap,
                                Source::eCompany, Source::ePersonal}) {
        const std::string name = std::to_string(static_cast<int>(source));
        store(contactOf("surname=" + name + ";office=4711;source=" + name + ";"));
        store(contactOf("surname=later;office=4711;source=" + name + ";"));
        EXPECT_EQ(whoHas("4711"), name + " 2");
    }
}

TEST_F(Phonebook, KeepsTheLinesApart) {
    host::Phonebook other(*m_database, m_digits, "3001");
    Contact contact = miller();
    contact.setUniqueId(other.add(contact).value_or(""));
    EXPECT_FALSE(find(contact.getUniqueId()) || m_phonebook.remove(contact.getUniqueId()) ||
                 m_phonebook.update(contact));
    EXPECT_EQ(whoHas("4711") + std::to_string(m_phonebook.count()), "0");
    std::optional<Contact> found;
    EXPECT_TRUE(other.find(contact.getUniqueId(), found) && found == contact);
}

TEST_F(Phonebook, SharesContactsWithAllLinesBehindTheirOwnOnes) {
    using Owner = host::Phonebook::Owner;
    host::Phonebook shared(*m_database, m_digits, "");
    host::Phonebook ann(*m_database, m_digits, "2002", std::chrono::seconds(1), &shared);
    host::Phonebook bob(*m_database, m_digits, "2003", std::chrono::seconds(1), &shared);
    const auto whoFor = [](host::Phonebook& phonebook, const std::string& number) {
        Contact contact;
        contact.setSearchNumber(number);
        return phonebook.lookUpContact(contact) ? contact.getSurname() : "";
    };
    const auto listOf = [](host::Phonebook& phonebook) {
        std::string names;
        const auto contacts = phonebook.list(0, 10);
        const auto isShared = phonebook.sharedAmong(contacts).value();
        for (const Contact& each : contacts) {
            names += each.getSurname() + (isShared.contains(each.getUniqueId()) ? "* " : " ");
        }
        EXPECT_EQ(phonebook.count(), contacts.size());
        return names;
    };

    // The company's contact has the better source.
    const std::string company = bob.add(contactOf("surname=Zoo;office=4711;"), Owner::eAll).value();
    EXPECT_EQ(whoFor(ann, "4711"), "Zoo");
    const std::string own = ann.add(contactOf("surname=Animals;office=4711;mobile=4712;")).value();
    EXPECT_EQ(whoFor(ann, "4711"), "Animals");
    EXPECT_EQ(whoFor(bob, "4711"), "Zoo");
    EXPECT_EQ(whoFor(bob, "4712"), "");
    EXPECT_EQ(listOf(ann), "Animals Zoo* ");
    EXPECT_EQ(listOf(bob), "Zoo* ");
    EXPECT_EQ(bob.search("zoo", 0, 10).value().total, 1U);
    std::optional<Contact> found;
    EXPECT_TRUE(bob.find(own, found));
    EXPECT_FALSE(found) << "it is of another line";

    Contact changed = contactOf("surname=Park;office=4711;");
    changed.setUniqueId(company);
    EXPECT_FALSE(ann.update(changed));
    EXPECT_FALSE(ann.remove(company));
    EXPECT_FALSE(bob.remove(own, Owner::eAll));
    EXPECT_TRUE(ann.update(changed, Owner::eAll));
    EXPECT_EQ(whoFor(bob, "4711"), "Park");
    EXPECT_TRUE(ann.remove(own, Owner::eAll));
    EXPECT_EQ(whoFor(ann, "4711"), "Park");
    EXPECT_TRUE(bob.remove(company, Owner::eAll));
    EXPECT_EQ(whoFor(ann, "4711"), "");

    // An import looks for known contacts among those that it may change.
    const auto imports = [](host::Phonebook& phonebook, const std::vector<Contact>& contacts, Owner owner) {
        const auto counts = phonebook.import(contacts, owner).value();
        return std::to_string(counts.added) + std::to_string(counts.changed) +
               std::to_string(counts.unchanged);
    };
    EXPECT_TRUE(ann.add(contactOf("surname=Own;office=1;")));
    EXPECT_EQ(imports(ann, {contactOf("surname=Own;office=1;email=a@b;"), contactOf("surname=New;office=2;")},
                      Owner::eAll),
              "110");
    EXPECT_EQ(listOf(ann), "New* Own ");
    EXPECT_EQ(imports(bob, {contactOf("surname=New;office=2;")}, Owner::eLine), "100");
    EXPECT_EQ(imports(bob, {contactOf("surname=New;office=2;")}, Owner::eLine), "001");
    EXPECT_EQ(listOf(bob), "New* New ");
}

TEST_F(Phonebook, FindsEachChangeAfterALookUp) {
    host::Phonebook phonebook(*m_database, m_digits, "2001", std::chrono::milliseconds(0));
    const auto surname = [&phonebook](const std::string& number) {
        Contact contact;
        contact.setSearchNumber(number);
        return phonebook.lookUpContact(contact) ? contact.getSurname() : "";
    };
    EXPECT_EQ(surname("4711"), "");
    Contact contact = miller();
    contact.setUniqueId(phonebook.add(contact).value_or(""));
    EXPECT_EQ(surname("4711") + surname("4711") + surname("4712"), "MillerMiller");
    contact.setOffice("4712");
    contact.setSurname("Lovelace");
    EXPECT_TRUE(phonebook.update(contact));
    EXPECT_EQ(surname("4711") + surname("4712"), "Lovelace");
    EXPECT_TRUE(phonebook.import({contactOf("surname=Byron;office=4711;")}));
    EXPECT_EQ(surname("4711"), "Byron");
    // By another process.
    m_database.otherConnection().exec("UPDATE contact SET surname = 'Babbage' WHERE surname = 'Byron'");
    EXPECT_EQ(surname("4711"), "Babbage");
    m_database.otherConnection().exec("UPDATE contact_number SET number = '4713' WHERE number = '4711'");
    EXPECT_EQ(surname("4711") + surname("4713"), "Babbage");
    EXPECT_TRUE(phonebook.remove(contact.getUniqueId()));
    EXPECT_EQ(surname("4712"), "");
}

// The query plan, not the time: a look-up searches two trees for any number of contacts.
TEST_F(Phonebook, LooksUpThroughTheIndexOfNumbers) {
    SQLite::Database other = m_database.otherConnection();
    SQLite::Statement query(other, std::string("EXPLAIN QUERY PLAN ") + host::ContactRows::kLookUpSql);
    std::string plan;
    while (query.executeStep()) {
        plan += query.getColumn(3).getString() + '\n';
    }
    EXPECT_THAT(plan, HasSubstr("SEARCH contact_number USING PRIMARY KEY (line=? AND number=?)"));
    EXPECT_THAT(plan, Not(HasSubstr("SCAN")));
}

TEST_F(Phonebook, ChangesAndRemovesAContactWithItsNumbers) {
    Contact contact = miller();
    const std::string uniqueId = store(contact);
    for (const char* const unknown : {"", "0", "2", "-1", "01", "1 ", "one"}) {
        contact.setUniqueId(unknown);
        EXPECT_FALSE(m_phonebook.update(contact) || m_phonebook.remove(unknown) || find(unknown)) << unknown;
    }
    contact = contactOf("surname=Lovelace;office=4712;mobile=0170;");
    contact.setUniqueId(uniqueId);
    EXPECT_TRUE(m_phonebook.update(contact));
    EXPECT_EQ(whoHas("4711") + whoHas("4712") + whoHas("0170"), "Lovelace 2Lovelace 3");
    EXPECT_TRUE(m_phonebook.remove(uniqueId));
    EXPECT_EQ(m_database.number("SELECT count(*) FROM contact_number"), 0);
    EXPECT_NE(store(miller()), uniqueId) << "an id is never used again";
}

TEST_F(Phonebook, SearchesByNameIgnoringCasePageByPage) {
    for (const char* const fields :
         {"surname=miller;firstname=zoe;", "surname=Miller;firstname=Ada;", "surname=milles;office=4729;"}) {
        store(contactOf(fields));
    }
    EXPECT_EQ(surnames(0, 100) + surnames(1, 1), "MillerAda millerzoe milles millerzoe ");
    const auto page = m_phonebook.search("MILL", 1, 1);
    ASSERT_TRUE(page && page->contacts.size() == 1);
    EXPECT_EQ(page->contacts.front().getFirstname() + std::to_string(page->total), "zoe3");
    EXPECT_EQ(m_phonebook.search("4729", 0, 9)->total, 1U);
}

TEST_F(Phonebook, RecomputesTheIndexOnlyForOtherRules) {
    store(miller());
    EXPECT_TRUE(m_phonebook.reindexIfRulesChanged("first"));
    m_database.otherConnection().exec("UPDATE contact_number SET number = 'by other rules'");
    EXPECT_TRUE(m_phonebook.reindexIfRulesChanged("first"));
    EXPECT_EQ(whoHas("4711"), "");
    EXPECT_TRUE(m_phonebook.reindexIfRulesChanged("second"));
    EXPECT_EQ(whoHas("4711"), "Miller 2");
    EXPECT_EQ(m_database.number("SELECT count(*) FROM contact_number"), 1);
}

// Each import follows the ones before it. A contact without an external id takes the first match.
TEST_F(Phonebook, ImportsAContactOnceAndChangesItWhereItDiffers) {
    for (const auto& row : table(3, R"(
        surname=Miller;office=030 123456;                                           | added     | 1
        surname=Miller;office=+49 30 123456;                                        | changed   | 1
        surname=Miller;office=+49 30 123456;                                        | unchanged | 1
        surname=Miller;firstname=Ada;office=030 123456;                             | added     | 2
        surname=Miller;office=030 654321;                                           | added     | 3
        surname=Miller;mobile=030 123456;                                           | changed   | 3
        surname=Miller;mobile=030 123456;externalId=a;                              | changed   | 3
        surname=Miller;mobile=030 123456;externalId=b;                              | added     | 4
        surname=Lovelace;office=1;externalId=a;                                     | changed   | 4
        surname=Lovelace;office=1;                                                  | unchanged | 4
        surname=Nemo;                                                             | added     | 5
        surname=Nemo;uniqueId=77;searchNumber=1;matchedKind=2;record=e,missed;    | unchanged | 5
        surname=Known;office=2;mobile=3;externalId=k;source=2;                      | added     | 6
        surname=Known;office=2;                                                     | unchanged | 6
        surname=Known;office=2;private=4;                                           | changed   | 6
        surname=Known;office=2;private=5;externalId=k;                              | changed   | 6
    )")) {
        SCOPED_TRACE(row[0]);
        const auto counts = m_phonebook.import({contactOf(row[0])});
        ASSERT_TRUE(counts);
        EXPECT_EQ(counts->added == 1 ? "added" : counts->changed == 1 ? "changed" : "unchanged", row[1]);
        EXPECT_EQ(std::to_string(m_phonebook.count()), row[2]);
    }
    EXPECT_EQ(whoHas("1"), "Lovelace 2");
    EXPECT_EQ(whoHas("3") + whoHas("4") + whoHas("5"), "Known 4") << "its id brings the whole contact";
    std::string sources;
    for (const Contact& each : m_phonebook.list(0, 9)) {
        sources += each.getSurname()[0] + std::to_string(static_cast<int>(each.getContactSource()));
    }
    EXPECT_EQ(sources, "K2L1M1M1M1N1") << "personal, unless the import or the contact has another source";
}

TEST_F(Phonebook, FailsWithTheDatabase) {
    const Contact contact = contactOf("surname=M\xff;office=4711;uniqueId=1;");
    store(contact);
    m_database.otherConnection().exec("ALTER TABLE contact RENAME TO hidden");
    EXPECT_FALSE(m_phonebook.search("m", 0, 5));
    journaltest::CapturedLog::reset();
    EXPECT_EQ(whoHas("4711") + store(contact), "failed");
    std::optional<Contact> none;
    EXPECT_FALSE(m_phonebook.update(contact) || m_phonebook.remove("1") || m_phonebook.find("1", none) ||
                 m_phonebook.import({contact}) || m_phonebook.reindexIfRulesChanged("others"));
    EXPECT_EQ(surnames(0, 10) + std::to_string(m_phonebook.count()), "0");
    EXPECT_EQ(journaltest::CapturedLog::lines("Database").size(), 8U) << "the second look-up is counted";
    m_database.otherConnection().exec("ALTER TABLE hidden RENAME TO contact");
    EXPECT_EQ(whoHas("4711"), contact.getSurname() + " 2");
}

}  // namespace
