// Queries of the lists, updates of a missed item in place, and their rows in the database.

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/ListsFixture.h"

namespace journaltest {
namespace {

using Helper = CallListDatabaseAdapterHelper;
constexpr const char* kNewer = "2026-11-22T08:00:00Z";
constexpr const char* kOlder = "2026-11-21T08:00:00Z";

class ListReads : public testing::Test {
protected:
    ListReads() {
        fixture.startWith({itemOf<MissedCallItem>("m1", "11", {{"4711", kNewer}, {"4711", kOlder}}),
                           itemOf<MissedCallItem>("m2", "12", {{"4712", kOlder}})},
                          {itemOf<DialledCallItem>("d1", "21", {{"4711", kNewer}, {"4720", kOlder}}),
                           itemOf<DialledCallItem>("d2", "22", {{"4721", kOlder}})},
                          {itemOf<ReceivedCallItem>("r1", "31", {{"4711", kNewer}})},
                          {itemOf<ForwardedCallItem>("f1", "41", {{"", kNewer}})},
                          {callBackOf("c1", "4712", kNewer), callBackOf("c2", "", kOlder)});
    }
    ListsFixture fixture;
    journal::JournalLists& lists = fixture.lists;
    journal::ListQueries& queries = fixture.queries;
    journal::ListDeletion& deletion = fixture.deletion;
    journal::MissedCallUpdates& updates = fixture.missedCallUpdates;
};

TEST_F(ListReads, GiveTheNewestItemOrADefaultOne) {
    MissedCallItem missed;
    EXPECT_TRUE(queries.getMissedCall("m2", missed));
    EXPECT_FALSE(queries.getMissedCall("m", missed));
    EXPECT_EQ(missed.getUniqueId(), "12") << "an id that is not found has no effect";
    EXPECT_EQ(queries.getFrontMissedCall().getEntryId() + " " + queries.getFrontDialledCall().getEntryId() +
                  " " + queries.getFrontReceivedCall().getEntryId() + " " +
                  queries.getFrontForwardedCall().getEntryId() + " " +
                  queries.getFrontCallbackCall().getEntryId(),
              "m1 d1 r1 f1 c1");
    DialledCallItem last;
    EXPECT_TRUE(queries.getLastDialledNumber(last));

    std::vector<Contact> contacts(2);
    lists.contacts().swap(contacts);
    lists.contacts().getContactList(contacts);
    EXPECT_EQ(contacts.size(), 2U);

    deletion.deleteAllCalls();
    EXPECT_TRUE(queries.getFrontMissedCall().sameContent(MissedCallItem()));
    EXPECT_FALSE(queries.getLastDialledNumber(last));
    EXPECT_EQ(last.getEntryId(), "d1") << "the argument is left alone";
    lists.contacts().getContactList(contacts);
    EXPECT_TRUE(contacts.empty());
}

TEST_F(ListReads, GatherTheRecordsOfAContactOverAllLists) {
    Contact contact;
    contact.setSearchNumber("4711");
    contact.setPrivate("4712");
    std::vector<Contact::CallRecord> records{{"before", "x"}};
    EXPECT_TRUE(queries.getCallRecordsAssociatedWith(contact, records));
    EXPECT_EQ(records, (std::vector<Contact::CallRecord>{{"before", "x"},
                                                         {"m1", "missed"},
                                                         {"m2", "missed"},
                                                         {"d1", "dialled"},
                                                         {"r1", "received"},
                                                         {"c1", "callback"}}));
    EXPECT_FALSE(queries.getCallRecordsAssociatedWith(Contact(), records)) << "no entry has the empty number";
}

TEST_F(ListReads, UpdateAnEqualMissedItemByMarkingItUnviewed) {
    updates.ageMissedCall("m2");
    fixture.forget();
    updates.updateMissedCall(itemOf<MissedCallItem>("m2", "99", {{"9999", kNewer}}));

    MissedCallItem stored;
    ASSERT_TRUE(queries.getMissedCall("m2", stored));
    EXPECT_FALSE(stored.getViewed());
    EXPECT_EQ(stored.getUniqueId(), "12");
    EXPECT_EQ(stored.getMissedCallInfoList().front().getNumber(), "4712");
    EXPECT_EQ(fixture.heard(), "");
    EXPECT_EQ(fixture.listContents(), fixture.databaseContents())
        << "a load would bring the viewed item back";
}

TEST_F(ListReads, UpdateWithAnUnknownMissedItemAddsItInFrontUnderARowOfItsOwn) {
    fixture.database.setFailing(true);
    updates.updateMissedCall(itemOf<MissedCallItem>("m3", "12", {{"4713", kOlder}}));
    updates.updateMissedCall(itemOf<MissedCallItem>("m4", "12", {{"4714", kOlder}}));
    updates.updateMissedCall(MissedCallItem());
    EXPECT_EQ(fixture.entryIds().substr(0, 12), "m4 m3 m1 m2 ") << "an item without an entry id is refused";

    fixture.database.setFailing(false);
    for (int round = 0; round < 2; ++round) {
        updates.setMissedCallListAsViewed({"m3", "m4"});
        EXPECT_EQ(fixture.listContents(), fixture.databaseContents())
            << "the row that the copy names is another entry's";
    }
}

TEST(ListPersistence, GivesAnItemTheUniqueIdOfItsRowAndReportsEachWrite) {
    ListsFixture fixture;
    journal::ListPersistence& persistence = fixture.persistence;
    constexpr const char* kTable = Helper::DAS_CALLLOGRECEIVEDCALLS;
    const auto rows = [&fixture] {
        return joined(entryIdsOf(fixture.database.rows<ReceivedCallItem>(kTable)), " ");
    };
    const auto reportsWrite = [&fixture] { return std::exchange(fixture.writes, 0) > 0; };
    auto first = itemOf<ReceivedCallItem>("e1", "", {{"4711", kOlder}});
    auto second = itemOf<ReceivedCallItem>("e2", "77", {{"4712", kOlder}});  // the row of which is gone

    fixture.database.setFailing(true);
    persistence.update(first, journal::RequestType::eWrite);
    EXPECT_EQ(first.getUniqueId() + persistence.lastUniqueId(), "");
    EXPECT_FALSE(reportsWrite());
    fixture.database.setFailing(false);
    persistence.update(first, journal::RequestType::eWrite);
    persistence.update(second, journal::RequestType::eDelete);
    EXPECT_EQ(second.getUniqueId(), "77");
    persistence.update(second, journal::RequestType::eWrite);
    EXPECT_EQ(persistence.lastUniqueId(), "2");
    EXPECT_TRUE(reportsWrite());
    first.setEntryId("e3");
    persistence.update(first, journal::RequestType::eWrite);
    EXPECT_TRUE(reportsWrite()) << "the row is an old one, but what it says is new";
    EXPECT_EQ(rows(), "e3 e2");

    EXPECT_EQ(persistence.updateEntry(Helper::createXMLReceivedCallItemBody(first, Helper::WRITEREQUEST),
                                      journal::RequestType::eWrite, kTable),
              first.getUniqueId());
    persistence.updateEntries("", journal::RequestType::eDelete, kTable);
    EXPECT_EQ(rows(), "e3 e2") << "no entries are not all entries";
    persistence.update(first, journal::RequestType::eDelete);
    EXPECT_EQ(rows(), "e2");
    persistence.clearTable<ReceivedCallItem>();
    EXPECT_EQ(rows(), "");
    static_cast<void>(reportsWrite());
    persistence.clearTable<ReceivedCallItem>();
    EXPECT_FALSE(reportsWrite()) << "there was nothing to delete";
}

}  // namespace
}  // namespace journaltest
