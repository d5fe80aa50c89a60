// The rules of each list when a call is filed: duplicates, missed calls that are not logged, lines,
// viewed marks, dialled numbers, durations, and the missed entry that goes when its party is called back.

#include <string>

#include <gtest/gtest.h>

#include "tests/support/EntriesFixture.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

template <typename Item>
class Duplicates : public testing::Test {
protected:
    EntriesFixture fixture;
};
using ListsWithDuplicates = testing::Types<MissedCallItem, ReceivedCallItem>;
TYPED_TEST_SUITE(Duplicates, ListsWithDuplicates);

TYPED_TEST(Duplicates, AreIgnoredWhenNumberTimeAndPresentationCAreTheSame) {
    EntriesFixture& phone = this->fixture;
    auto first = phone.template callFrom<TypeParam>("4711", "Ann");
    first.presentationC = CallLogEntryEvent::ePresented;
    ASSERT_TRUE(phone.template file<TypeParam>(first));
    const Texts before = phone.listContents();
    phone.forget();

    auto again = phone.template callFrom<TypeParam>("4711", "another name");
    again.presentationC = CallLogEntryEvent::ePresented;
    again.presentationA = CallLogEntryEvent::ePresented;
    EXPECT_FALSE(phone.template file<TypeParam>(again));
    EXPECT_EQ(phone.listContents(), before);
    EXPECT_EQ(phone.written() + phone.heard(), "");

    auto otherPresentation = again;
    otherPresentation.presentationC = CallLogEntryEvent::eNotPresented;
    EXPECT_TRUE(phone.template file<TypeParam>(otherPresentation));
    auto otherTime = again;
    otherTime.timeSec += 1;
    EXPECT_TRUE(phone.template file<TypeParam>(otherTime));
    EXPECT_TRUE(phone.template file<TypeParam>(again)) << "only the newest call of the party counts";
}

class MissedCalls : public testing::Test {
protected:
    void missesOnLine(const std::string& number, const std::string& lineKey) {
        auto details = fixture.callFrom<MissedCallItem>(number);
        details.lineKey = lineKey;
        fixture.file<MissedCallItem>(details);
    }
    /// The newest call of every item: "4711 2026-11-21T05:22:05Z, ...", with the line where there is one, and
    /// how many there are where there are more.
    std::string missed() {
        std::string text;
        for (const MissedCallItem& item : fixture.items<MissedCallItem>()) {
            const auto& calls = item.getMissedCallInfoList();
            text += (text.empty() ? "" : ", ") + calls.front().getNumber() + item.getSurname();
            text += calls.front().getLineKey().empty() ? "" : " on " + calls.front().getLineKey();
            text += calls.size() == 1 ? "" : " x" + std::to_string(calls.size());
            text += item.getViewed() ? " viewed" : "";
        }
        return text;
    }

    EntriesFixture fixture;
};

TEST_F(MissedCalls, OfOnePartyAreOneItemForEachLineAndUnviewedAgainWithTheNext) {
    for (const char* line : {"", "A", "B", "A", ""}) {
        fixture.time.advance(1);
        missesOnLine("4711", line);
    }
    EXPECT_EQ(missed(), "4711 x2, 4711 on A x2, 4711 on B");
    fixture.missedCallUpdates.setMissedCallListAsViewed(
        {fixture.items<MissedCallItem>()[0].getEntryId(), fixture.items<MissedCallItem>()[1].getEntryId()});
    fixture.forget();
    fixture.time.advance(1);
    missesOnLine("4711", "A");
    EXPECT_EQ(missed(), "4711 on A x3, 4711 x2 viewed, 4711 on B");
    EXPECT_EQ(fixture.heard().rfind("missedCount(2); missed(", 0), 0U) << fixture.heard();
}

TEST_F(MissedCalls, LoseTheFirstEntryOfAPartyThatIsCalledBack) {
    fixture.files<MissedCallItem>("4711");
    fixture.files<MissedCallItem>("", "Bob");
    missesOnLine("4711", "A");
    fixture.forget();
    fixture.entries.deleteMissedEntryOf("4711", "Ann");
    EXPECT_EQ(missed(), "Bob, 4711") << "one entry at most";
    EXPECT_EQ(fixture.heard(), "missedCount(2); missed(-, -, 3)");
    EXPECT_EQ(fixture.written(), "delete MissedCalls 3");
    fixture.forget();
    fixture.entries.deleteMissedEntryOf("4799", "");
    fixture.entries.deleteMissedEntryOf("", "");
    EXPECT_EQ(fixture.heard() + fixture.written(), "");
    fixture.entries.deleteMissedEntryOf("", "Bob");
    EXPECT_EQ(missed(), "4711");
}

// *61 is an access code; Adams has the four numbers 1 to 4, Ann no surname.
class DialledCalls : public testing::Test {
protected:
    DialledCalls() {
        fixture.digits.featureAccessCodes = {"*61"};
        Contact adams;
        adams.setOffice("1");
        adams.setMobile("2");
        adams.setPrivate("3");
        adams.setOffice2("4");
        adams.setSurname("Adams");
        fixture.phonebook.contacts = {adams};
        fixture.phonebook.add("5", "Ann", "");
    }

    EntriesFixture fixture;
};

// Parties are dialled, remote, and connected, "-" for none; the outcome: number, name, substitute and
// connected number.
TEST_F(DialledCalls, ShowNumbersAndNamesByTheSoftware) {
    for (const auto& row : table(3, R"(
qorvex | 0-4711 4711 -  | 0-4711 sent, found by 4711
qorvex | 4711 - -       | 4711 sent, found by 4711
qorvex | 4711 4711 4712 | 4711 sent, found by 4711
qorvex | *61 4711 4712  | *61 sent for 4711 to 4712, found by 4711
qorvex | *61 4711 -     | *61 sent for 4711 to 4711, found by 4711
qorvex | *61 *61 -      | *61 sent, found by *61
qorvex | 1 - -          | 1 Adams, found by 1
qorvex | 3 - -          | 3 Adams, found by 3
qorvex | 4 - -          | 4 Adams, found by 4
qorvex | 5 - -          | 5 , found by 5
sip    | 0-4711 4711 -  | 4711 sent, found by 4711
sip    | *61 4711 4712  | 4711 sent, found by 4711
sip    | 0-1 2 -        | 2 Adams, found by 2
)")) {
        EntriesFixture& phone = fixture;
        phone.phoneIs(row[0] == "sip" ? softwaretypes::sip : softwaretypes::qorvex);
        phone.deletion.deleteAllCalls();
        const auto parties = split(row[1], ' ');
        const auto given = [&parties](std::size_t index) {
            return parties[index] == "-" ? std::string() : parties[index];
        };
        auto details = phone.callFrom<DialledCallItem>(given(1), "sent");
        details.dialledParty = given(0);
        details.connectedParty = given(2);
        phone.file<DialledCallItem>(details);
        const auto item = phone.items<DialledCallItem>().front();
        const auto info = item.getDialledCallInfoList().front();
        const std::string substitute = info.getSubstituteNumber();
        const std::string connected = info.getConnectedNumber();
        EXPECT_EQ(info.getNumber() + " " + item.getSurname() +
                      (substitute.empty() ? "" : " for " + substitute) +
                      (connected.empty() ? "" : " to " + connected) + ", found by " +
                      item.getJournalSeviceGroupBy(),
                  row[2])
            << row[0] << ": " << row[1];
        EXPECT_EQ(info.getFeatureAccessCode(), info.getNumber() == "*61");
    }
}

TEST_F(DialledCalls, GoWithoutPhonebookAndDigits) {
    fixture.platform.m_directoryService = nullptr;
    EXPECT_EQ(fixture.names.contactOf("1", "Ann A.").getSurname(), "Ann A.");
    fixture.platform.m_digitAnalysisService = nullptr;
    EXPECT_FALSE(fixture.names.isaFeatureAccessCode("*61"));
}

}  // namespace
}  // namespace journaltest
