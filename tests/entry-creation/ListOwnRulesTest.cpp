// What each list has of its own when a call is filed: duplicates, missed calls that are not logged, lines, viewed marks,
// dialled numbers, durations, and the missed entry that goes when its party is called back.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/entry-creation/EntryRig.h"

namespace journaltest {
namespace {

class MissedCalls : public testing::Test {
protected:
    [[nodiscard]] std::vector<MissedCallItem> missed() { return rig.items<MissedCallItem>(); }
    void missesOnLine(const std::string& number, const std::string& lineKey) {
        auto details = rig.callWith<journal::MissedEntryDetails>({number});
        details.lineKey = lineKey;
        rig.file(details);
    }

    EntryRig rig;
};

template <typename Item>
class Duplicates : public testing::Test {
protected:
    EntryRig rig;
};
using ListsWithDuplicates = testing::Types<MissedCallItem, ReceivedCallItem>;
TYPED_TEST_SUITE(Duplicates, ListsWithDuplicates);

TYPED_TEST(Duplicates, AreIgnoredWhenNumberTimeAndPresentationCAreTheSame) {
    using Details = typename DetailsFor<TypeParam>::Type;
    EntryRig& phone = this->rig;
    auto first = phone.template callWith<Details>({"4711", "Ann"});
    first.presentationC = CallLogEntryEvent::ePresented;
    ASSERT_TRUE(phone.file(first));
    const Texts before = phone.listContents();
    phone.forget();

    auto again = phone.template callWith<Details>({"4711", "another name"});
    again.presentationC = CallLogEntryEvent::ePresented;
    again.presentationA = CallLogEntryEvent::ePresented;
    EXPECT_FALSE(phone.file(again));
    EXPECT_EQ(phone.listContents(), before);
    EXPECT_EQ(phone.written(), "");
    EXPECT_EQ(phone.heard(), "");

    auto otherPresentation = again;
    otherPresentation.presentationC = CallLogEntryEvent::eNotPresented;
    EXPECT_TRUE(phone.file(otherPresentation));
    auto otherTime = again;
    otherTime.timeSec += 1;
    EXPECT_TRUE(phone.file(otherTime));
    EXPECT_TRUE(phone.file(again)) << "only the newest call of the party counts";
    EXPECT_EQ(phone.template items<TypeParam>().size(), 1U);
}

TEST_F(MissedCalls, TakeTheTimeThatTheSwitchGaveElseTheTimeNow) {
    auto details = rig.callWith<journal::MissedEntryDetails>({"1"});
    details.timeSec = -1;
    details.timeText = "2026-01-02T03:04:05Z";
    rig.file(details);
    EXPECT_EQ(missed().front().getMissedCallInfoList().front().getTimeAndDate(), "2026-01-02T03:04:05Z");
    details.timeText.clear();
    rig.time.advance(1);
    rig.file(details);
    EXPECT_EQ(missed().front().getMissedCallInfoList().front().getTimeAndDate(), "2026-11-21T05:22:06Z");
}

TEST_F(MissedCalls, ThatSomebodyElseTookAreLoggedOnlyWithMissedLogging) {
    auto details = rig.callWith<journal::MissedEntryDetails>({"4711"});
    details.completedElsewhere = true;
    rig.settings.change([](journal::SettingValues& values) { values.m_missedLogging = false; });
    EXPECT_FALSE(rig.file(details));
    EXPECT_TRUE(rig.misses({"4712"})) << "a call that nobody took is always logged";
    rig.settings.change([](journal::SettingValues& values) { values.m_missedLogging = true; });
    EXPECT_TRUE(rig.file(details));
    EXPECT_TRUE(missed().front().getMissedCallInfoList().front().getCompletedElsewhere());
}

TEST_F(MissedCalls, OfOnePartyAreOneItemForEachLine) {
    for (const char* line : {"", "line 1", "line 2", "line 1", ""}) {
        rig.time.advance(1);
        missesOnLine("4711", line);
    }
    const auto items = missed();
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[0].getMissedCallInfoList().size(), 2U);
    EXPECT_EQ(items[1].getMissedCallInfoList().size(), 2U);
    EXPECT_EQ(items[2].getMissedCallInfoList().front().getLineKey(), "line 2");
}

TEST_F(MissedCalls, MakeAViewedItemUnviewedAgain) {
    rig.misses({"4711"});
    rig.misses({"4712"});
    rig.lists.setMissedCallListAsViewed({missed()[0].getEntryId(), missed()[1].getEntryId()});
    rig.forget();
    rig.time.advance(1);
    rig.misses({"4711"});
    EXPECT_FALSE(missed()[0].getViewed());
    EXPECT_TRUE(missed()[1].getViewed());
    EXPECT_EQ(rig.heard().rfind("missedCount(1); missed(", 0), 0U) << rig.heard();
}

TEST_F(MissedCalls, LoseTheFirstEntryOfAPartyThatIsCalledBack) {
    rig.misses({"4711"});
    rig.misses({"", "Bob"});
    missesOnLine("4711", "line 1");
    rig.forget();

    rig.entries.deleteMissedEntryOf("4711", "whoever");
    EXPECT_EQ(missed().size(), 2U) << "one entry at most";
    EXPECT_EQ(missed().front().getSurname(), "Bob");
    EXPECT_EQ(rig.heard(), "missedCount(2); missed(-, -, 3)");
    EXPECT_EQ(rig.written(), "delete MissedCalls 3");

    rig.entries.deleteMissedEntryOf("", "Bob");
    EXPECT_EQ(missed().size(), 1U);
    rig.forget();
    rig.entries.deleteMissedEntryOf("4799", "");
    rig.entries.deleteMissedEntryOf("", "");
    EXPECT_EQ(missed().size(), 1U);
    EXPECT_EQ(rig.heard(), "");
    EXPECT_EQ(rig.written(), "");
}

TEST(ReceivedAndForwardedCalls, KeepDurationConnectedPartyAndRedirection) {
    EntryRig rig;
    auto received = rig.callWith<journal::ReceivedEntryDetails>({"4711"});
    received.startSec = received.timeSec;
    received.endSec = received.timeSec + 61;
    received.connectedParty = "4720";
    received.transferType = TransferNumber::eTransferred;
    received.redirectingParty = "4730";
    received.redirectingPartyName = "Carol";
    rig.file(received);
    const auto answered = rig.items<ReceivedCallItem>().front().getReceivedCallInfoList().front();
    EXPECT_EQ(answered.getDuration(), "01:01");
    EXPECT_EQ(answered.getConnectedNumber(), "4720");
    EXPECT_EQ(answered.getTransferNumberType(), 1);
    EXPECT_EQ(answered.getRedirectingNumber() + " " + answered.getRedirectingName(), "4730 Carol");

    auto forwarded = rig.callWith<journal::ForwardedEntryDetails>({"4711"});
    forwarded.connectedParty = "4720";
    rig.file(forwarded);
    const auto sentOn = rig.items<ForwardedCallItem>().front().getForwardedCallInfoList().front();
    EXPECT_EQ(sentOn.getDuration(), "00:00");
    EXPECT_EQ(sentOn.getForwardedToNumber(), "4720");
}

class DialledCalls : public testing::Test {
protected:
    void dials(const std::string& dialled, const std::string& remote, const std::string& connected = {}) {
        rig.time.advance(1);
        auto details = rig.callWith<journal::DialledEntryDetails>({remote});
        details.dialledParty = dialled;
        details.connectedParty = connected;
        rig.file(details);
    }
    [[nodiscard]] DialledCallItem newest() { return rig.items<DialledCallItem>().front(); }
    [[nodiscard]] DialledCallItem::DialledCallInfo newestCall() {
        return newest().getDialledCallInfoList().front();
    }

    EntryRig rig;
};

TEST_F(DialledCalls, AreGatheredByTheNumberThatWasLookedUp) {
    dials("0-4711", "4711");
    EXPECT_EQ(newest().getJournalSeviceGroupBy(), "4711");
    EXPECT_EQ(newestCall().getNumber(), "0-4711");
    dials("1-4711", "4711");
    dials("4711", "");
    EXPECT_EQ(rig.items<DialledCallItem>().size(), 1U);
    dials("4711", "4712");
    EXPECT_EQ(rig.items<DialledCallItem>().size(), 2U);
    rig.phoneIs(softwareTypes::sip);
    dials("0-4711", "4711");
    EXPECT_EQ(newestCall().getNumber(), "4711") << "a SIP phone shows the remote number";
}

TEST_F(DialledCalls, ByAccessCodeKeepWhoWasReached) {
    rig.digits.addFeatureAccessCode("*61");
    dials("*61", "4711", "4712");
    EXPECT_TRUE(newestCall().getFeatureAccessCode());
    EXPECT_EQ(newestCall().getNumber(), "*61");
    EXPECT_EQ(newestCall().getSubstituteNumber(), "4711");
    EXPECT_EQ(newestCall().getConnectedNumber(), "4712");
    dials("*61", "4711");
    EXPECT_EQ(newestCall().getConnectedNumber(), "4711") << "the substitute stands in";
    dials("4711", "4711", "4712");
    EXPECT_EQ(newestCall().getConnectedNumber(), "");
}

TEST_F(DialledCalls, ReportedTwiceByOneCallAreIgnored) {
    auto details = rig.callWith<journal::DialledEntryDetails>({"4711"});
    EXPECT_TRUE(rig.file(details));
    EXPECT_FALSE(rig.file(details));
    details.callId = "another";
    EXPECT_TRUE(rig.file(details)) << "the same number at the same time, but another call";
}

TEST_F(DialledCalls, HaveADurationOnlyOnceTheyWereConnected) {
    auto details = rig.callWith<journal::DialledEntryDetails>({"4711"});
    rig.file(details);
    EXPECT_EQ(newestCall().getDuration(), "");
    details = rig.callWith<journal::DialledEntryDetails>({"4712"});
    details.startSec = 100;
    details.endSec = 175;
    rig.file(details);
    EXPECT_EQ(newestCall().getDuration(), "01:15");
}

}  // namespace
}  // namespace journaltest
