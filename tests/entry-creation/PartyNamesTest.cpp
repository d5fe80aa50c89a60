#include <string>

#include <gtest/gtest.h>

#include "tests/entry-creation/EntryRig.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

class PartyNames : public testing::Test {
protected:
    static Contact contact(const std::string& number, const std::string& surname = {},
                           const std::string& firstname = {}) {
        Contact made;
        made.setSearchNumber(number);
        made.setSurname(surname);
        made.setFirstname(firstname);
        return made;
    }
    static Contact withFourNumbers(int matchedKind) {
        Contact made;
        made.setOffice("1");
        made.setMobile("2");
        made.setPrivate("3");
        made.setOffice2("4");
        made.setMatchedKind(matchedKind);
        return made;
    }

    EntryRig rig;
    const journal::PartyNames& names = rig.names;
};

TEST_F(PartyNames, LookThePartyUpAndSayWhetherItIsKnown) {
    rig.phonebook.add("4711", "Ann", "Adams");
    auto known = contact("4711");
    EXPECT_TRUE(names.contactIsInPhonebook(known));
    EXPECT_EQ(known.getSurname(), "Adams");
    auto unknown = contact("4712");
    EXPECT_FALSE(names.contactIsInPhonebook(unknown));
    rig.collaborators.m_directoryService = nullptr;
    EXPECT_FALSE(names.contactIsInPhonebook(known));
    EXPECT_EQ(names.contactOf("4711", "Ann A.", "").getSurname(), "Ann A.");
}

TEST_F(PartyNames, TakeTheNumberOfTheMatchedKind) {
    const char* const numbers[] = {"", "4", "1", "2", "3", ""};
    for (int kind = 0; kind < 6; ++kind) {
        EXPECT_EQ(names.getPhoneNumberFromContact(withFourNumbers(kind)), numbers[kind]) << kind;
    }
}

TEST_F(PartyNames, OfAContactWithoutNumberDependOnTheSoftware) {
    for (const char* type : {softwareTypes::sip, softwareTypes::qorvex}) {
        rig.phoneIs(type);
        auto anonymous = contact("", "before");
        names.populateContactSurname(anonymous, "remote", "other");
        EXPECT_EQ(anonymous.getSurname(), type == softwareTypes::sip ? "remote" : "other");
        auto numbered = contact("4711", "before");
        names.populateContactSurname(numbered, "remote", "other");
        EXPECT_EQ(numbered.getSurname(), "before");
    }
}

TEST_F(PartyNames, OfADialledPartyComeFromTheSwitchWhereNobodyKnowsBetter) {
    for (const auto& row : table(4, R"(
, new      | sent  | sent  | nobody knows it
, listed   |       | sent  | an entry keeps its names
,Ann new   |       | sent  | a first name is known
Adams, new | Adams | Adams | a surname is known
)")) {
        for (const char* type : {softwareTypes::qorvex, softwareTypes::sip}) {
            rig.phoneIs(type);
            const auto words = split(row[0], ' ');
            const auto comma = words[0].find(',');
            auto dialled = contact("4711", words[0].substr(0, comma), words[0].substr(comma + 1));
            names.populateRemoteContactSurname(dialled, "sent", words[1] == "listed");
            EXPECT_EQ(dialled.getSurname(), row[type == softwareTypes::sip ? 2 : 1])
                << row[3] << ", " << type;
        }
    }
}

TEST_F(PartyNames, LeaveAPictureWhereTheContactHasNone) {
    MissedCallItem item;
    item.setPictureClip("old.png");
    names.populateDialledCallItemWithPicture(contact("4711"), item);
    EXPECT_EQ(item.getPictureClip(), "old.png");
}

TEST_F(PartyNames, FindADialledPartyByAnyOfItsNumbersAndTheRemotePartyFirst) {
    auto known = withFourNumbers(0);
    known.setSurname("Adams");
    rig.phonebook.add(known);
    for (const char* number : {"1", "2", "3", "4"}) {
        Contact found;
        DialledCallItem::DialledCallInfo info;
        names.populateDialledCallInfo(found, info, number, "");
        EXPECT_EQ(info.getNumber(), number);
        EXPECT_EQ(found.getSurname(), "Adams");
        EXPECT_EQ(found.getSearchNumber(), number);
    }
    Contact found;
    DialledCallItem::DialledCallInfo info;
    names.populateDialledCallInfo(found, info, "dialled", "2");
    EXPECT_EQ(found.getSearchNumber(), "2");
    EXPECT_EQ(info.getNumber(), "dialled");
}

TEST_F(PartyNames, FillTheNumbersOfADialledCall) {
    rig.digits.addFeatureAccessCode("*61");
    for (const auto& row : table(4, R"(
qorvex | 4711 4712 | 4711 |
qorvex | *61 4712  | *61  | code, substitute 4712
qorvex | *61 *61   | *61  | code, substitute
sip    | *61 4712  | 4712 |
)")) {
        rig.phoneIs(row[0] == "sip" ? softwareTypes::sip : softwareTypes::qorvex);
        const auto parties = split(row[1], ' ');
        DialledCallItem::DialledCallInfo info;
        names.populateDialledCallInfoNumber(info, parties[0], parties[1]);
        EXPECT_EQ(info.getNumber(), row[2]) << row[0];
        const std::string substitute = info.getSubstituteNumber();
        EXPECT_EQ(info.getFeatureAccessCode()
                      ? "code, substitute" + (substitute.empty() ? "" : " " + substitute)
                      : substitute,
                  row[3])
            << row[0];
    }
    rig.collaborators.m_digitAnalysisService = nullptr;
    EXPECT_FALSE(names.isaFeatureAccessCode("*61"));
}

TEST_F(PartyNames, LeaveTimeAndDurationOfADialledCallToWhatIsKnown) {
    DialledCallItem::DialledCallInfo info;
    names.populateDialledCallInfoTimeAndDate(info, "as sent", -1, -1, 50);
    EXPECT_EQ(info.getTimeAndDate(), "as sent");
    EXPECT_EQ(info.getDuration(), "");
    names.populateDialledCallInfoTimeAndDate(info, "as sent", 0, 0, 50);
    EXPECT_EQ(info.getTimeAndDate(), "1970-01-01T00:00:00Z");
    EXPECT_EQ(info.getDuration(), "00:50");
}

}  // namespace
}  // namespace journaltest
