// Reading the lists, and what updates a missed item in place.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/journal-lists/JournalRig.h"

namespace journaltest {
namespace {

constexpr const char* kNewer = "2026-11-22T08:00:00Z";
constexpr const char* kOlder = "2026-11-21T08:00:00Z";

class ListReads : public testing::Test {
protected:
    ListReads() {
        rig.startWith({itemOf<MissedCallItem>("m1", "11", {{"4711", kNewer}, {"4711", kOlder}}),
                       itemOf<MissedCallItem>("m2", "12", {{"4712", kOlder}})},
                      {itemOf<DialledCallItem>("d1", "21", {{"4711", kNewer}, {"4720", kOlder}}),
                       itemOf<DialledCallItem>("d2", "22", {{"4721", kOlder}})},
                      {itemOf<ReceivedCallItem>("r1", "31", {{"4711", kNewer}})},
                      {itemOf<ForwardedCallItem>("f1", "41", {{"", kNewer}})},
                      {callBackOf("c1", "4712", kNewer), callBackOf("c2", "", kOlder)});
    }

    JournalRig rig;
    journal::JournalLists& lists = rig.lists;
};

TEST_F(ListReads, FindOneEntryByItsWholeIdAndSayWhetherItWasThere) {
    MissedCallItem missed;
    DialledCallItem dialled;
    ReceivedCallItem received;
    ForwardedCallItem forwarded;
    EXPECT_TRUE(lists.getMissedCall("m2", missed));
    EXPECT_EQ(missed.getUniqueId(), "12");
    EXPECT_FALSE(lists.getMissedCall("m", missed));
    EXPECT_EQ(missed.getUniqueId(), "12") << "an id that is not found changes nothing";
    EXPECT_TRUE(lists.getDialledCall("d2", dialled));
    EXPECT_EQ(dialled.getUniqueId(), "22");
    EXPECT_FALSE(lists.getDialledCall("", dialled));
    EXPECT_TRUE(lists.getReceivedCall("r1", received));
    EXPECT_FALSE(lists.getReceivedCall("m1", received));
    EXPECT_TRUE(lists.getForwardedCall("f1", forwarded));
    EXPECT_FALSE(lists.getForwardedCall("f11", forwarded));
}

TEST_F(ListReads, CopyWholeLists) {
    std::deque<MissedCallItem> copy(5);
    lists.getMissedCallList(copy);
    ASSERT_EQ(copy.size(), 2U);
    copy.front().setMissedCallInfoList({});
    EXPECT_EQ(rig.items<MissedCallItem>().front().getMissedCallInfoList().size(), 2U);
}

TEST_F(ListReads, GiveTheNewestItemOrADefaultOne) {
    EXPECT_EQ(lists.getFrontMissedCall().getEntryId(), "m1");
    EXPECT_EQ(lists.getFrontDialledCall().getEntryId(), "d1");
    EXPECT_EQ(lists.getFrontReceivedCall().getEntryId(), "r1");
    EXPECT_EQ(lists.getFrontForwardedCall().getEntryId(), "f1");
    EXPECT_EQ(lists.getFrontCallbackCall().getEntryId(), "c1");
    DialledCallItem last;
    EXPECT_TRUE(lists.getLastDialledNumber(last));
    EXPECT_TRUE(last.sameContent(rig.items<DialledCallItem>().front()));

    lists.deleteAllCalls();
    EXPECT_TRUE(lists.getFrontMissedCall().sameContent(MissedCallItem()));
    EXPECT_FALSE(lists.getLastDialledNumber(last));
    EXPECT_EQ(last.getEntryId(), "d1") << "the argument is left alone";
}

TEST_F(ListReads, GatherTheRecordsOfAContactOverAllLists) {
    Contact contact;
    contact.setSearchNumber("4711");
    contact.setPrivate("4712");
    std::vector<Contact::CallRecord> records{{"before", "x"}};
    EXPECT_TRUE(lists.getCallRecordsAssociatedWith(contact, records));
    EXPECT_EQ(records, (std::vector<Contact::CallRecord>{{"before", "x"},
                                                         {"m1", "missed"},
                                                         {"m2", "missed"},
                                                         {"d1", "dialled"},
                                                         {"r1", "received"},
                                                         {"c1", "callback"}}));
    EXPECT_FALSE(lists.getCallRecordsAssociatedWith(Contact(), records)) << "nobody has the empty number";
}

TEST_F(ListReads, KeepContactsUntilAllCallsAreDeleted) {
    Contact contact;
    contact.setSurname("Adams");
    lists.addContacts({contact, contact});
    std::vector<Contact> contacts;
    lists.getContactList(contacts);
    EXPECT_EQ(contacts.size(), 2U);
    lists.deleteAllCalls();
    lists.getContactList(contacts);
    EXPECT_TRUE(contacts.empty());
}

TEST_F(ListReads, UpdateAnEqualMissedItemByMarkingItUnviewed) {
    lists.ageMissedCall("m2");
    rig.forget();
    auto update = itemOf<MissedCallItem>("m2", "99", {{"9999", kNewer}});
    lists.updateMissedCall(update);

    MissedCallItem stored;
    ASSERT_TRUE(lists.getMissedCall("m2", stored));
    EXPECT_FALSE(stored.getViewed());
    EXPECT_EQ(stored.getUniqueId(), "12");
    EXPECT_EQ(stored.getMissedCallInfoList().front().getNumber(), "4712");
    EXPECT_EQ(rig.heard(), "");
    EXPECT_EQ(rig.listContents(), rig.databaseContents()) << "a load would bring the viewed item back";
}

TEST_F(ListReads, UpdateWithAnUnknownMissedItemAddsItInFrontUnderARowOfItsOwn) {
    lists.updateMissedCall(itemOf<MissedCallItem>("m3", "12", {{"4713", kOlder}}));
    EXPECT_EQ(lists.getFrontMissedCall().getEntryId(), "m3");
    EXPECT_NE(lists.getFrontMissedCall().getUniqueId(), "12");
    EXPECT_EQ(rig.listContents(), rig.databaseContents());
    lists.setMissedCallListAsViewed({"m3"});
    lists.updateMissedCall(MissedCallItem());
    EXPECT_EQ(rig.items<MissedCallItem>().size(), 3U) << "an item without an entry id is refused";
    EXPECT_EQ(rig.listContents(), rig.databaseContents()) << "the row that the copy names is another entry's";
}

}  // namespace
}  // namespace journaltest
