#include <deque>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/DataAnswer.h"
#include "platform/journal-library/JournalServiceHelper.h"
#include "platform/journal-library/XmlLimits.h"
#include "tests/support/CapturedLog.h"

namespace {

constexpr const char* kMissed = CallListDatabaseAdapterHelper::DAS_CALLLOGMISSEDCALLS;

MissedCallItem itemOf(std::size_t nameBytes) {
    MissedCallItem item;
    item.setSurname(std::string(nameBytes, 'x'));
    return item;
}

TEST(ListDocument, StopsAtItsBoundAndStaysReadable) {
    journalxml::ListDocument document(kMissed, 1000);
    std::size_t added = 0;
    while (document.add(itemOf(200))) {
        ++added;
    }
    EXPECT_GT(added, 1U);
    EXPECT_EQ(document.size(), added);
    EXPECT_LE(document.text().size(), 1000U);
    EXPECT_FALSE(document.add(itemOf(1))) << "a later, smaller entry must not come in";

    std::deque<MissedCallItem> read;
    ASSERT_TRUE(JournalServiceHelper::parseXMLMissedCallList(document.text(), read));
    EXPECT_EQ(read.size(), added);
}

TEST(ListDocument, StopsBeforeItHoldsMoreElementsThanReadersTake) {
    MissedCallItem item;
    item.setMissedCallInfoList(std::list<MissedCallItem::MissedCallInfo>(100000));
    journalxml::ListDocument document(kMissed);
    while (document.add(item)) {}
    EXPECT_EQ(document.size(), 4U);
    std::deque<MissedCallItem> read;
    EXPECT_TRUE(JournalServiceHelper::parseXMLMissedCallList(document.text(), read));
    EXPECT_EQ(read.size(), 4U);
}

TEST(ListDocument, HidesTheFailureMarkerInNames) {
    MissedCallItem item;
    item.setSurname("failure-failure");
    journalxml::ListDocument document(kMissed);
    ASSERT_TRUE(document.add(item));
    EXPECT_EQ(document.text().find("failure"), std::string::npos);
    std::deque<MissedCallItem> read;
    ASSERT_TRUE(JournalServiceHelper::parseXMLMissedCallList(document.text(), read));
    EXPECT_EQ(read.front().getSurname(), "failure-failure");
}

TEST(ListAnswer, IsCutBehindTheNewestEntriesWithAWarning) {
    const std::size_t third = journalxml::kMaxDocumentBytes / 3;
    const std::string answer =
        JournalServiceHelper::respGetMissedCallList({itemOf(third), itemOf(third), itemOf(third)});
    std::deque<MissedCallItem> read;
    ASSERT_TRUE(JournalServiceHelper::parseXMLMissedCallList(answer, read));
    EXPECT_EQ(read.size(), 2U);
    EXPECT_TRUE(journaltest::CapturedLog::contains("only the newest 2 of 3 entries are sent"));
}

TEST(ListParser, AppendsWhatItReadsAndPassesOverOtherKinds) {
    std::deque<MissedCallItem> list{MissedCallItem("held", "", "", {}, false)};
    ASSERT_TRUE(JournalServiceHelper::parseXMLMissedCallList(
        "<Schema><ENTRY><Type>dialled</Type><EntryId>1</EntryId></ENTRY>"
        "<ENTRY><Type>missed</Type><EntryId>2</EntryId></ENTRY><ENTRY><EntryId>3</EntryId></ENTRY>"
        "<Other><ENTRY><EntryId>4</EntryId></ENTRY></Other></Schema>",
        list));
    std::vector<std::string> entryIds;
    for (const auto& item : list) {
        entryIds.push_back(item.getEntryId());
    }
    EXPECT_EQ(entryIds, (std::vector<std::string>{"held", "2", "3"}));
}

TEST(ListParser, LeavesTheListAloneWhenTheDocumentIsBroken) {
    std::deque<MissedCallItem> list{MissedCallItem("held", "", "", {}, false)};
    EXPECT_FALSE(JournalServiceHelper::parseXMLMissedCallList("<Schema><ENTRY/>", list));
    EXPECT_FALSE(JournalServiceHelper::parseXMLMissedCallList("failed", list));
    EXPECT_EQ(list.size(), 1U);
}

TEST(ItemParser, GivesDefaultsForWhatIsMissingOrSenseless) {
    MissedCallItem item("old", "old", "old", {MissedCallItem::MissedCallInfo()}, true);
    ASSERT_TRUE(JournalServiceHelper::parseXMLMissedCallItem(
        "<m><ENTRY><EntryId>new</EntryId><Viewed>perhaps</Viewed><Unknown>x</Unknown>"
        "<Occurrence><LogTarget>99999999999</LogTarget><PresentationA>1x</PresentationA>"
        "<PresentationC>-7</PresentationC><CompletedElsewhere>1</CompletedElsewhere></Occurrence></ENTRY></"
        "m>",
        item));
    MissedCallItem::MissedCallInfo info;
    info.setPresentationC(-7);
    info.setCompletedElsewhere(true);
    EXPECT_TRUE(item.sameContent(MissedCallItem("new", "", "", {info}, false)));
}

TEST(ItemParser, NeedsAnEntryOfItsKind) {
    MissedCallItem item("held", "", "", {}, false);
    EXPECT_FALSE(JournalServiceHelper::parseXMLMissedCallItem("<m><Method>1</Method></m>", item));
    EXPECT_FALSE(
        JournalServiceHelper::parseXMLMissedCallItem("<m><ENTRY><Type>received</Type></ENTRY></m>", item));
    EXPECT_EQ(item.getEntryId(), "held");
}

TEST(MixedParser, PassesOverEntriesThatDoNotSayWhatTheyAre) {
    std::deque<MissedCallItem> missed;
    std::deque<DialledCallItem> dialled;
    std::deque<ReceivedCallItem> received;
    std::deque<ForwardedCallItem> forwarded;
    std::vector<Contact> contacts;
    ASSERT_TRUE(JournalServiceHelper::parseXMLdata(
        "<Schema><ENTRY><EntryId>1</EntryId></ENTRY><ENTRY><Type>received</Type></ENTRY></Schema>", missed,
        dialled, received, forwarded, contacts));
    EXPECT_TRUE(missed.empty() && dialled.empty() && forwarded.empty() && contacts.empty());
    EXPECT_EQ(received.size(), 1U);
    EXPECT_FALSE(
        JournalServiceHelper::parseXMLdata("failure", missed, dialled, received, forwarded, contacts));
}

}  // namespace
