#include "src/JournalServiceEvents/CallMap.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

#include "tests/support/CapturedLog.h"

namespace {

using journal::Call;
using journal::CallMap;
using journaltest::CapturedLog;

std::unique_ptr<Call> call(const char* callId, long start = 0) {
    return std::make_unique<Call>(Call::eIncoming, callId, start);
}

TEST(CallMap, KeepsTheFirstRecordOfAnId) {
    CallMap calls;
    Call* const first = calls.insertEntryToCallMap("7", call("7", 1));
    Call* const second = calls.insertEntryToCallMap("7", call("7", 2));
    EXPECT_EQ(second, first);
    EXPECT_EQ(calls.findCallFromId("7"), first);
    EXPECT_EQ(first->m_startTimeSec, 1);
    EXPECT_EQ(calls.getNumberOfCalls(), 1U);
}

TEST(CallMap, FindsNothingUnderAnUnknownIdAndSaysSo) {
    CallMap calls;
    calls.insertEntryToCallMap("7", call("7"));
    EXPECT_EQ(calls.findCallFromId("8"), nullptr);
    EXPECT_NE(calls.findCallFromId("7"), nullptr);
    EXPECT_TRUE(CapturedLog::contains("findCallFromId: callId[8] NOT found in mCalls[1]"))
        << CapturedLog::dump();
    EXPECT_TRUE(CapturedLog::contains("findCallFromId: callId[7] found in mCalls[1]")) << CapturedLog::dump();
}

TEST(CallMap, RemovesARecordByTheIdThatStandsInIt) {
    CallMap calls;
    const Call* const record = calls.insertEntryToCallMap("7", call("7"));
    EXPECT_TRUE(calls.removeCall(record->m_sCallId));
    EXPECT_FALSE(calls.removeCall("7"));
    EXPECT_EQ(calls.getNumberOfCalls(), 0U);
}

TEST(CallMap, RemovesAllCallsAndLogsEachOfThem) {
    CallMap calls;
    calls.insertEntryToCallMap("7", call("7"));
    calls.insertEntryToCallMap("8", call("8"));
    calls.removeAllCalls();
    EXPECT_EQ(calls.getNumberOfCalls(), 0U);
    EXPECT_EQ(CapturedLog::count("removeAllCalls():Call removed"), 2);
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

}  // namespace
