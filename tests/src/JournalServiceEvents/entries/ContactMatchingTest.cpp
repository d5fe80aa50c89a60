#include <string>

#include <gtest/gtest.h>

#include "src/JournalServiceEvents/entries/ContactMatching.h"
#include "tests/support/ListsFixture.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

/// "Adams, Ann, 123": surname, first name and number; each may be missing.
Contact contactOf(const std::string& text) {
    const auto words = split(text, ',');
    Contact contact;
    contact.setSurname(words.at(0));
    contact.setFirstname(words.at(1));
    contact.setSearchNumber(words.at(2));
    return contact;
}

/// An item of that party, with an older occurrence that must not matter.
template <typename Item>
Item itemFor(const Contact& party, const std::string& olderNumber) {
    auto item = itemOf<Item>("e1", "1", {{party.getSearchNumber(), "t2"}, {olderNumber, "t1"}});
    item.setSurname(party.getSurname());
    item.setFirstname(party.getFirstname());
    return item;
}

TEST(ContactMatching, LooksAtTheNewestOccurrenceInEveryList) {
    for (const auto& row : table(4, R"(
numbers equal                     | Adams, Ann, 123 | , , 123          | matches
numbers differ                    | , , 123         | , , 456          | no
number is part of the other       | , , 1234        | , , 123          | no
number against anonymous          | , ,             | , , 123          | no
two anonymous                     | , ,             | , ,              | matches
anonymous against number          | , , 123         | , ,              | no
anonymous against surname         | Adams, ,        | , ,              | no
anonymous against first name      | , Ann,          | , ,              | no
first name alone is anonymous     | , ,             | , Ann,           | matches
numbers equal, names differ       | Adams, Ann, 123 | Brown, Bob, 123  | matches
names equal, numbers differ       | Adams, Ann, 123 | Adams, Ann, 456  | no
names equal, one number           | Adams, Ann, 123 | Adams, Ann,      | no
first names differ                | Adams, Ann,     | Adams, Amy,      | no
)")) {
        const Contact party = contactOf(row[1]);
        const Contact contact = contactOf(row[2]);
        const std::string older = contact.getSearchNumber();
        const bool matches = row[3] == "matches";
        using journal::contactMatchesForwardedCall;
        using journal::contactMatchesMissedCall;
        using journal::contactMatchesReceivedCall;
        SCOPED_TRACE(row[0]);
        EXPECT_EQ(contactMatchesMissedCall(itemFor<MissedCallItem>(party, older), contact, ""), matches);
        EXPECT_EQ(contactMatchesReceivedCall(itemFor<ReceivedCallItem>(party, older), contact), matches);
        EXPECT_EQ(contactMatchesForwardedCall(itemFor<ForwardedCallItem>(party, older), contact), matches);
    }
}

TEST(ContactMatching, FindsNoPartyInAnItemWithoutOccurrences) {
    const Contact anonymous;
    EXPECT_FALSE(journal::contactMatchesMissedCall(MissedCallItem(), anonymous, ""));
    EXPECT_FALSE(journal::contactMatchesReceivedCall(ReceivedCallItem(), anonymous));
    EXPECT_FALSE(journal::contactMatchesForwardedCall(ForwardedCallItem(), anonymous));
    EXPECT_FALSE(journal::contactMatchesDialledCall(DialledCallItem(), anonymous));
}

}  // namespace
}  // namespace journaltest
