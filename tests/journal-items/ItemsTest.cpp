#include <algorithm>
#include <string>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "tests/support/RandomItems.h"

namespace {

using journaltest::counted;

template <typename Item>
class CallListItem : public ::testing::Test {};

using CallListItems = ::testing::Types<MissedCallItem, DialledCallItem, ReceivedCallItem, ForwardedCallItem>;
TYPED_TEST_SUITE(CallListItem, CallListItems, );

TYPED_TEST(CallListItem, KeepsTheNewestTenCallsInFrontButTakesAWholeListAsItIs) {
    TypeParam item;
    item.setEntryId("entry");
    EXPECT_EQ(sortKeyOf(item), "entry");
    const auto timesAfter = [&item](const std::string& time) {
        auto added = occurrencesOf(counted<TypeParam>()).front();
        added.setTimeAndDate(time);
        item.addCallInfoToList(added);
        EXPECT_EQ(sortKeyOf(item), time);
        std::string times;
        for (const auto& info : occurrencesOf(item)) {
            times += info.getTimeAndDate() + " ";
        }
        return times;
    };
    for (int time = 1; time < 11; ++time) {
        timesAfter(std::to_string(time));
    }
    EXPECT_EQ(timesAfter("11"), "11 10 9 8 7 6 5 4 3 2 ");
    auto occurrences = occurrencesOf(item);
    occurrences.resize(25);
    setOccurrences(item, occurrences);
    EXPECT_EQ(occurrencesOf(item).size(), 25U);
    EXPECT_EQ(timesAfter("12"), "12 11 10 9 8 7 6 5 4 3 ");
    auto same = counted<TypeParam>();
    same.setEntryId("entry");
    EXPECT_TRUE(static_cast<const CallItem&>(item) == same) << "the entry id alone decides";
}

/// The same value for every field, but another one for the field that is filled as the `other`-th.
struct OneOther {
    bool isOther() { return ++last == other; }
    std::string text() { return isOther() ? "other" : "text"; }
    std::int32_t number() { return isOther() ? 2 : 1; }
    bool flag() { return !isOther(); }
    static int upTo(int /*most*/) { return 1; }

    int other = 0;
    int last = 0;
};

template <typename Item>
class Content : public ::testing::Test {};

using AllItems = ::testing::Types<MissedCallItem, DialledCallItem, ReceivedCallItem, ForwardedCallItem,
                                  CallBackItem, Contact>;
TYPED_TEST_SUITE(Content, AllItems, );

TYPED_TEST(Content, IsTheSameOnlyIfEveryFieldIs) {
    OneOther all;
    TypeParam item;
    journaltest::fill(all, item);
    EXPECT_GE(all.last, 9);
    for (int other = 0; other <= all.last; ++other) {
        OneOther values{other};
        TypeParam changed;
        journaltest::fill(values, changed);
        EXPECT_EQ(changed.sameContent(item), other == 0) << other;
    }
}

struct NoValues {
    static std::string text() { return {}; }
    static std::int32_t number() { return 0; }
    static bool flag() { return false; }
    static int upTo(int /*most*/) { return 0; }
};

TYPED_TEST(Content, StaysInACopyWhenTheOriginalIsEmptied) {
    auto item = counted<TypeParam>();
    const TypeParam copy = item;
    NoValues none;
    journaltest::fill(none, item);
    EXPECT_FALSE(item.sameContent(copy));
    EXPECT_TRUE(copy.sameContent(counted<TypeParam>()));
    item = copy;
    EXPECT_TRUE(item.sameContent(copy));
}

RC_GTEST_PROP(Contact, IsReadBackFromItsPrintableText, ()) {
    const auto contact = journaltest::some<Contact>();
    const std::string line = contact.serialize();
    RC_ASSERT(std::all_of(line.begin(), line.end(), [](char letter) {
        const auto byte = static_cast<unsigned char>(letter);
        return byte >= 0x20 && byte != 0x7f;
    }));
    auto read = journaltest::some<Contact>();
    RC_ASSERT(Contact::deserialize(line, read));
    RC_ASSERT(read == contact);
}

TEST(Contact, RefusesADamagedTextAndSkipsUnknownNames) {
    Contact contact;
    EXPECT_EQ(contact.getPhoneNumber(5), "");
    ASSERT_TRUE(Contact::deserialize("shoeSize=43;surname=before;", contact));
    for (const char* line : {"surname=Miller", "surname", "surname;", "surname=\\;", "surname=\\x4;",
                             "surname=\\x4g;", "surname=a\\y41;", "matchedKind=two;", "matchedKind=;",
                             "defaultNumber=99999999999;", "source=x;", "record=only-one;"}) {
        EXPECT_FALSE(Contact::deserialize(line, contact)) << line;
        EXPECT_EQ(contact.serialize(), "surname=before;") << line;
    }
}

}  // namespace
