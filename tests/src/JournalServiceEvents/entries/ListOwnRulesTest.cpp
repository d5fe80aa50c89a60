// What each list has of its own when a call is filed: duplicates, missed calls that are not logged, lines,
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
    EntriesFixture rig;
};
using ListsWithDuplicates = testing::Types<MissedCallItem, ReceivedCallItem>;
TYPED_TEST_SUITE(Duplicates, ListsWithDuplicates);

TYPED_TEST(Duplicates, AreIgnoredWhenNumberTimeAndPresentationCAreTheSame) {
    EntriesFixture& phone = this->rig;
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
        auto details = rig.callFrom<MissedCallItem>(number);
        details.lineKey = lineKey;
        rig.file<MissedCallItem>(details);
    }
    /// The newest call of every item: "4711 2026-11-21T05:22:05Z, ...", with the line where there is one, and
    /// how many there are where there are more.
    std::string missed() {
        std::string text;
        for (const MissedCallItem& item : rig.items<MissedCallItem>()) {
            const auto& calls = item.getMissedCallInfoList();
            text += (text.empty() ? "" : ", ") + calls.front().getNumber() + item.getSurname();
            text += calls.front().getLineKey().empty() ? "" : " on " + calls.front().getLineKey();
            text += calls.size() == 1 ? "" : " x" + std::to_string(calls.size());
            text += item.getViewed() ? " viewed" : "";
        }
        return text;
    }

    EntriesFixture rig;
};

TEST_F(MissedCalls, TakeTheTimeThatTheSwitchGaveElseTheTimeNow) {
    for (const std::string given : {"2026-01-02T03:04:05Z", ""}) {
        auto details = rig.callFrom<MissedCallItem>("1");
        details.timeSec = -1;
        details.timeText = given;
        rig.file<MissedCallItem>(details);
        EXPECT_EQ(rig.items<MissedCallItem>().front().getMissedCallInfoList().front().getTimeAndDate(),
                  given.empty() ? "2026-11-21T05:22:05Z" : given);
    }
}

TEST_F(MissedCalls, OfOnePartyAreOneItemForEachLineAndUnviewedAgainWithTheNext) {
    for (const char* line : {"", "A", "B", "A", ""}) {
        rig.time.advance(1);
        missesOnLine("4711", line);
    }
    EXPECT_EQ(missed(), "4711 x2, 4711 on A x2, 4711 on B");
    rig.missedCallUpdates.setMissedCallListAsViewed(
        {rig.items<MissedCallItem>()[0].getEntryId(), rig.items<MissedCallItem>()[1].getEntryId()});
    rig.forget();
    rig.time.advance(1);
    missesOnLine("4711", "A");
    EXPECT_EQ(missed(), "4711 on A x3, 4711 x2 viewed, 4711 on B");
    EXPECT_EQ(rig.heard().rfind("missedCount(2); missed(", 0), 0U) << rig.heard();
}

TEST_F(MissedCalls, LoseTheFirstEntryOfAPartyThatIsCalledBack) {
    rig.files<MissedCallItem>("4711");
    rig.files<MissedCallItem>("", "Bob");
    missesOnLine("4711", "A");
    rig.forget();
    rig.entries.deleteMissedEntryOf("4711", "whoever");
    EXPECT_EQ(missed(), "Bob, 4711") << "one entry at most";
    EXPECT_EQ(rig.heard(), "missedCount(2); missed(-, -, 3)");
    EXPECT_EQ(rig.written(), "delete MissedCalls 3");
    rig.forget();
    rig.entries.deleteMissedEntryOf("4799", "");
    rig.entries.deleteMissedEntryOf("", "");
    EXPECT_EQ(rig.heard() + rig.written(), "");
    rig.entries.deleteMissedEntryOf("", "Bob");
    EXPECT_EQ(missed(), "4711");
}

TEST(ReceivedCalls, KeepConnectedPartyAndRedirection) {
    EntriesFixture rig;
    auto received = rig.callFrom<ReceivedCallItem>("4711");
    received.connectedParty = "4720";
    received.redirectingParty = "4730";
    received.redirectingPartyName = "Carol";
    rig.file<ReceivedCallItem>(received);
    const auto info = rig.items<ReceivedCallItem>().front().getReceivedCallInfoList().front();
    EXPECT_EQ(
        info.getConnectedNumber() + ", " + info.getRedirectingNumber() + " " + info.getRedirectingName(),
        "4720, 4730 Carol");
}

// *61 is an access code; Adams has the four numbers 1 to 4, Ann no surname.
class DialledCalls : public testing::Test {
protected:
    DialledCalls() {
        rig.digits.featureAccessCodes = {"*61"};
        Contact adams;
        adams.setOffice("1");
        adams.setMobile("2");
        adams.setPrivate("3");
        adams.setOffice2("4");
        adams.setSurname("Adams");
        rig.phonebook.contacts = {adams};
        rig.phonebook.add("5", "Ann", "");
    }

    EntriesFixture rig;
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
qorvex | 2 - -          | 2 Adams, found by 2
qorvex | 3 - -          | 3 Adams, found by 3
qorvex | 4 - -          | 4 Adams, found by 4
qorvex | 0-1 2 -        | 0-1 Adams, found by 2
qorvex | 5 - -          | 5 , found by 5
sip    | 5 5 -          | 5 sent, found by 5
sip    | 0-4711 4711 -  | 4711 sent, found by 4711
sip    | *61 4711 4712  | 4711 sent, found by 4711
sip    | 0-1 2 -        | 2 Adams, found by 2
)")) {
        EntriesFixture& phone = rig;
        phone.phoneIs(row[0] == "sip" ? softwareTypes::sip : softwareTypes::qorvex);
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

TEST_F(DialledCalls, ReportedTwiceByOneCallAreIgnored) {
    auto details = rig.callFrom<DialledCallItem>("4711");
    EXPECT_TRUE(rig.file<DialledCallItem>(details));
    EXPECT_FALSE(rig.file<DialledCallItem>(details));
    details.callId = "another";
    EXPECT_TRUE(rig.file<DialledCallItem>(details)) << "the same number at the same time, but another call";
}

TEST_F(DialledCalls, GoWithoutPhonebookAndDigits) {
    rig.platform.m_directoryService = nullptr;
    EXPECT_EQ(rig.names.contactOf("1", "Ann A.").getSurname(), "Ann A.");
    rig.platform.m_digitAnalysisService = nullptr;
    EXPECT_FALSE(rig.names.isaFeatureAccessCode("*61"));
}

}  // namespace
}  // namespace journaltest
