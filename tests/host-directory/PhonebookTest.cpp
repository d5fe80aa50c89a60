#include "host/directory/Phonebook.h"

#include <rapidcheck.h>

#include "host/directory/PhonebookInvoker.h"
#include "platform/journal-library/PhonebookMessage.h"
#include "tests/host-directory/PhonebookFixture.h"
#include "tests/journal-library/RandomItems.h"
#include "tests/support/FakeFramework.h"

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

TEST_F(Phonebook, IndexesNumbersAnewOnlyWhenTheRulesAreOthers) {
    knows(named("Miller", "4711"));
    EXPECT_TRUE(m_phonebook.useRules("first"));
    m_database.otherConnection().exec("UPDATE contact_number SET number = 'by other rules'");
    EXPECT_TRUE(m_phonebook.useRules("first"));
    EXPECT_EQ(whoHas("4711"), "");
    EXPECT_TRUE(m_phonebook.useRules("second"));
    EXPECT_EQ(whoHas("4711"), "Miller");
    EXPECT_EQ(m_database.number("SELECT count(*) FROM contact_number"), 1);
}

// Each import follows the ones before it.
TEST_F(Phonebook, ImportsAContactOnceAndChangesItWhereItDiffers) {
    const struct {
        const char* fields;
        const char* effect;
        std::size_t contactsThen;
    } cases[] = {
        {"surname=Miller;office=030 123456;", "added", 1},
        {"surname=Miller;office=+49 30 123456;", "changed", 1},
        {"surname=Miller;office=+49 30 123456;", "unchanged", 1},
        {"surname=Miller;firstname=Ada;office=030 123456;", "added", 2},
        {"surname=Miller;office=030 654321;", "added", 3},
        {"surname=Miller;mobile=030 123456;", "changed", 3},
        // Who has no external id yet takes the first that fits.
        {"surname=Miller;mobile=030 123456;externalId=a;", "changed", 3},
        {"surname=Miller;mobile=030 123456;externalId=b;", "added", 4},
        {"surname=Lovelace;office=1;externalId=a;", "changed", 4},
        {"surname=Lovelace;office=1;", "unchanged", 4},
        {"surname=Nobody;", "added", 5},
        {"surname=Nobody;uniqueId=77;searchNumber=1;matchedKind=2;record=e,missed;", "unchanged", 5},
    };
    for (const auto& each : cases) {
        Contact contact;
        ASSERT_TRUE(Contact::deserialize(each.fields, contact));
        const auto counts = m_phonebook.import({contact});
        ASSERT_TRUE(counts);
        EXPECT_EQ(counts->added == 1     ? "added"
                  : counts->changed == 1 ? "changed"
                                         : "unchanged",
                  std::string(each.effect))
            << each.fields;
        EXPECT_EQ(m_phonebook.count(), each.contactsThen) << each.fields;
    }
    EXPECT_EQ(whoHas("1"), "Lovelace");
}

TEST_F(Phonebook, IsSearchedPageByPage) {
    std::vector<Contact> contacts;
    for (int number = 10; number < 30; ++number) {
        contacts.push_back(named("Contact " + std::to_string(number), "47" + std::to_string(number)));
    }
    ASSERT_TRUE(m_phonebook.import(contacts));
    const auto page = m_phonebook.search("CONTACT 2", 4, 3);
    ASSERT_TRUE(page);
    EXPECT_EQ(page->total, 10U);
    ASSERT_EQ(page->contacts.size(), 3U);
    EXPECT_EQ(page->contacts.front().getSurname(), "Contact 24");
    EXPECT_EQ(m_phonebook.search("4729", 0, 9)->total, 1U);
}

TEST_F(Phonebook, IsReadAndFilledByRemoteClients) {
    host::PhonebookInvoker invoker;
    const auto answerTo = [&](const std::string& text, Executable* target) {
        journaltest::RecordingResponse response;
        invoker.handleMessage(target, text.data(), static_cast<int>(text.size()), &response);
        return response.payload();
    };
    journalxml::PhonebookImport import;
    Contact contact = named("M\xff & <failure>", "4711");
    ASSERT_TRUE(import.add(contact));
    const auto imported = journalxml::parsePhonebookImported(answerTo(import.text(), &m_phonebook));
    ASSERT_TRUE(imported);
    EXPECT_EQ(imported->added, 1U);
    const std::string read = journalxml::buildPhonebookRead({{}, "m", 0, 5});
    const auto page = journalxml::parsePhonebookPage(answerTo(read, &m_phonebook));
    ASSERT_TRUE(page);
    EXPECT_EQ(page->total, 1U);
    EXPECT_THAT(page->contacts, ElementsAre(testing::Property(&Contact::getSurname, contact.getSurname())));

    for (const std::string& bad :
         {std::string(), std::string("<PhonebookRequest/>"), read.substr(0, 80),
          std::string("<PhonebookRequest><Operation>import</Operation></PhonebookRequest>"),
          std::string("<r><Method>2</Method></r>")}) {
        EXPECT_EQ(answerTo(bad, &m_phonebook), "failure") << bad;
    }
    EXPECT_EQ(answerTo(read, nullptr), "failure");
    m_database.otherConnection().exec("ALTER TABLE contact RENAME TO hidden");
    EXPECT_EQ(answerTo(read, &m_phonebook), "failure");
    EXPECT_EQ(answerTo(import.text(), &m_phonebook), "failure");
}

}  // namespace
