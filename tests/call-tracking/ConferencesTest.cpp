#include "src/JournalServiceEvents/Conferences.h"

#include <gtest/gtest.h>

#include "src/JournalServiceEvents/LineDevices.h"
#include "tests/support/CapturedLog.h"

namespace {

using journal::Conferences;
using journal::LineDevices;

TEST(Conferences, TakeTheFirstFreeOfTwoSlots) {
    Conferences conferences;
    int index = 7;
    EXPECT_TRUE(conferences.getNewConferenceIDIndex(index));
    EXPECT_EQ(index, 0);
    conferences.addConference(0, "c0");
    EXPECT_TRUE(conferences.getNewConferenceIDIndex(index));
    EXPECT_EQ(index, 1);
    conferences.addConference(1, "c1");
    EXPECT_EQ(conferences.getNumberOfConferences(), 2);
    EXPECT_FALSE(conferences.getNewConferenceIDIndex(index));
    EXPECT_EQ(index, -1);
}

TEST(Conferences, FillAFreedSlotAgainWhileTheOtherIsInUse) {
    Conferences conferences;
    conferences.addConference(0, "c0");
    conferences.addConference(1, "c1");
    conferences.members(0).push_back({"7", "4711"});
    conferences.removeMember(0, conferences.members(0).begin());
    int index = -1;
    EXPECT_TRUE(conferences.getNewConferenceIDIndex(index));
    EXPECT_EQ(index, 0);
    EXPECT_TRUE(conferences.searchConferenceIDIndex("c1", index));
    EXPECT_EQ(index, 1);
    EXPECT_FALSE(conferences.searchConferenceIDIndex("c0", index));
    EXPECT_EQ(index, -1);
}

TEST(Conferences, FindAMemberByItsDeviceInItsOwnConferenceOnly) {
    Conferences conferences;
    conferences.addConference(0, "c0");
    conferences.addConference(1, "c1");
    conferences.members(0) = {{"7", "4711"}, {"8", "4712"}};
    conferences.members(1) = {{"9", "4713"}};
    Conferences::Members::iterator member;
    ASSERT_TRUE(conferences.searchDeviceIDInConference(0, "4712", member));
    EXPECT_EQ(member->callId, "8");
    EXPECT_FALSE(conferences.searchDeviceIDInConference(1, "4712", member));
    conferences.removeMember(0, conferences.members(0).begin());
    EXPECT_EQ(conferences.getNumberOfConferences(), 2);
    EXPECT_TRUE(conferences.searchDeviceIDInConference(0, "4712", member));
}

TEST(Conferences, AreRemovedAllAtOnceWithALineEach) {
    Conferences conferences;
    conferences.addConference(1, "c1");
    conferences.removeAllConferences();
    conferences.removeAllConferences();
    EXPECT_EQ(conferences.getNumberOfConferences(), 0);
    EXPECT_EQ(journaltest::CapturedLog::count("removeAllConferences():Conference removed"), 1);
}

TEST(Conferences, CountZeroAsNoCallId) {
    EXPECT_TRUE(Conferences::isEmptyCallId(""));
    EXPECT_TRUE(Conferences::isEmptyCallId("0"));
    EXPECT_FALSE(Conferences::isEmptyCallId("00"));
}

TEST(LineDevices, KeepTheFirstDeviceOfAnIdAndLogCallsOfTheUnknown) {
    LineDevices devices;
    EXPECT_TRUE(devices.logsMissedCalls("2001"));
    EXPECT_TRUE(devices.insert("2001", {"m1", false, 2}));
    EXPECT_FALSE(devices.insert("2001", {"m2", true, 0}));
    ASSERT_NE(devices.find("2001"), nullptr);
    EXPECT_EQ(devices.find("2001")->monitorCrossRefId, "m1");
    EXPECT_FALSE(devices.logsMissedCalls("2001"));
    devices.clear();
    EXPECT_TRUE(devices.logsMissedCalls("2001"));
    EXPECT_TRUE(devices.devices().empty());
}

}  // namespace
