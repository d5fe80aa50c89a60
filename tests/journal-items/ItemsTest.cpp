#include <memory>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "journal-items/CallBackItem.h"
#include "journal-items/Occurrences.h"

namespace {

// One name for what differs between the four call lists' items.
template <typename Item>
struct InfoOf {
    using Type = std::decay_t<decltype(occurrencesOf(std::declval<const Item&>()).front())>;
};
template <typename Item>
using Info = typename InfoOf<Item>::Type;

template <typename Item>
Info<Item> callAt(const std::string& time) {
    Info<Item> info;
    info.setTimeAndDate(time);
    return info;
}

template <typename Item>
class CallListItem : public ::testing::Test {};

using CallListItems = ::testing::Types<MissedCallItem, DialledCallItem, ReceivedCallItem, ForwardedCallItem>;
TYPED_TEST_SUITE(CallListItem, CallListItems, );

TYPED_TEST(CallListItem, PutsTheNewestCallInFront) {
    TypeParam item;
    item.addCallInfoToList(callAt<TypeParam>("2026-11-20T08:00:00Z"));
    item.addCallInfoToList(callAt<TypeParam>("2026-11-21T08:00:00Z"));

    ASSERT_EQ(occurrencesOf(item).size(), 2U);
    EXPECT_EQ(occurrencesOf(item).front().getTimeAndDate(), "2026-11-21T08:00:00Z");
}

TYPED_TEST(CallListItem, DropsTheOldestCallBeyondTen) {
    TypeParam item;
    for (int i = 0; i < 11; ++i) {
        item.addCallInfoToList(callAt<TypeParam>("call " + std::to_string(i)));
    }
    ASSERT_EQ(occurrencesOf(item).size(), 10U);
    EXPECT_EQ(occurrencesOf(item).front().getTimeAndDate(), "call 10");
    EXPECT_EQ(occurrencesOf(item).back().getTimeAndDate(), "call 1");
}

TYPED_TEST(CallListItem, TakesAWholeListAsItIsAndStillLimitsTheNextCall) {
    TypeParam item;
    setOccurrences(item, std::list<Info<TypeParam>>(25));
    EXPECT_EQ(occurrencesOf(item).size(), 25U);
    item.addCallInfoToList(callAt<TypeParam>("now"));
    EXPECT_EQ(occurrencesOf(item).size(), 10U);
    EXPECT_EQ(occurrencesOf(item).front().getTimeAndDate(), "now");
}

TYPED_TEST(CallListItem, DuplicatesItsCallsWhenItIsCopied) {
    TypeParam stored;
    stored.addCallInfoToList(callAt<TypeParam>("stored"));

    TypeParam copy = stored;
    copy.addCallInfoToList(callAt<TypeParam>("only in the copy"));
    EXPECT_EQ(occurrencesOf(stored).size(), 1U);

    TypeParam assigned;
    assigned = stored;
    stored.addCallInfoToList(callAt<TypeParam>("only in the original"));
    EXPECT_EQ(occurrencesOf(assigned).size(), 1U);
    EXPECT_EQ(occurrencesOf(assigned).front().getTimeAndDate(), "stored");
}

TYPED_TEST(CallListItem, MovesWithoutThrowing) {
    EXPECT_TRUE(std::is_nothrow_move_assignable_v<TypeParam>);
    EXPECT_TRUE(std::is_nothrow_move_constructible_v<Info<TypeParam>>);
}

TYPED_TEST(CallListItem, IsSortedByItsNewestCallOrByItsEntryIdWithoutOne) {
    TypeParam item;
    item.setEntryId("entry");
    EXPECT_EQ(sortKeyOf(item), "entry");
    item.addCallInfoToList(callAt<TypeParam>("older"));
    item.addCallInfoToList(callAt<TypeParam>("newer"));
    EXPECT_EQ(sortKeyOf(item), "newer");
}

TYPED_TEST(CallListItem, EqualsAnotherWithItsEntryIdWhateverElseTheyHold) {
    TypeParam a;
    a.setEntryId("same");
    a.setSurname("Miller");
    a.setUniqueId("1");
    TypeParam b;
    b.setEntryId("same");
    b.addCallInfoToList(callAt<TypeParam>("now"));

    const CallItem& base = a;
    EXPECT_TRUE(base == b);
    EXPECT_FALSE(a.sameContent(b));

    b = a;
    EXPECT_TRUE(a.sameContent(b));
    b.setEntryId("other");
    EXPECT_FALSE(base == b);
}

TYPED_TEST(CallListItem, ComparesTheContentOfEveryPartItIsMadeOf) {
    TypeParam plain;
    const auto differsAfter = [&plain](auto change) {
        TypeParam changed = plain;
        change(changed);
        return !changed.sameContent(plain);
    };
    EXPECT_TRUE(differsAfter([](TypeParam& item) { item.setFirstname("Ada"); }));
    EXPECT_TRUE(differsAfter([](TypeParam& item) { item.setSurname("Miller"); }));
    EXPECT_TRUE(differsAfter([](TypeParam& item) { item.setUniqueId("7"); }));
    EXPECT_TRUE(differsAfter([](TypeParam& item) { item.setPictureClip("p.png"); }));
    EXPECT_TRUE(differsAfter([](TypeParam& item) {
        auto info = callAt<TypeParam>("");
        info.setRedirectingReason(3);
        item.addCallInfoToList(info);
    }));
}

TEST(MissedCallItem, StartsUnviewedAndEmpty) {
    const MissedCallItem item;
    EXPECT_FALSE(item.getViewed());
    EXPECT_TRUE(item.getEntryId().empty());
    EXPECT_TRUE(item.getMissedCallInfoList().empty());
}

TEST(MissedCallItem, IsBuiltFromNamesCallsAndTheViewedFlag) {
    MissedCallItem::MissedCallInfo info;
    info.setLineKey("2");
    const MissedCallItem item("id", "Ada", "Miller", {info}, true);
    EXPECT_EQ(item.getEntryId(), "id");
    EXPECT_EQ(item.getFirstname(), "Ada");
    EXPECT_EQ(item.getSurname(), "Miller");
    EXPECT_EQ(item.getMissedCallInfoList().front().getLineKey(), "2");
    EXPECT_TRUE(item.getViewed());
}

TEST(CallBackItem, KeepsItsNineParametersApart) {
    const CallBackItem item("id", "Ada", "Miller", "4711", NumberType::NT::eMobile, "2026-11-21T05:22:05Z",
                            CallBackItem::CallBackType::eOnNoReply, CallBackItem::CallBackState::eRinging,
                            "2001");
    EXPECT_EQ(item.getEntryId(), "id");
    EXPECT_EQ(item.getFirstname(), "Ada");
    EXPECT_EQ(item.getSurname(), "Miller");
    EXPECT_EQ(item.getNumber(), "4711");
    EXPECT_EQ(item.getNumberType(), NumberType::NT::eMobile);
    EXPECT_EQ(item.getTimeDate(), "2026-11-21T05:22:05Z");
    EXPECT_EQ(item.getCallBackType(), CallBackItem::CallBackType::eOnNoReply);
    EXPECT_EQ(item.getCallBackState(), CallBackItem::CallBackState::eRinging);
    EXPECT_EQ(item.getDeviceId(), "2001");

    CallBackItem changed = item;
    changed.setDeviceId("2002");
    EXPECT_TRUE(changed == item);
    EXPECT_FALSE(changed.sameContent(item));
}

TEST(CallItem, IsDestroyedThroughItsBase) {
    // The sanitizers' build reports a leak of the occurrence when the destructor is not the item's own.
    auto item = std::make_unique<DialledCallItem>();
    item->addCallInfoToList(callAt<DialledCallItem>(std::string(100, 'x')));
    const std::unique_ptr<CallItem> base = std::move(item);
    EXPECT_TRUE(base->getEntryId().empty());
}

}  // namespace
