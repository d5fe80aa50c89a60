#include "host/faces/ChangeText.h"

#include <gtest/gtest.h>

#include <string>

#include "include/JournalServiceObserverIfc.h"

namespace host {
namespace {

using Observer = JournalServiceObserverIfc;

template <typename Item, typename Info>
Item ann(const Info& info) {
    Item item;
    item.setFirstname("Ann");
    item.setSurname("Müller");
    Info filled = info;
    filled.setNumber("4711");
    item.addCallInfoToList(filled);
    return item;
}

TEST(ChangeText, TellsAMissedCallFromItsViewing) {
    auto item = ann<MissedCallItem>(MissedCallItem::MissedCallInfo());
    EXPECT_EQ(describeChange(item, Observer::eItemAdded), "missed call from Ann Müller (4711)");
    EXPECT_EQ(describeChange(item, Observer::eItemUpdated), "missed call from Ann Müller (4711)");
    item.setViewed(true);
    EXPECT_EQ(describeChange(item, Observer::eItemUpdated), "missed call from Ann Müller (4711) was viewed");
}

TEST(ChangeText, SaysHowLongACallLastedWhereThatIsKnown) {
    ReceivedCallItem::ReceivedCallInfo received;
    received.setDuration("01:01");
    EXPECT_EQ(describeChange(ann<ReceivedCallItem>(received), Observer::eItemAdded),
              "received call from Ann Müller (4711), 01:01");
    EXPECT_EQ(
        describeChange(ann<DialledCallItem>(DialledCallItem::DialledCallInfo()), Observer::eItemUpdated),
        "dialled Ann Müller (4711)");
}

TEST(ChangeText, SaysWhereAForwardedCallWentWhereThatIsKnown) {
    ForwardedCallItem::ForwardedCallInfo info;
    EXPECT_EQ(describeChange(ann<ForwardedCallItem>(info), Observer::eItemAdded),
              "forwarded call from Ann Müller (4711)");
    info.setForwardedToNumber("2002");
    EXPECT_EQ(describeChange(ann<ForwardedCallItem>(info), Observer::eItemAdded),
              "forwarded call from Ann Müller (4711) to 2002");
}

TEST(ChangeText, SaysWhatHappenedToAList) {
    EXPECT_EQ(describeChange(MissedCallItem(), Observer::eItemDeleted), "a missed call was deleted");
    EXPECT_EQ(describeChange(DialledCallItem(), Observer::eListCleared), "the dialled calls were cleared");
    EXPECT_EQ(describeChange(ReceivedCallItem(), Observer::eListChanged), "the received calls changed");
    EXPECT_EQ(describeChange(ForwardedCallItem(), 99), "the forwarded calls changed");
    EXPECT_EQ(describeChange(CallBackItem(), Observer::eItemDeleted), "a callback was deleted");
}

TEST(ChangeText, AnItemWithoutACallIsNoReasonToFail) {
    EXPECT_EQ(describeChange(MissedCallItem(), Observer::eItemAdded), "missed call from unknown");
    EXPECT_EQ(describeChange(ForwardedCallItem(), Observer::eItemAdded), "forwarded call from unknown");
}

TEST(ChangeText, Counts) {
    EXPECT_EQ(describeMissedCount(0), "no new missed calls");
    EXPECT_EQ(describeMissedCount(1), "1 new missed call");
    EXPECT_EQ(describeCallbackCount(2), "2 callbacks");
}

}  // namespace
}  // namespace host
