#include "tests/host-data/DataAccessFixture.h"

namespace {

using journaltest::call;
using journaltest::callBack;
using journaltest::surnames;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Words = CallListDatabaseAdapterHelper;

using DeleteRequests = journaltest::DataAccessFixture;

TEST_F(DeleteRequests, TakeTheNamedRowsWithTheirOccurrencesAndNoOther) {
    auto first = call<ForwardedCallItem>("1", "05:00:00");
    auto second = call<ForwardedCallItem>("2", "06:00:00");
    auto third = call<ForwardedCallItem>("3", "07:00:00");
    for (ForwardedCallItem* const item : {&first, &second, &third}) {
        journal().file(*item);
    }
    const std::string answer = journal().remove<ForwardedCallItem>({first, third});
    EXPECT_EQ(JournalServiceHelper::parseLastUniqueId(answer), third.getUniqueId());
    EXPECT_THAT(surnames(journal().read<ForwardedCallItem>()), ElementsAre("2"));
    EXPECT_EQ(m_database.number("SELECT count(*) FROM occurrence"), 1);
}

TEST_F(DeleteRequests, GoByTheEntryIdWhereThereIsNoUniqueId) {
    auto item = call<MissedCallItem>("4711", "05:00:00");
    const std::string uniqueId = journal().writeOne(item);
    journal().writeOne(call<MissedCallItem>("stays", "06:00:00"));
    ASSERT_EQ(item.getUniqueId(), "");
    EXPECT_EQ(JournalServiceHelper::parseLastUniqueId(journal().remove<MissedCallItem>({item})), uniqueId);
    EXPECT_THAT(surnames(journal().read<MissedCallItem>()), ElementsAre("stays"));
}

// Entry ids of two items may be equal; only one of them is meant.
TEST_F(DeleteRequests, ByEntryIdTakeTheNewestRowOnly) {
    const auto item = call<MissedCallItem>("4711", "05:00:00");
    const std::string older = journal().writeOne(item);
    const std::string newer = journal().writeOne(item);
    EXPECT_EQ(JournalServiceHelper::parseLastUniqueId(journal().remove<MissedCallItem>({item})), newer);
    const auto read = journal().read<MissedCallItem>();
    ASSERT_THAT(read, SizeIs(1));
    EXPECT_EQ(read.front().getUniqueId(), older);
}

TEST_F(DeleteRequests, ByAnUnknownUniqueIdTakeNothingAndAnswerTheLastRowThatWasThere) {
    auto item = call<MissedCallItem>("4711", "05:00:00");
    journal().file(item);
    auto unknown = item;
    unknown.setUniqueId("999");
    const std::string answer = journal().remove<MissedCallItem>({unknown});
    EXPECT_NE(answer, "failed");
    EXPECT_EQ(JournalServiceHelper::parseLastUniqueId(answer), "");
    EXPECT_THAT(journal().read<MissedCallItem>(), SizeIs(1)) << "the entry id does not stand in";
    EXPECT_EQ(JournalServiceHelper::parseLastUniqueId(journal().remove<MissedCallItem>({item, unknown})),
              item.getUniqueId());
}

TEST_F(DeleteRequests, NeverReachAnotherListOrLine) {
    host::SqliteDataAccess otherLine(*m_database, "3001");
    auto missed = call<MissedCallItem>("missed", "05:00:00");
    journal().file(missed);
    DialledCallItem dialled;
    dialled.setUniqueId(missed.getUniqueId());
    dialled.setEntryId(missed.getEntryId());
    journal().remove<DialledCallItem>({dialled});
    journalOf(otherLine).remove<MissedCallItem>({missed});
    missed.setUniqueId("");
    journalOf(otherLine).remove<MissedCallItem>({missed});
    journalOf(otherLine).removeAll<MissedCallItem>();
    journal().removeAll<DialledCallItem>();
    EXPECT_THAT(surnames(journal().read<MissedCallItem>()), ElementsAre("missed"));
}

TEST_F(DeleteRequests, EmptyATableOnlyWhenTheySaySo) {
    journal().writeOne(call<MissedCallItem>("1", "05:00:00"));
    const std::string last = journal().writeOne(call<MissedCallItem>("2", "06:00:00"));
    EXPECT_EQ(journal().send(Words::DELETEREQUEST, "", Words::DAS_CALLLOGMISSEDCALLS), "failed");
    EXPECT_EQ(journal().send(Words::DELETEREQUEST, "<ENTRY></ENTRY>", Words::DAS_CALLLOGMISSEDCALLS),
              "failed");
    EXPECT_EQ(
        journal().send(Words::DELETEREQUEST, "<AllEntries>false</AllEntries>", Words::DAS_CALLLOGMISSEDCALLS),
        "failed");
    EXPECT_THAT(journal().read<MissedCallItem>(), SizeIs(2));

    EXPECT_EQ(JournalServiceHelper::parseLastUniqueId(journal().removeAll<MissedCallItem>()), last);
    EXPECT_THAT(journal().read<MissedCallItem>(), IsEmpty());
    EXPECT_EQ(m_database.number("SELECT count(*) FROM occurrence"), 0);
    EXPECT_EQ(JournalServiceHelper::parseLastUniqueId(journal().removeAll<MissedCallItem>()), "");
}

TEST_F(DeleteRequests, TakeCallBacksByTheirEntryId) {
    journal().write<CallBackItem>(
        {callBack("1", "05:00:00"), callBack("2", "06:00:00"), callBack("3", "07:00:00")});
    journal().remove<CallBackItem>({callBack("2", ""), callBack("unknown", "")});
    const auto read = journal().read<CallBackItem>();
    ASSERT_THAT(read, SizeIs(2));
    EXPECT_EQ(read[0].getEntryId() + read[1].getEntryId(), "31");
    EXPECT_NE(journal().removeAll<CallBackItem>(), "failed");
    EXPECT_THAT(journal().read<CallBackItem>(), IsEmpty());
}

}  // namespace
