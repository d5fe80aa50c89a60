#include <string>

#include <gtest/gtest.h>

#include "src/JournalService/ListTable.h"
#include "tests/journal-lists/JournalRig.h"

namespace journaltest {
namespace {

using Helper = CallListDatabaseAdapterHelper;

class ListMirror : public testing::Test {
protected:
    template <typename Item>
    [[nodiscard]] std::size_t rows() const {
        return rig.database.rows<Item>(journal::ListTable<Item>::kName).size();
    }

    JournalRig rig;
    journal::ListMirror& mirror = rig.mirror;
};

template <typename Item>
class ListMirrorOf : public ListMirror {};
using StoredItems = testing::Types<MissedCallItem, DialledCallItem, ReceivedCallItem, ForwardedCallItem>;
TYPED_TEST_SUITE(ListMirrorOf, StoredItems);

TYPED_TEST(ListMirrorOf, GivesAnItemTheUniqueIdOfItsFirstWriteAndKeepsItsRow) {
    auto item = itemOf<TypeParam>("e1", "", {{"4711", "2026-11-21T08:00:00Z"}});
    this->mirror.update(item, Helper::WRITEREQUEST);
    const std::string uniqueId = item.getUniqueId();
    EXPECT_EQ(uniqueId, "1");

    auto other = itemOf<TypeParam>("e2", "", {{"4712", "2026-11-21T08:00:00Z"}});
    this->mirror.update(other, Helper::WRITEREQUEST);
    item.setEntryId("e3");
    this->mirror.update(item, Helper::WRITEREQUEST);

    EXPECT_EQ(item.getUniqueId(), uniqueId);
    EXPECT_EQ(this->template rows<TypeParam>(), 2U);
    EXPECT_EQ(this->rig.database.template rows<TypeParam>(journal::ListTable<TypeParam>::kName)
                  .front()
                  .getEntryId(),
              "e3");
}

TYPED_TEST(ListMirrorOf, LeavesAnItemWithoutUniqueIdWhenTheWriteFails) {
    auto item = itemOf<TypeParam>("e1", "", {{"4711", "2026-11-21T08:00:00Z"}});
    this->rig.database.setFailing(true);
    this->mirror.update(item, Helper::WRITEREQUEST);
    EXPECT_EQ(item.getUniqueId(), "");
    EXPECT_EQ(this->mirror.lastUniqueId(), "");
    EXPECT_FALSE(this->mirror.m_visitorCallLogSavePending);

    this->rig.database.setFailing(false);
    this->mirror.update(item, Helper::WRITEREQUEST);
    this->mirror.update(item, Helper::WRITEREQUEST);
    EXPECT_EQ(this->template rows<TypeParam>(), 1U);
}

TYPED_TEST(ListMirrorOf, GivesAnItemWhoseRowIsGoneTheUniqueIdOfItsNewRow) {
    auto item = itemOf<TypeParam>("e1", "77", {{"4711", "2026-11-21T08:00:00Z"}});
    this->mirror.update(item, Helper::DELETEREQUEST);
    EXPECT_EQ(item.getUniqueId(), "77");
    this->mirror.update(item, Helper::WRITEREQUEST);
    this->mirror.update(item, Helper::WRITEREQUEST);
    EXPECT_EQ(item.getUniqueId(), "1");
    EXPECT_EQ(this->template rows<TypeParam>(), 1U);
}

TYPED_TEST(ListMirrorOf, DeletesARowByUniqueIdAndAllRowsOnlyWhenToldSo) {
    auto first = itemOf<TypeParam>("e1", "", {{"4711", "2026-11-21T08:00:00Z"}});
    auto second = itemOf<TypeParam>("e2", "", {{"4712", "2026-11-21T08:00:00Z"}});
    this->mirror.update(first, Helper::WRITEREQUEST);
    this->mirror.update(second, Helper::WRITEREQUEST);

    this->mirror.updateEntries("", Helper::DELETEREQUEST, journal::ListTable<TypeParam>::kName);
    EXPECT_EQ(this->template rows<TypeParam>(), 2U) << "no entries are not all entries";
    this->mirror.update(first, Helper::DELETEREQUEST);
    EXPECT_EQ(this->template rows<TypeParam>(), 1U);
    this->mirror.template deleteAll<TypeParam>();
    EXPECT_EQ(this->template rows<TypeParam>(), 0U);
}

TEST_F(ListMirror, SaysThatTheVisitorsLogIsDueForEveryAnswerThatNamesARow) {
    auto item = itemOf<MissedCallItem>("e1", "", {{"4711", "2026-11-21T08:00:00Z"}});
    mirror.updateMissedEntry(item, Helper::WRITEREQUEST);
    EXPECT_TRUE(mirror.m_visitorCallLogSavePending);
    EXPECT_EQ(mirror.lastUniqueId(), "1");

    // The same row once more: another call of the same party since the last save.
    mirror.m_visitorCallLogSavePending = false;
    mirror.updateMissedEntry(item, Helper::WRITEREQUEST);
    EXPECT_TRUE(mirror.m_visitorCallLogSavePending);

    mirror.m_visitorCallLogSavePending = false;
    mirror.deleteAll<ReceivedCallItem>();
    EXPECT_FALSE(mirror.m_visitorCallLogSavePending) << "there was nothing to delete";
    EXPECT_EQ(mirror.lastUniqueId(), "1");
}

TEST_F(ListMirror, LetsAnItemThatWasNeverStoredBeStoredWhenItIsViewed) {
    rig.lists.updateMissedCall(itemOf<MissedCallItem>("e1", "", {{"4711", "2026-11-21T08:00:00Z"}}));
    rig.lists.updateMissedCall(itemOf<MissedCallItem>("e2", "", {{"4712", "2026-11-21T08:00:00Z"}}));
    rig.lists.setMissedCallListAsViewed({"e1", "e2"});
    rig.lists.setMissedCallListAsViewed({"e1", "e2"});
    EXPECT_EQ(rows<MissedCallItem>(), 2U);
    EXPECT_EQ(rig.listContents(), rig.databaseContents());
}

}  // namespace
}  // namespace journaltest
