#include "tests/host-data/DataAccessFixture.h"

namespace {

using journaltest::call;
using journaltest::callBack;
using journaltest::surnames;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

using WriteRequests = journaltest::DataAccessFixture;

// The row must be changed: a second one would come back as a second caller after the next start.
TEST_F(WriteRequests, ChangeTheRowOfAnItemThatHasItsUniqueId) {
    auto item = call<MissedCallItem>("4711", "05:00:00");
    journal().file(item);
    const std::string uniqueId = item.getUniqueId();
    ASSERT_THAT(uniqueId, Not(IsEmpty()));

    MissedCallItem::MissedCallInfo again;
    again.setNumber("4711");
    again.setTimeAndDate("2026-11-21T06:00:00Z");
    item.addCallInfoToList(again);
    item.setEntryId("2026-11-21T06:00:00Z0000002B");
    EXPECT_EQ(journal().writeOne(item), uniqueId);

    const auto read = journal().read<MissedCallItem>();
    ASSERT_THAT(read, SizeIs(1));
    EXPECT_TRUE(read.front().sameContent(item));
    EXPECT_EQ(m_database.number("SELECT count(*) FROM occurrence"), 2);
}

TEST_F(WriteRequests, LeaveNoOccurrenceBehindThatTheItemHasNoMore) {
    auto item = call<ReceivedCallItem>("4711", "05:00:00");
    item.addCallInfoToList({});
    item.addCallInfoToList({});
    journal().file(item);
    item.setReceivedCallInfoList({{}});
    journal().file(item);
    EXPECT_EQ(m_database.number("SELECT count(*) FROM occurrence"), 1);
}

TEST_F(WriteRequests, GiveNewItemsIdsThatNoOtherItemEverHad) {
    auto first = call<MissedCallItem>("1", "05:00:00");
    auto second = call<DialledCallItem>("2", "05:00:00");
    journal().file(first);
    journal().file(second);
    EXPECT_NE(first.getUniqueId(), second.getUniqueId());

    journal().remove<DialledCallItem>({second});
    EXPECT_NE(journal().writeOne(call<DialledCallItem>("3", "05:00:00")), second.getUniqueId());
}

TEST_F(WriteRequests, AddARowWhereTheUniqueIdNamesNone) {
    for (const char* const unknown : {"999", "0", "-1", "01", "1x", " 1", "99999999999999999999"}) {
        auto item = call<MissedCallItem>(unknown, "05:00:00");
        item.setUniqueId(unknown);
        EXPECT_NE(journal().writeOne(item), unknown);
    }
    EXPECT_THAT(journal().read<MissedCallItem>(), SizeIs(7));
}

TEST_F(WriteRequests, DoNotTouchTheRowOfAnotherListThatHasTheUniqueId) {
    auto missed = call<MissedCallItem>("missed", "05:00:00");
    journal().file(missed);
    auto received = call<ReceivedCallItem>("received", "05:00:00");
    received.setUniqueId(missed.getUniqueId());
    EXPECT_NE(journal().writeOne(received), missed.getUniqueId());
    EXPECT_THAT(surnames(journal().read<MissedCallItem>()), ElementsAre("missed"));
    EXPECT_THAT(surnames(journal().read<ReceivedCallItem>()), ElementsAre("received"));
}

TEST_F(WriteRequests, NeverReachTheRowsOfAnotherLine) {
    host::SqliteDataAccess otherLine(*m_database, "3001");
    auto item = call<MissedCallItem>("mine", "05:00:00");
    journal().file(item);

    auto theirs = item;
    theirs.setSurname("theirs");
    EXPECT_NE(journalOf(otherLine).writeOne(theirs), item.getUniqueId());
    journalOf(otherLine).write<CallBackItem>({callBack("c", "05:00:00")});
    EXPECT_THAT(surnames(journal().read<MissedCallItem>()), ElementsAre("mine"));
    EXPECT_THAT(journal().read<CallBackItem>(), IsEmpty());
    EXPECT_THAT(surnames(journalOf(otherLine).read<MissedCallItem>()), ElementsAre("theirs"));
}

TEST_F(WriteRequests, ReplaceACallBackByItsEntryId) {
    auto item = callBack("id 1", "05:00:00");
    EXPECT_EQ(journal().writeOne(item), "");
    item.setCallBackState(CallBackItem::CallBackState::eDone);
    journal().writeOne(item);
    journal().writeOne(callBack("id 2", "04:00:00"));

    const auto read = journal().read<CallBackItem>();
    ASSERT_THAT(read, SizeIs(2));
    EXPECT_TRUE(read.front().sameContent(item));
}

TEST_F(WriteRequests, AreNotTakenForSql) {
    auto item = call<MissedCallItem>("'); DROP TABLE call_item; --", "05:00:00");
    journal().file(item);
    item.setSurname("\"; DELETE FROM call_item");
    journal().file(item);
    EXPECT_THAT(surnames(journal().read<MissedCallItem>()), ElementsAre("\"; DELETE FROM call_item"));
}

TEST_F(WriteRequests, StoreSettingsThatOutliveARestart) {
    EXPECT_NE(m_access->processRequest(JournalServiceHelper::updateSettings("call-log-enabled", "false")),
              "failed");
    EXPECT_NE(m_access->processRequest(JournalServiceHelper::updateSettings("missed-logging", "true")),
              "failed");
    EXPECT_NE(m_access->processRequest(JournalServiceHelper::updateSettings("call-log-enabled", "true")),
              "failed");
    restart();

    const std::string settings = m_access->processRequest(JournalServiceHelper::readSettings());
    bool value = false;
    EXPECT_TRUE(JournalServiceHelper::getXMLValue(settings, "call-log-enabled", value));
    EXPECT_TRUE(value);
    EXPECT_TRUE(JournalServiceHelper::getXMLValue(settings, "missed-logging", value));
    EXPECT_FALSE(JournalServiceHelper::getXMLValue(settings, "delete-missed-when-called", value));

    host::SqliteDataAccess otherLine(*m_database, "3001");
    EXPECT_FALSE(JournalServiceHelper::getXMLValue(
        otherLine.processRequest(JournalServiceHelper::readSettings()), "call-log-enabled", value));
}

}  // namespace
