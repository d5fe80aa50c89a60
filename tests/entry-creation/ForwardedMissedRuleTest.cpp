// One call that the switch reports as missed and as forwarded stands in one list only. Five seconds apart it is the same
// call, six seconds apart it is not.

#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "tests/entry-creation/EntryRig.h"

namespace journaltest {
namespace {

const Party kCaller{"4711"};

struct Row {
    const char* name;
    long secondsBetween;
    const char* second;  // who the second call is from
    bool sameCall;
};

std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << row.name;
}

class ForwardedMissedRule : public testing::TestWithParam<Row> {
protected:
    ForwardedMissedRule() {
        rig.settings.change([](journal::SettingValues& values) { values.m_serverBasedFeatures = true; });
    }

    EntryRig rig;
};

TEST_P(ForwardedMissedRule, KeepsAMissedCallOutThatWasJustForwarded) {
    rig.forwards(kCaller);
    rig.time.advance(GetParam().secondsBetween);
    EXPECT_EQ(rig.misses({GetParam().second}), !GetParam().sameCall);
    EXPECT_EQ(rig.items<MissedCallItem>().size(), GetParam().sameCall ? 0U : 1U);
}

TEST_P(ForwardedMissedRule, TakesAMissedItemBackWhenItsOnlyCallIsForwarded) {
    rig.misses(kCaller);
    rig.time.advance(GetParam().secondsBetween);
    rig.forget();
    EXPECT_TRUE(rig.forwards({GetParam().second}));
    EXPECT_EQ(rig.items<MissedCallItem>().size(), GetParam().sameCall ? 0U : 1U);
    if (GetParam().sameCall) {
        EXPECT_EQ(rig.heard().rfind("missedCount(0); missed(-, -, 3); forwarded(", 0), 0U) << rig.heard();
        EXPECT_EQ(rig.written().rfind("delete MissedCalls 1; write ForwardedCalls ", 0), 0U) << rig.written();
    }
    EXPECT_EQ(rig.listContents(), rig.databaseContents());
}

TEST_P(ForwardedMissedRule, ShortensAMissedItemByTheCallThatIsForwarded) {
    rig.misses(kCaller);
    rig.lists.ageMissedCall(rig.entryIds());
    rig.time.advance(3600);
    rig.misses(kCaller);
    rig.time.advance(GetParam().secondsBetween);
    rig.forget();
    rig.forwards({GetParam().second});

    const auto missed = rig.items<MissedCallItem>();
    ASSERT_EQ(missed.size(), 1U);
    EXPECT_EQ(missed.front().getMissedCallInfoList().size(), GetParam().sameCall ? 1U : 2U);
    EXPECT_FALSE(missed.front().getViewed()) << "other phones than SIP phones do not remember";
    if (GetParam().sameCall) {
        EXPECT_EQ(missed.front().getMissedCallInfoList().front().getTimeAndDate(), "2026-11-21T05:22:05Z");
        EXPECT_EQ(rig.written().rfind("write MissedCalls 1; write ForwardedCalls ", 0), 0U) << rig.written();
    }
    EXPECT_EQ(rig.listContents(), rig.databaseContents());
}

const Row kRows[] = {
    {"AtOnce", 0, "4711", true},
    {"AfterFiveSeconds", 5, "4711", true},
    {"AfterSixSeconds", 6, "4711", false},
    {"FromSomebodyElse", 1, "4712", false},
    {"WithTheClockSetBack", -60, "4711", true},
};
INSTANTIATE_TEST_SUITE_P(Table, ForwardedMissedRule, testing::ValuesIn(kRows), kRowName);

TEST_F(ForwardedMissedRule, GivesAShortenedItemItsViewedMarkBackOnASipPhone) {
    rig.phoneIs(softwareTypes::sip);
    rig.misses(kCaller);
    rig.lists.ageMissedCall(rig.entryIds());
    rig.time.advance(3600);
    rig.misses(kCaller);
    EXPECT_FALSE(rig.items<MissedCallItem>().front().getViewed());
    rig.forget();
    rig.forwards(kCaller);
    EXPECT_TRUE(rig.items<MissedCallItem>().front().getViewed());
    EXPECT_EQ(rig.heard().rfind("missedCount(0); missed(-, -, 3); ", 0), 0U) << rig.heard();
}

TEST_F(ForwardedMissedRule, LooksAtTheFrontItemsOnly) {
    rig.misses(kCaller);
    rig.misses({"4712"});
    rig.forwards(kCaller);
    EXPECT_EQ(rig.items<MissedCallItem>().size(), 2U);
    rig.forwards({"4713"});
    rig.time.advance(1);
    EXPECT_TRUE(rig.misses(kCaller));
}

TEST_F(ForwardedMissedRule, StartsAfreshOnceItHasRefusedAMissedCall) {
    rig.misses(kCaller);
    rig.time.advance(3);
    rig.forwards({"4712"});
    EXPECT_FALSE(rig.misses({"4712"}));
    rig.forwards(kCaller);
    EXPECT_EQ(rig.items<MissedCallItem>().size(), 1U) << "the time of the missed call is forgotten";
}

TEST_F(ForwardedMissedRule, WorksOnlyWithServerBasedFeaturesOn) {
    rig.settings.change([](journal::SettingValues& values) { values.m_serverBasedFeatures = false; });
    rig.misses(kCaller);
    rig.forwards(kCaller);
    rig.time.advance(1);
    EXPECT_TRUE(rig.misses(kCaller));
    EXPECT_EQ(rig.items<MissedCallItem>().front().getMissedCallInfoList().size(), 2U);
}

TEST_F(ForwardedMissedRule, LetsEverythingInWithoutAClock) {
    rig.clock.adoptClock(nullptr);
    rig.forwards(kCaller);
    EXPECT_TRUE(rig.misses(kCaller));
    EXPECT_TRUE(rig.forwards(kCaller));
    EXPECT_EQ(rig.items<MissedCallItem>().size(), 1U);
}

}  // namespace
}  // namespace journaltest
