// Reading the lists, and what updates a missed item in place.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/journal-lists/JournalRig.h"
#include "tests/support/CapturedLog.h"

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

    for (const char* line : {"JournalService::getMissedCall: entry found entryId = m2",
                             "JournalService::getMissedCall: entry not found entryId = m",
                             "JournalService::getDialledCall: entry found entryId = d2",
                             "JournalService::getDialledCall: entry not found entryId = ",
                             "JournalService::getReceivedall: entry found entryId = r1",
                             "JournalService::getReceivedall: entry not found entryId = m1",
                             "JournalService::getForwardedCall: entry found entryId = f1",
                             "JournalService::getForwardedCall: entry not found entryId = f11"}) {
        EXPECT_TRUE(CapturedLog::contains(line)) << line;
    }
}

TEST_F(ListReads, CopyWholeListsAndSayHowLongTheyAre) {
    readAllLists(rig.reader);
    for (const char* line : {"getMissedCallList[2]", "getDialledCallList[2]", "getReceivedCallList[1]",
                             "getForwardedCallList[1]", "JournalService::getCallBackList()"}) {
        EXPECT_TRUE(CapturedLog::contains(line)) << line;
    }
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

TEST_F(ListReads, CountUnviewedItemsNotOccurrences) {
    EXPECT_EQ(lists.getUnviewedMissedCallsCount(), 2U);
    lists.ageMissedCall("m1");
    EXPECT_EQ(lists.getUnviewedMissedCallsCount(), 1U);
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
    EXPECT_TRUE(CapturedLog::contains("getContactList[2]"));
    lists.deleteAllCalls();
    lists.getContactList(contacts);
    EXPECT_TRUE(contacts.empty());
}

TEST_F(ListReads, UpdateAnEqualMissedItemByMarkingItUnviewedOnly) {
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
    EXPECT_EQ(rig.written(), "");
    EXPECT_TRUE(CapturedLog::contains("Entry found entryId = [m2] but update can be needed!"));
}

TEST_F(ListReads, UpdateWithAnUnknownMissedItemAddsItInFrontAsOneThatWasNeverStored) {
    lists.updateMissedCall(itemOf<MissedCallItem>("m3", "12", {{"4713", kOlder}}));
    EXPECT_TRUE(lists.getFrontMissedCall().sameContent(itemOf<MissedCallItem>("m3", "", {{"4713", kOlder}})));
    EXPECT_TRUE(CapturedLog::contains("Entry NOT found entryId = [m3] and item has been added"));
    lists.setMissedCallListAsViewed({"m3"});
    EXPECT_EQ(rig.listContents(), rig.databaseContents()) << "the row that the copy names is another entry's";
}

TEST_F(ListReads, UpdateWithoutAnEntryIdIsRefused) {
    lists.updateMissedCall(MissedCallItem());
    EXPECT_EQ(rig.items<MissedCallItem>().size(), 2U);
    EXPECT_TRUE(CapturedLog::contains("Item entry id is empty"));
}

TEST_F(ListReads, SayInTheLogWhatIsDeleted) {
    lists.deleteMissedCall("m1", true);
    lists.deleteMissedCall("m1", false);
    lists.deleteDialledCall("d1");
    lists.deleteReceivedCall("r1");
    lists.deleteForwardedCall("f1");
    lists.deleteCallBack("c1");
    lists.deleteAllCalls();
    lists.deleteCallBackList();
    for (const char* line :
         {"JournalService::deleteMissedCall: entryId = m1, isSendDeleteMissedCallRequest: true ",
          "JournalService::deleteMissedCall: entryId = m1, isSendDeleteMissedCallRequest: false ",
          "JournalService::deleteMissedCall: entry found", "JournalService::deleteDialledCall: entryId = d1",
          "JournalService::deleteDialledCall: entry found",
          "JournalService::deleteReceivedCall: entryId = r1",
          "JournalService::deleteReceivedCall: entry found",
          "JournalService::deleteForwardedCall: entryId = f1", "JournalService::deleteCallBack: entryId = c1",
          "CallListDatabaseAdapterHelper::deleteMissedCallList",
          "CallListDatabaseAdapterHelper::deleteDialledCallList all",
          "CallListDatabaseAdapterHelper::deleteReceivedCallList",
          "CallListDatabaseAdapterHelper::deleteForwardedCallList",
          "CallListDatabaseAdapterHelper::deleteCallBackList all"}) {
        EXPECT_TRUE(CapturedLog::contains(line)) << line;
    }
    for (const CapturedLog::Line& line : CapturedLog::lines()) {
        EXPECT_EQ(line.component == "Journal Service", line.sourceFile == "./src/JournalService")
            << line.text;
    }
}

}  // namespace
}  // namespace journaltest
