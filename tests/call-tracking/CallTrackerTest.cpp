#include "src/JournalServiceEvents/CallTracker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "platform/texts/SoftwareTypes.h"
#include "src/JournalService/JournalClock.h"
#include "src/JournalService/PhoneSettings.h"
#include "src/JournalServiceEvents/CallMap.h"
#include "src/JournalServiceEvents/FinishedCallsIfc.h"
#include "tests/call-tracking/Line.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeHardware.h"
#include "tests/support/Table.h"

namespace {

using journal::Call;
using journaltest::CapturedLog;
using journaltest::FakeHardware;

constexpr long kNow = journaltest::FakeClock::kStart;

/// Notes what the state machine hands over, and removes the record as the real part does.
class FinishedCalls final : public journal::FinishedCallsIfc {
public:
    explicit FinishedCalls(journal::CallMap& calls) : m_calls(calls) {}

    bool createCallEntryAndRemoveCall(const Call* call, Call::states_t state) override {
        filed.push_back(call->m_sCallId + " as " + std::to_string(state));
        endTimes.push_back(call->m_endTimeSec);
        if (!keepsRecords) {
            m_calls.removeCall(call->m_sCallId);
        }
        return true;
    }
    void findAndDeleteMissedEntryWhenCalled(Call* /*call*/) override { ++settled; }

    bool keepsRecords = false;
    std::vector<std::string> filed;
    std::vector<long> endTimes;
    int settled = 0;

private:
    journal::CallMap& m_calls;
};

using Filed = std::vector<std::string>;

class CallTrackerTest : public testing::Test {
protected:
    CallTrackerTest() {
        journalClock.adoptClock(&clock);
        isA(softwareTypes::qorvex);
    }

    void isA(const char* softwareType) {
        settings.change([softwareType](auto& values) { values.m_softwareType = softwareType; });
    }
    Call* record(Call::directions_t direction, Call::states_t state, const char* callId = "7") {
        Call* const call =
            calls.insertEntryToCallMap(callId, std::make_unique<Call>(direction, callId, kNow));
        call->m_State = state;
        return call;
    }
    bool event(const char* callId, Call::states_t state, Call::directions_t direction,
               bool treatAsIncoming = false) {
        return tracker.onCallEvent(calls.findCallFromId(callId), state, direction, callId, "", "", "", "",
                                   treatAsIncoming);
    }

    /// A row of a matrix: the state before, then for each new state from 0 to 7 what comes of it.
    ///     a number   the state that is stored afterwards, the answer is true
    ///     x          "Wrong call transition", nothing stored, false
    ///     u          unexpected, nothing stored, false
    ///     Fn         filed by state n, the record is gone
    void expectMatrix(Call::directions_t direction, bool treatAsIncoming, const char* matrix) {
        for (const auto& row : journaltest::table(2, matrix)) {
            const auto cells = journaltest::split(row[1], ' ');
            ASSERT_EQ(cells.size(), 8U) << row[0];
            for (int newState = 0; newState < 8; ++newState) {
                const auto before = static_cast<Call::states_t>(std::stoi(row[0]));
                SCOPED_TRACE("from " + row[0] + " to " + std::to_string(newState));
                calls.removeAllCalls();
                finished.filed.clear();
                Call* const call = record(direction, before);
                call->m_treatAsIncoming = treatAsIncoming;
                expectCell(*call, static_cast<Call::states_t>(newState),
                           cells[static_cast<std::size_t>(newState)]);
            }
        }
    }

    void expectCell(Call& call, Call::states_t newState, const std::string& cell) {
        CapturedLog::reset();
        const auto before = call.m_State;
        const bool answer = tracker.setCallState(&call, newState, call.m_Direction);
        const Call* const after = calls.findCallFromId("7");
        if (cell.front() == 'F') {
            EXPECT_EQ(finished.filed, Filed{"7 as " + cell.substr(1)});
            EXPECT_EQ(after, nullptr);
            EXPECT_TRUE(answer);
            return;
        }
        EXPECT_TRUE(finished.filed.empty());
        ASSERT_NE(after, nullptr);
        const bool refused = cell == "x" || cell == "u";
        EXPECT_EQ(answer, !refused);
        EXPECT_EQ(after->m_State, refused ? before : std::stoi(cell));
        EXPECT_EQ(CapturedLog::contains("setCallState():Wrong call transition"), cell == "x");
        EXPECT_EQ(CapturedLog::contains("setCallState():Unexpected JS Call State"), cell == "u");
    }

    journaltest::FakeClock clock;
    journal::JournalClock journalClock;
    journal::PhoneSettings settings;
    journal::CallMap calls;
    FinishedCalls finished{calls};
    journal::CallTracker tracker{calls, settings, journalClock, finished};
};

// ---- the state machine ----------------------------------------------------------------------------------------

TEST_F(CallTrackerTest, FollowsAnIncomingCall) {
    expectMatrix(Call::eIncoming, false, R"(
-1 | 0 1 2 3 F4 F-1 F6 7
 0 | x 1 2 3 F4 F0  F6 7
 1 | x x 2 3 F4 F1  F6 7
 2 | x x x 3 F4 F2  F6 7
 3 | x x x 3 F4 F3  F6 7
 4 | x x x u F4 F4  F6 4
 7 | x x x u F4 F7  F6 x
)");
}

TEST_F(CallTrackerTest, FollowsAnOutgoingCall) {
    expectMatrix(Call::eOutgoing, false, R"(
-1 | 0 1 2 3 -1 F-1 F6 7
 0 | x 1 2 3 0  F0  F6 7
 1 | x x 2 3 1  F1  F6 7
 2 | x x x 3 2  F2  F6 7
 3 | x x x 3 3  F3  F6 7
 4 | x x x u 4  F4  F6 4
 7 | x x x u 7  F7  F6 x
)");
    FakeHardware::setSubPlatformVariant(3);
    expectMatrix(Call::eOutgoing, false, R"(
-1 | 0 1 2 3 F4 F-1 F6 7
 0 | x 1 2 3 F4 F0  F6 7
 1 | x x 2 3 F4 F1  F6 7
 2 | x x x 3 F4 F2  F6 7
 3 | x x x 3 F4 F3  F6 7
 4 | x x x u F4 F4  F6 4
 7 | x x x u F4 F7  F6 x
)");
}

TEST_F(CallTrackerTest, FollowsAnOutgoingCallThatCountsAsIncoming) {
    expectMatrix(Call::eOutgoing, true, R"(
-1 | 0 1 2 3 F4 F-1 F6 7
 0 | x 1 2 3 F4 F0  F6 7
 1 | x x 2 3 F4 F1  F6 7
 2 | x x x 3 F4 F2  F6 7
 3 | x x x 3 F4 F3  F6 7
 4 | x x x 4 F4 F4  F6 4
 7 | x x x 3 F4 F7  F6 x
)");
}

TEST_F(CallTrackerTest, RefusesWhatCannotBeFollowed) {
    EXPECT_FALSE(
        tracker.setCallState(record(Call::eIncoming, Call::eDelivered), Call::eUnknown, Call::eIncoming));
    EXPECT_FALSE(tracker.setCallState(nullptr, Call::eDelivered, Call::eIncoming));
    calls.removeAllCalls();
    for (const char* type : {softwareTypes::qorvex, softwareTypes::sip}) {
        isA(type);
        EXPECT_FALSE(event("7", Call::eCleared, Call::eIncoming)) << "a clear of an unknown call, " << type;
        EXPECT_FALSE(event("", Call::eDelivered, Call::eIncoming)) << "no call id, " << type;
    }
    EXPECT_EQ(calls.getNumberOfCalls(), 0U);
    EXPECT_TRUE(finished.filed.empty());
}

TEST_F(CallTrackerTest, DropsARecordOfTheOtherDirectionWithoutAnEntry) {
    record(Call::eOutgoing, Call::eOriginated);
    EXPECT_FALSE(event("7", Call::eDelivered, Call::eIncoming));
    EXPECT_EQ(calls.getNumberOfCalls(), 0U);
    EXPECT_TRUE(finished.filed.empty());
    const auto lines = CapturedLog::lines();
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [](const auto& line) {
        return line.text == "{7} Ambiguous direction" && line.level == 3;
    }));
}

TEST_F(CallTrackerTest, NotesStartFirstAnswerAndEnd) {
    event("7", Call::eDelivered, Call::eIncoming);
    clock.advance(5);
    event("7", Call::eEstablished, Call::eIncoming);
    clock.advance(5);
    event("7", Call::eEstablished, Call::eIncoming);
    const Call* const call = calls.findCallFromId("7");
    EXPECT_EQ(call->m_startTimeSec, kNow);
    EXPECT_EQ(call->m_establishedTimeSec, kNow + 5);
    EXPECT_EQ(call->m_endTimeSec, -1);
    clock.advance(60);
    event("7", Call::eCleared, Call::eDirectionUnknown);
    event("8", Call::eDelivered, Call::eIncoming);
    event("8", Call::eCleared, Call::eDirectionUnknown);
    EXPECT_EQ(finished.endTimes, (std::vector<long>{kNow + 70, -1})) << "a call never answered has no end";
}

TEST_F(CallTrackerTest, TreatsAsIncomingOnSipPhonesOnlyAndForGood) {
    const auto originates = [this](bool treatAsIncoming) {
        event("7", Call::eOriginated, Call::eOutgoing, treatAsIncoming);
        return calls.findCallFromId("7")->m_treatAsIncoming;
    };
    EXPECT_FALSE(originates(true));
    isA(softwareTypes::sip);
    EXPECT_FALSE(originates(false));
    EXPECT_TRUE(originates(true));
    EXPECT_TRUE(originates(false));
}

TEST_F(CallTrackerTest, FillsInADirectionFromEitherSide) {
    const Call* const call = record(Call::eDirectionUnknown, Call::eUnknown);
    EXPECT_TRUE(event("7", Call::eOffered, Call::eDirectionUnknown));
    EXPECT_EQ(call->m_Direction, Call::eDirectionUnknown);
    EXPECT_TRUE(event("7", Call::eDelivered, Call::eIncoming));
    EXPECT_EQ(call->m_Direction, Call::eIncoming);
    EXPECT_TRUE(event("7", Call::eEstablished, Call::eDirectionUnknown));
    EXPECT_EQ(call->m_State, Call::eEstablished);
}

TEST_F(CallTrackerTest, SettlesAMissedEntryWhenAnOutgoingCallIsAnswered) {
    for (const auto& row : journaltest::table(4, R"(
out | 0  | wanted | settles
out | 2  | wanted | settles
out | -1 | wanted | no
out | 1  | wanted | no
out | 3  | wanted | no
in  | 2  | wanted | no
out | 2  | no     | no
)")) {
        calls.removeAllCalls();
        finished.settled = 0;
        settings.change([&row](auto& values) { values.m_deleteMissedWhenCalled = row[2] == "wanted"; });
        const auto direction = row[0] == "out" ? Call::eOutgoing : Call::eIncoming;
        tracker.setCallState(record(direction, static_cast<Call::states_t>(std::stoi(row[1]))),
                             Call::eEstablished, direction);
        EXPECT_EQ(finished.settled, row[3] == "settles" ? 1 : 0) << row[0] << " " << row[1];
    }
}

// ---- a call that changes its id -------------------------------------------------------------------------------

TEST_F(CallTrackerTest, FilesTheOldLegAndGoesOnUnderTheNewId) {
    record(Call::eIncoming, Call::eEstablished, "7")->m_sRemoteParty = "4711";
    clock.advance(30);
    const Call* const call = tracker.updateCallMap("7", "8");
    EXPECT_EQ(finished.filed, Filed{"7 as 3"});
    EXPECT_EQ(finished.endTimes, std::vector<long>{kNow + 30});
    EXPECT_EQ(calls.getNumberOfCalls(), 1U);
    ASSERT_EQ(call, calls.findCallFromId("8"));
    EXPECT_EQ(call->m_State, Call::eEstablished);
    EXPECT_EQ(call->m_Direction, Call::eIncoming);
    EXPECT_EQ(call->m_startTimeSec, kNow + 30);
    EXPECT_EQ(journaltest::partiesText(*call), "");
}

TEST_F(CallTrackerTest, SurvivesAnIdThatIsUnknownKeptOrTakenAlready) {
    const Call* const made = tracker.updateCallMap("6", "7");
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->m_State, Call::eUnknown);
    EXPECT_EQ(made->m_Direction, Call::eDirectionUnknown);

    EXPECT_EQ(tracker.updateCallMap("7", "7"), calls.findCallFromId("7"));
    const Call* const other = record(Call::eOutgoing, Call::eDelivered, "8");
    EXPECT_EQ(tracker.updateCallMap("7", "8"), other);
    EXPECT_EQ(calls.getNumberOfCalls(), 1U);
    EXPECT_EQ(finished.filed.size(), 2U);

    finished.keepsRecords = true;
    tracker.updateCallMap("8", "9");
    EXPECT_EQ(calls.findCallFromId("8"), nullptr) << "nothing would ever end the old leg";
    EXPECT_EQ(calls.getNumberOfCalls(), 1U);
}

}  // namespace
