#include "src/JournalServiceEvents/CallMap.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

#include "src/JournalServiceEvents/Conferences.h"

namespace {

using journal::Call;
using journal::CallMap;
using journal::Conferences;

std::unique_ptr<Call> call(const char* callId, long start = 0) {
    return std::make_unique<Call>(Call::eIncoming, callId, start);
}

TEST(CallMap, KeepsTheFirstRecordOfAnIdUntilItIsRemovedByTheIdThatStandsInIt) {
    CallMap calls;
    Call* const first = calls.insertEntryToCallMap("7", call("7", 1));
    EXPECT_EQ(calls.insertEntryToCallMap("7", call("7", 2)), first);
    EXPECT_EQ(first->m_startTimeSec, 1);
    EXPECT_EQ(calls.findCallFromId("8"), nullptr);
    EXPECT_TRUE(calls.removeCall(first->m_sCallId));
    EXPECT_FALSE(calls.removeCall("7"));
    EXPECT_EQ(calls.getNumberOfCalls(), 0U);
}

TEST(CallMap, LetsTheThreadThatHoldsTheLockTakeItAgain) {
    CallMap calls;
    std::atomic<bool> entered{false};
    std::thread other;
    {
        const CallMap::Section outer(calls.m_callMapLock);
        {
            const CallMap::Section inner(calls.m_callMapLock);
            calls.insertEntryToCallMap("7", call("7"));
        }
        other = std::thread([&calls, &entered] {
            const CallMap::Section section(calls.m_callMapLock);
            entered = true;
            calls.removeCall("7");
        });
        // The inner section has ended, the lock is still held: the record is there until the outer one ends too.
        EXPECT_NE(calls.findCallFromId("7"), nullptr);
        EXPECT_FALSE(entered);
    }
    other.join();
    EXPECT_EQ(calls.getNumberOfCalls(), 0U);
}

TEST(Conferences, TakeTheFirstFreeOfTwoSlotsAndFillAFreedOneAgain) {
    Conferences conferences;
    int index = 7;
    for (const int slot : {0, 1}) {
        EXPECT_TRUE(conferences.getNewConferenceIDIndex(index));
        EXPECT_EQ(index, slot);
        conferences.addConference(slot, slot == 0 ? "c0" : "c1");
    }
    EXPECT_EQ(conferences.getNumberOfConferences(), 2);
    EXPECT_FALSE(conferences.getNewConferenceIDIndex(index));
    EXPECT_EQ(index, -1);

    conferences.members(0).push_back({"7", "4711"});
    conferences.removeMember(0, conferences.members(0).begin());
    EXPECT_TRUE(conferences.searchConferenceIDIndex("c1", index));
    EXPECT_EQ(index, 1);
    EXPECT_FALSE(conferences.searchConferenceIDIndex("c0", index)) << "its last member has left";
    EXPECT_EQ(index, -1);
    EXPECT_TRUE(conferences.getNewConferenceIDIndex(index));
    EXPECT_EQ(index, 0);
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
    EXPECT_TRUE(conferences.searchDeviceIDInConference(0, "4712", member));
}

}  // namespace
