#include <string>

#include <gtest/gtest.h>

#include "tests/entry-creation/EntryRig.h"
#include "tests/support/CapturedLog.h"

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
    EXPECT_TRUE(CapturedLog::contains("contactIsInPhonebook: searched[4711] found[surname=Adams;"));
    auto unknown = contact("4712");
    EXPECT_FALSE(names.contactIsInPhonebook(unknown));
    EXPECT_TRUE(CapturedLog::contains("contactIsInPhonebook: searched[4712] NOT found"));
    rig.collaborators.m_directoryService = nullptr;
    EXPECT_FALSE(names.contactIsInPhonebook(known));
    EXPECT_EQ(names.contactOf("4711", "Ann A.", "").getSurname(), "Ann A.");
}

TEST_F(PartyNames, TakeTheNumberOfTheMatchedKind) {
    const char* const numbers[] = {"", "4", "1", "2", "3", ""};
    for (int kind = 0; kind < 6; ++kind) {
        EXPECT_EQ(names.getPhoneNumberFromContact(withFourNumbers(kind)), numbers[kind]) << kind;
    }
    EXPECT_TRUE(CapturedLog::contains("getPhoneNumberFromContact: numberFromDb[4]"));
}

TEST_F(PartyNames, GoIntoAnItemAndTheLog) {
    MissedCallItem item;
    item.setSurname("old");
    names.populateItemNames(item, contact("", "Adams", "Ann"));
    EXPECT_EQ(item.getSurname() + item.getFirstname(), "AdamsAnn");
    EXPECT_TRUE(CapturedLog::contains("populateItemNames: surname[old]->[Adams] firstname[]->[Ann]"));
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
    const struct {
        const char* type;
        const char* surname;
        const char* firstname;
        bool inDialledList;
        const char* shown;
    } rows[] = {
        {softwareTypes::qorvex, "", "", false, "sent"},
        {softwareTypes::qorvex, "", "", true, ""},
        {softwareTypes::qorvex, "", "Ann", false, ""},
        {softwareTypes::qorvex, "Adams", "", false, "Adams"},
        {softwareTypes::sip, "", "", true, "sent"},
        {softwareTypes::sip, "", "Ann", false, "sent"},
        {softwareTypes::sip, "Adams", "", false, "Adams"},
    };
    for (const auto& row : rows) {
        rig.phoneIs(row.type);
        auto dialled = contact("4711", row.surname, row.firstname);
        names.populateRemoteContactSurname(dialled, "sent", row.inDialledList);
        EXPECT_EQ(dialled.getSurname(), row.shown)
            << row.type << ", " << row.surname << row.firstname << (row.inDialledList ? ", listed" : "");
    }
}

TEST_F(PartyNames, LeaveAPictureWhereTheContactHasNone) {
    MissedCallItem item;
    item.setPictureClip("old.png");
    names.populateDialledCallItemWithPicture(contact("4711"), item);
    EXPECT_EQ(item.getPictureClip(), "old.png");
}

TEST_F(PartyNames, PutThePhonebooksSpellingOfANumberInPlaceOfTheDialledOne) {
    // The phonebook knows the party by another of its numbers than the one that it shows for the matched kind.
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
    EXPECT_EQ(found.getSearchNumber(), "2") << "the remote party comes first";
    EXPECT_EQ(info.getNumber(), "dialled");
    EXPECT_TRUE(CapturedLog::contains("populateDialledCallInfo: dialledParty[dialled] remoteParty[2]"));
}

TEST_F(PartyNames, AskTheNumberServiceForAccessCodes) {
    rig.digits.addFeatureAccessCode("*61");
    EXPECT_TRUE(names.isaFeatureAccessCode("*61"));
    EXPECT_FALSE(names.isaFeatureAccessCode("4711"));
    rig.collaborators.m_digitAnalysisService = nullptr;
    EXPECT_FALSE(names.isaFeatureAccessCode("*61"));
}

TEST_F(PartyNames, FillTheNumbersOfADialledCall) {
    rig.digits.addFeatureAccessCode("*61");
    const struct {
        const char* type;
        const char* dialled;
        const char* connected;
        const char* number;
        const char* substitute;
        bool accessCode;
    } rows[] = {
        {softwareTypes::qorvex, "4711", "4712", "4711", "", false},
        {softwareTypes::qorvex, "*61", "4712", "*61", "4712", true},
        {softwareTypes::qorvex, "*61", "*61", "*61", "", true},
        {softwareTypes::sip, "*61", "4712", "4712", "", false},
    };
    for (const auto& row : rows) {
        rig.phoneIs(row.type);
        DialledCallItem::DialledCallInfo info;
        names.populateDialledCallInfoNumber(info, row.dialled, row.connected);
        EXPECT_EQ(info.getNumber(), row.number);
        EXPECT_EQ(info.getSubstituteNumber(), row.substitute);
        EXPECT_EQ(info.getFeatureAccessCode(), row.accessCode);
    }
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
