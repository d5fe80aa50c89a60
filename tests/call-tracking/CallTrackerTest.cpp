#include "src/JournalServiceEvents/CallTracker.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "platform/texts/SoftwareTypes.h"
#include "src/JournalService/JournalClock.h"
#include "src/JournalService/PhoneSettings.h"
#include "src/JournalServiceEvents/CallMap.h"
#include "tests/call-tracking/FakeFinishedCalls.h"
#include "tests/call-tracking/PartiesText.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeHardware.h"

namespace {

using journal::Call;
using journaltest::CapturedLog;
using journaltest::FakeHardware;
using journaltest::partiesText;

constexpr long kNow = journaltest::FakeClock::kStart;
constexpr int kCrest = 3;

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
               const char* remote = "", const char* name = "") {
        return tracker.onCallEvent(calls.findCallFromId(callId), state, direction, callId, remote, name, "",
                                   "", false);
    }

    journaltest::FakeClock clock;
    journal::JournalClock journalClock;
    journal::PhoneSettings settings;
    journal::CallMap calls;
    journaltest::FakeFinishedCalls finished{calls};
    journal::CallTracker tracker{calls, settings, journalClock, finished};
};

// ---- the state machine ----------------------------------------------------------------------------------------
//
// A line a state before, a column a new state:
//   a number   the state that is stored afterwards, the answer is true
//   x          "Wrong call transition", nothing stored, false
//   u          unexpected, nothing stored, false
//   Fn         filed by state n, the record is gone

struct Matrix {
    const char* name;
    Call::directions_t direction;
    bool treatAsIncoming;
    int hardware;
    std::array<const char*, 7> rows;
};

constexpr std::array kStatesBefore = {-1, 0, 1, 2, 3, 4, 7};

constexpr Matrix kMatrices[] = {
    {"incoming",
     Call::eIncoming,
     false,
     0,
     // new 0  1   2   3   4   5   6   7
     {{"0   1   2   3   F4  F-1 F6  7",     // -1
       "x   1   2   3   F4  F0  F6  7",     // 0
       "x   x   2   3   F4  F1  F6  7",     // 1
       "x   x   x   3   F4  F2  F6  7",     // 2
       "x   x   x   3   F4  F3  F6  7",     // 3
       "x   x   x   u   F4  F4  F6  4",     // 4
       "x   x   x   u   F4  F7  F6  x"}}},  // 7
    {"outgoing",
     Call::eOutgoing,
     false,
     0,
     {{"0   1   2   3   -1  F-1 F6  7", "x   1   2   3   0   F0  F6  7", "x   x   2   3   1   F1  F6  7",
       "x   x   x   3   2   F2  F6  7", "x   x   x   3   3   F3  F6  7", "x   x   x   u   4   F4  F6  4",
       "x   x   x   u   7   F7  F6  x"}}},
    {"outgoing under the Crest interface",
     Call::eOutgoing,
     false,
     kCrest,
     {{"0   1   2   3   F4  F-1 F6  7", "x   1   2   3   F4  F0  F6  7", "x   x   2   3   F4  F1  F6  7",
       "x   x   x   3   F4  F2  F6  7", "x   x   x   3   F4  F3  F6  7", "x   x   x   u   F4  F4  F6  4",
       "x   x   x   u   F4  F7  F6  x"}}},
    {"outgoing to be treated as incoming",
     Call::eOutgoing,
     true,
     0,
     {{"0   1   2   3   F4  F-1 F6  7", "x   1   2   3   F4  F0  F6  7", "x   x   2   3   F4  F1  F6  7",
       "x   x   x   3   F4  F2  F6  7", "x   x   x   3   F4  F3  F6  7", "x   x   x   4   F4  F4  F6  4",
       "x   x   x   3   F4  F7  F6  x"}}},
};

std::vector<std::string> words(const std::string& line) {
    std::vector<std::string> result;
    std::string word;
    for (const char c : line + " ") {
        if (c != ' ') {
            word += c;
        } else if (!word.empty()) {
            result.push_back(std::exchange(word, {}));
        }
    }
    return result;
}

class StateMachineTest : public CallTrackerTest, public testing::WithParamInterface<Matrix> {
protected:
    void expectCell(Call::states_t before, Call::states_t newState, const std::string& cell) {
        const Matrix& matrix = GetParam();
        SCOPED_TRACE("from " + std::to_string(before) + " to " + std::to_string(newState));
        calls.removeAllCalls();
        finished.filed.clear();
        CapturedLog::reset();
        Call* const call = record(matrix.direction, before);
        call->m_treatAsIncoming = matrix.treatAsIncoming;

        const bool answer = tracker.setCallState(call, newState, matrix.direction);

        const Call* const after = calls.findCallFromId("7");
        if (cell.front() == 'F') {
            EXPECT_EQ(finished.filed, std::vector<std::string>{"{7} " + cell.substr(1)});
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
        EXPECT_EQ(
            CapturedLog::contains("setCallState():Unexpected JS Call State(" + std::to_string(before) + ")"),
            cell == "u");
    }
};

TEST_P(StateMachineTest, GoesWhereTheTableSays) {
    FakeHardware::setSubPlatformVariant(GetParam().hardware);
    for (std::size_t row = 0; row < kStatesBefore.size(); ++row) {
        const auto cells = words(GetParam().rows[row]);
        ASSERT_EQ(cells.size(), 8U);
        for (int newState = 0; newState < 8; ++newState) {
            expectCell(static_cast<Call::states_t>(kStatesBefore[row]), static_cast<Call::states_t>(newState),
                       cells[static_cast<std::size_t>(newState)]);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(CallTracker, StateMachineTest, testing::ValuesIn(kMatrices), [](const auto& matrix) {
    std::string name;
    for (const std::string& word : words(matrix.param.name)) {
        name += static_cast<char>(std::toupper(word.front()));
        name += word.substr(1);
    }
    return name;
});

TEST_F(CallTrackerTest, RefusesAStateThatIsNone) {
    Call* const call = record(Call::eIncoming, Call::eDelivered);
    EXPECT_FALSE(tracker.setCallState(call, Call::eUnknown, Call::eIncoming));
    EXPECT_TRUE(CapturedLog::contains("setCallState():Unknown Call State"));
    EXPECT_FALSE(tracker.setCallState(nullptr, Call::eDelivered, Call::eIncoming));
    EXPECT_TRUE(CapturedLog::contains("setCallState():pCall is NULL"));
}

TEST_F(CallTrackerTest, DropsARecordOfTheOtherDirectionWithoutAnEntry) {
    record(Call::eOutgoing, Call::eOriginated);
    EXPECT_FALSE(event("7", Call::eDelivered, Call::eIncoming, "4711"));
    EXPECT_EQ(calls.getNumberOfCalls(), 0U);
    EXPECT_TRUE(finished.filed.empty());
    const auto lines = CapturedLog::lines();
    const auto warned = std::find_if(lines.begin(), lines.end(),
                                     [](const auto& line) { return line.text == "{7} Ambiguous direction"; });
    ASSERT_NE(warned, lines.end());
    EXPECT_EQ(warned->level, 3);
    EXPECT_EQ(warned->component, "Journal Service Events");
}

// ---- times ----------------------------------------------------------------------------------------------------

TEST_F(CallTrackerTest, NotesStartAnswerAndEnd) {
    event("7", Call::eDelivered, Call::eIncoming, "4711");
    EXPECT_EQ(calls.findCallFromId("7")->m_startTimeSec, kNow);
    clock.advance(5);
    event("7", Call::eEstablished, Call::eIncoming, "4711");
    EXPECT_EQ(calls.findCallFromId("7")->m_establishedTimeSec, kNow + 5);
    EXPECT_EQ(calls.findCallFromId("7")->m_endTimeSec, -1);
    clock.advance(60);
    event("7", Call::eCleared, Call::eDirectionUnknown);
    EXPECT_EQ(finished.endTimes, std::vector<long>{kNow + 65});
}

TEST_F(CallTrackerTest, GivesACallThatWasNeverAnsweredNoEnd) {
    event("7", Call::eDelivered, Call::eIncoming, "4711");
    clock.advance(5);
    event("7", Call::eCleared, Call::eDirectionUnknown);
    EXPECT_EQ(finished.endTimes, std::vector<long>{-1});
}

TEST_F(CallTrackerTest, KeepsTheTimeOfTheFirstAnswer) {
    event("7", Call::eEstablished, Call::eIncoming, "4711");
    clock.advance(5);
    event("7", Call::eEstablished, Call::eIncoming, "4711");
    EXPECT_EQ(calls.findCallFromId("7")->m_establishedTimeSec, kNow);
}

// ---- onCallEvent ----------------------------------------------------------------------------------------------

TEST_F(CallTrackerTest, MakesNothingOfAClearOfAnUnknownCall) {
    for (const char* type : {softwareTypes::qorvex, softwareTypes::sip}) {
        isA(type);
        EXPECT_FALSE(event("7", Call::eCleared, Call::eIncoming)) << type;
        EXPECT_EQ(calls.getNumberOfCalls(), 0U) << type;
        EXPECT_TRUE(finished.filed.empty()) << type;
    }
}

TEST_F(CallTrackerTest, DropsAnEventWithoutACallIdAndSaysSoInEachFlavoursWords) {
    EXPECT_FALSE(event("", Call::eDelivered, Call::eIncoming, "4711", "Ann"));
    EXPECT_TRUE(CapturedLog::contains("onCallEvent():Call identifier is empty"));
    isA(softwareTypes::sip);
    EXPECT_FALSE(event("", Call::eDelivered, Call::eIncoming, "4711", "Ann"));
    EXPECT_TRUE(
        CapturedLog::contains("onCallEvent():state: 2, direction: 0, call id: , remote party: 4711, remote "
                              "name: Ann, diverted party: , diverted name: "));
    EXPECT_EQ(calls.getNumberOfCalls(), 0U);
}

TEST_F(CallTrackerTest, UsesTheRuleSetOfTheFlavour) {
    const auto rings = [this] {
        calls.removeAllCalls();
        tracker.onCallEvent(nullptr, Call::eDelivered, Call::eIncoming, "7", "4711", "Ann", "600", "Sales",
                            false);
        return partiesText(*calls.findCallFromId("7"));
    };
    EXPECT_EQ(rings(), "remote[600 Sales] connected[4711 Ann]");
    isA(softwareTypes::sip);
    EXPECT_EQ(rings(), "called[600 Sales] remote[4711 Ann] connected[600 Sales] redirecting[600 Sales]");
    isA("");
    EXPECT_EQ(rings(), "remote[600 Sales] connected[4711 Ann]");
}

TEST_F(CallTrackerTest, TreatsAsIncomingOnSipPhonesOnlyAndForGood) {
    const auto originates = [this](bool treatAsIncoming) {
        tracker.onCallEvent(calls.findCallFromId("7"), Call::eOriginated, Call::eOutgoing, "7", "", "", "",
                            "", treatAsIncoming);
        return calls.findCallFromId("7")->m_treatAsIncoming;
    };
    EXPECT_FALSE(originates(true));
    isA(softwareTypes::sip);
    EXPECT_FALSE(originates(false));
    EXPECT_TRUE(originates(true));
    EXPECT_TRUE(originates(false));
}

TEST_F(CallTrackerTest, FillsInADirectionFromEitherSide) {
    record(Call::eDirectionUnknown, Call::eUnknown);
    EXPECT_TRUE(event("7", Call::eOffered, Call::eDirectionUnknown));
    EXPECT_EQ(calls.findCallFromId("7")->m_Direction, Call::eDirectionUnknown);
    EXPECT_TRUE(event("7", Call::eDelivered, Call::eIncoming));
    EXPECT_EQ(calls.findCallFromId("7")->m_Direction, Call::eIncoming);
    EXPECT_TRUE(event("7", Call::eEstablished, Call::eDirectionUnknown));
    EXPECT_EQ(calls.findCallFromId("7")->m_State, Call::eEstablished);
}

TEST_F(CallTrackerTest, LogsTheEventAndWhatItKnewBefore) {
    event("7", Call::eDelivered, Call::eIncoming, "4711", "Ann");
    EXPECT_TRUE(
        CapturedLog::contains("onCallEvent():callid: '7', state: 2, remoteparty: '4711', remotepartyname: "
                              "'Ann', divertedparty: '', divertedpartyname: ''"));
    EXPECT_EQ(CapturedLog::count("current pCall"), 0);
    event("7", Call::eEstablished, Call::eIncoming);
    EXPECT_EQ(CapturedLog::count(
                  "contents: dialled:'', remoteparty: '4711', remotepartyname: 'Ann', divertedparty: "
                  "'', divertedpartyname: ''"),
              1);
    EXPECT_TRUE(
        CapturedLog::contains("setCallState():{7} State: 3, Old State: 2, Direction: 0, TreatAsIncoming: N"));
}

// ---- missed entries that a call settles -----------------------------------------------------------------------

TEST_F(CallTrackerTest, SettlesAMissedEntryWhenAnOutgoingCallIsAnswered) {
    struct Row {
        Call::directions_t direction;
        Call::states_t before;
        bool wanted;
        bool settles;
    };
    const Row rows[] = {
        {Call::eOutgoing, Call::eOriginated, true, true},   {Call::eOutgoing, Call::eDelivered, true, true},
        {Call::eOutgoing, Call::eUnknown, true, false},     {Call::eOutgoing, Call::eOffered, true, false},
        {Call::eOutgoing, Call::eEstablished, true, false}, {Call::eIncoming, Call::eDelivered, true, false},
        {Call::eOutgoing, Call::eDelivered, false, false},
    };
    for (const Row& row : rows) {
        calls.removeAllCalls();
        finished.settled.clear();
        settings.change([&row](auto& values) { values.m_deleteMissedWhenCalled = row.wanted; });
        tracker.setCallState(record(row.direction, row.before), Call::eEstablished, row.direction);
        EXPECT_EQ(finished.settled.size(), row.settles ? 1U : 0U)
            << "direction " << row.direction << ", before " << row.before << ", wanted " << row.wanted;
    }
}

// ---- a call that changes its id -------------------------------------------------------------------------------

TEST_F(CallTrackerTest, FilesTheOldLegAndGoesOnUnderTheNewId) {
    Call* const old = record(Call::eIncoming, Call::eEstablished, "7");
    old->m_sRemoteParty = "4711";
    old->m_establishedTimeSec = kNow;
    clock.advance(30);

    const Call* const call = tracker.updateCallMap("7", "8");

    EXPECT_EQ(finished.filed, std::vector<std::string>{"{7} 3"});
    EXPECT_EQ(finished.endTimes, std::vector<long>{kNow + 30});
    EXPECT_EQ(calls.getNumberOfCalls(), 1U);
    ASSERT_EQ(call, calls.findCallFromId("8"));
    EXPECT_EQ(call->m_State, Call::eEstablished);
    EXPECT_EQ(call->m_Direction, Call::eIncoming);
    EXPECT_EQ(call->m_startTimeSec, kNow + 30);
    EXPECT_EQ(partiesText(*call), "");
    EXPECT_TRUE(CapturedLog::contains("updateCallMap():[7][8]"));
}

TEST_F(CallTrackerTest, MakesARecordOfNothingForAnUnknownOldId) {
    const Call* const call = tracker.updateCallMap("7", "8");
    ASSERT_NE(call, nullptr);
    EXPECT_EQ(call->m_State, Call::eUnknown);
    EXPECT_EQ(call->m_Direction, Call::eDirectionUnknown);
    EXPECT_TRUE(finished.filed.empty());
}

TEST_F(CallTrackerTest, LeavesNoOldLegBehindThatFilingWouldKeep) {
    record(Call::eOutgoing, Call::eForwarded, "7");
    finished.keepsRecords = true;
    tracker.updateCallMap("7", "8");
    EXPECT_EQ(calls.findCallFromId("7"), nullptr);
    EXPECT_EQ(calls.getNumberOfCalls(), 1U);
}

TEST_F(CallTrackerTest, SurvivesANewIdThatIsTheOldOneOrIsTakenAlready) {
    record(Call::eIncoming, Call::eEstablished, "7");
    EXPECT_EQ(tracker.updateCallMap("7", "7"), calls.findCallFromId("7"));
    const Call* const other = record(Call::eOutgoing, Call::eDelivered, "8");
    EXPECT_EQ(tracker.updateCallMap("7", "8"), other);
    EXPECT_EQ(calls.getNumberOfCalls(), 1U);
    EXPECT_EQ(finished.filed.size(), 2U);
}

}  // namespace
