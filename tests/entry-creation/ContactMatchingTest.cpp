#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "src/JournalServiceEvents/ContactMatching.h"
#include "tests/journal-lists/JournalRig.h"

namespace journaltest {
namespace {

struct Row {
    const char* name;
    // the item: its names, and its newest occurrence's number
    std::string surname, firstname, number;
    // the contact
    std::string contactSurname, contactFirstname, contactNumber;
    bool matches;
};

std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << row.name;
}

class ContactMatching : public testing::TestWithParam<Row> {
protected:
    static Contact contact(const std::string& surname, const std::string& firstname,
                           const std::string& number) {
        Contact made;
        made.setSurname(surname);
        made.setFirstname(firstname);
        made.setSearchNumber(number);
        return made;
    }
    static Contact contactOfRow() {
        return contact(GetParam().contactSurname, GetParam().contactFirstname, GetParam().contactNumber);
    }
    /// The row's item, with an older occurrence that must not matter.
    template <typename Item>
    static Item itemOfRow() {
        auto item = itemOf<Item>("e1", "1", {{GetParam().number, "t2"}, {GetParam().contactNumber, "t1"}});
        item.setSurname(GetParam().surname);
        item.setFirstname(GetParam().firstname);
        return item;
    }
};

TEST_P(ContactMatching, LooksAtTheNewestOccurrenceInEveryList) {
    const Contact contact = contactOfRow();
    EXPECT_EQ(journal::contactMatchesMissedCall(itemOfRow<MissedCallItem>(), contact, ""),
              GetParam().matches);
    EXPECT_EQ(journal::contactMatchesReceivedCall(itemOfRow<ReceivedCallItem>(), contact),
              GetParam().matches);
    EXPECT_EQ(journal::contactMatchesForwardedCall(itemOfRow<ForwardedCallItem>(), contact),
              GetParam().matches);
}

const Row kRows[] = {
    // the contact has no surname, but a number
    {"NumbersEqual", "Adams", "Ann", "123", "", "", "123", true},
    {"NumbersDiffer", "", "", "123", "", "", "456", false},
    {"NumberIsPartOfTheOther", "", "", "1234", "", "", "123", false},
    {"NumberAgainstAnonymous", "", "", "", "", "", "123", false},
    // neither
    {"TwoAnonymous", "", "", "", "", "", "", true},
    {"AnonymousAgainstNumber", "", "", "123", "", "", "", false},
    {"AnonymousAgainstSurname", "Adams", "", "", "", "", "", false},
    {"AnonymousAgainstFirstname", "", "Ann", "", "", "", "", false},
    {"FirstnameAloneCountsAsAnonymous", "", "", "", "", "Ann", "", true},
    // both
    {"NumbersEqualNamesDiffer", "Adams", "Ann", "123", "Brown", "Bob", "123", true},
    {"NamesEqualNumbersDiffer", "Adams", "Ann", "123", "Adams", "Ann", "456", false},
    // a surname, but no number
    {"NamesEqualNoNumbers", "Adams", "Ann", "", "Adams", "Ann", "", true},
    {"NamesEqualOneNumber", "Adams", "Ann", "123", "Adams", "Ann", "", false},
    {"FirstnamesDiffer", "Adams", "Ann", "", "Adams", "Amy", "", false},
    {"SurnamesDifferInCase", "Adams", "Ann", "", "adams", "Ann", "", false},
};
INSTANTIATE_TEST_SUITE_P(Table, ContactMatching, testing::ValuesIn(kRows), kRowName);

TEST_F(ContactMatching, KeepsTheLinesOfMissedCallsApart) {
    const auto onLine = [](const std::string& lineKey) {
        return itemOf<MissedCallItem>("e1", "1", {{"123", "t2", lineKey}, {"123", "t1", "other"}});
    };
    const Contact caller = contact("", "", "123");
    const struct {
        std::string stored, called;
        bool matches;
    } lines[] = {{"", "", true}, {"1", "1", true}, {"1", "2", false}, {"1", "", false}, {"", "1", false}};
    for (const auto& line : lines) {
        EXPECT_EQ(journal::contactMatchesMissedCall(onLine(line.stored), caller, line.called), line.matches)
            << "'" << line.stored << "' and '" << line.called << "'";
    }
    EXPECT_FALSE(journal::contactMatchesMissedCall(onLine("1"), contact("", "", "456"), "1"));
}

TEST_F(ContactMatching, FindsNobodyInAnItemWithoutOccurrences) {
    const Contact anonymous;
    EXPECT_FALSE(journal::contactMatchesMissedCall(MissedCallItem(), anonymous, ""));
    EXPECT_FALSE(journal::contactMatchesReceivedCall(ReceivedCallItem(), anonymous));
    EXPECT_FALSE(journal::contactMatchesForwardedCall(ForwardedCallItem(), anonymous));
    EXPECT_FALSE(journal::contactMatchesDialledCall(DialledCallItem(), anonymous));
}

TEST_F(ContactMatching, GathersDialledCallsByTheNumberThatWasLookedUp) {
    auto dialled = itemOf<DialledCallItem>("e1", "1", {{"456", "t1"}});
    dialled.setJournalSeviceGroupBy("123");
    EXPECT_TRUE(journal::contactMatchesDialledCall(dialled, contact("Adams", "", "123")));
    EXPECT_FALSE(journal::contactMatchesDialledCall(dialled, contact("", "", "456")));
}

TEST_F(ContactMatching, FindsCallBacksByNumber) {
    EXPECT_TRUE(journal::contactMatchesCallBack(callBackOf("c1", "123", ""), contact("Adams", "", "123")));
    EXPECT_FALSE(journal::contactMatchesCallBack(callBackOf("c1", "123", ""), contact("Adams", "", "456")));
}

TEST_F(ContactMatching, TakesAnEmptyFirstPartyForTheSameAsAnything) {
    EXPECT_FALSE(journal::partiesAreNotTheSame("", "123"));
    EXPECT_FALSE(journal::partiesAreNotTheSame("123", "123"));
    EXPECT_TRUE(journal::partiesAreNotTheSame("123", ""));
    EXPECT_TRUE(journal::partiesAreNotTheSame("123", "456"));
}

}  // namespace
}  // namespace journaltest
