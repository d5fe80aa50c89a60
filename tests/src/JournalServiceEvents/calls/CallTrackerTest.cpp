// The state machine by itself: which state follows on which, and what is filed then.

#include "src/JournalServiceEvents/calls/CallTracker.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "host/services/HardwareVariant.h"
#include "platform/texts/SoftwareTypes.h"
#include "src/JournalService/base/JournalClock.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalServiceEvents/calls/CallMap.h"
#include "src/JournalServiceEvents/calls/FinishedCallsIfc.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/Table.h"

namespace {

using journal::Call;
using journaltest::CapturedLog;

/// Notes what the state machine hands over, and removes the record as the real part does.
class FinishedCalls final : public journal::FinishedCallsIfc {
public:
    explicit FinishedCalls(journal::CallMap& calls) : m_calls(calls) {}

    bool createCallEntryAndRemoveCall(const Call* call, Call::states_t state) override {
        filed += "F" + std::to_string(state);
        return m_calls.removeCall(call->m_sCallId);
    }
    void findAndDeleteMissedEntryWhenCalled(Call* /*call*/) override {}

    std::string filed;

private:
    journal::CallMap& m_calls;
};

class CallTrackerTest : public testing::Test {
protected:
    CallTrackerTest() {
        settings.change([](auto& values) { values.m_softwareType = softwareTypes::qorvex; });
    }

    Call* record(Call::directions_t direction, Call::states_t state) {
        Call* const call = calls.insertEntryToCallMap("7", std::make_unique<Call>(direction, "7", 0));
        call->m_State = state;
        return call;
    }
    /// What comes of a new state, as the matrix below says it.
    std::string outcomeOf(Call& call, int newState) {
        CapturedLog::reset();
        finished.filed.clear();
        const auto before = call.m_State;
        const bool answer =
            tracker.setCallState(&call, static_cast<Call::states_t>(newState), call.m_Direction);
        const Call* const after = calls.findCallFromId("7");
        if (after == nullptr) {
            return finished.filed;
        }
        if (answer) {
            return finished.filed + std::to_string(after->m_State);
        }
        EXPECT_EQ(after->m_State, before);
        return CapturedLog::contains("setCallState():Wrong call transition")      ? "x"
               : CapturedLog::contains("setCallState():Unexpected JS Call State") ? "u"
                                                                                  : "?";
    }

    journal::JournalClock journalClock;
    journal::PhoneSettings settings;
    journal::CallMap calls;
    FinishedCalls finished{calls};
    journal::CallTracker tracker{calls, settings, journalClock, finished};
};

// The state before, then for each new state from 0 to 7 what comes of it:
//     a number   the state that is stored afterwards, the answer is true
//     x          "Wrong call transition", nothing stored, false
//     u          unexpected, nothing stored, false
//     Fn         filed by state n, the record is gone
// Of a cell's two outcomes the second is, for an answer (3), that of an outgoing call that counts as incoming, and for a
// forwarding (4) that of any other outgoing call, except under Crest.
TEST_F(CallTrackerTest, FollowsTheMatrixOfStates) {
    struct Kind {
        const char* name;
        Call::directions_t direction;
        bool countsAsIncoming;
        int hardware;
    };
    const Kind kinds[] = {{"incoming", Call::eIncoming, false, 0},
                          {"outgoing", Call::eOutgoing, false, 0},
                          {"outgoing, Crest", Call::eOutgoing, false, 3},
                          {"as incoming", Call::eOutgoing, true, 0}};
    for (const auto& row : journaltest::table(2, R"(
-1 | 0 1 2 3   F4/-1 F-1 F6 7
 0 | x 1 2 3   F4/0  F0  F6 7
 1 | x x 2 3   F4/1  F1  F6 7
 2 | x x x 3   F4/2  F2  F6 7
 3 | x x x 3   F4/3  F3  F6 7
 4 | x x x u/4 F4/4  F4  F6 4
 7 | x x x u/3 F4/7  F7  F6 x
)")) {
        const auto cells = journaltest::split(row[1], ' ');
        ASSERT_EQ(cells.size(), 8U);
        for (const Kind& kind : kinds) {
            host::HardwareVariant::set(kind.hardware);
            for (int newState = 0; newState < 8; ++newState) {
                SCOPED_TRACE(std::string(kind.name) + " from " + row[0] + " to " + std::to_string(newState));
                const auto outcomes = journaltest::split(cells[static_cast<std::size_t>(newState)], '/');
                const bool staysOut = kind.direction == Call::eOutgoing && !kind.countsAsIncoming;
                const bool second = newState == 3 ? kind.countsAsIncoming : staysOut && kind.hardware == 0;
                calls.removeAllCalls();
                Call* const call = record(kind.direction, static_cast<Call::states_t>(std::stoi(row[0])));
                call->m_treatAsIncoming = kind.countsAsIncoming;
                EXPECT_EQ(outcomeOf(*call, newState), second ? outcomes.back() : outcomes.front());
            }
        }
    }
    host::HardwareVariant::set(0);
}

TEST_F(CallTrackerTest, RefusesWhatCannotBeFollowed) {
    EXPECT_EQ(outcomeOf(*record(Call::eIncoming, Call::eDelivered), Call::eUnknown), "?");
    EXPECT_FALSE(tracker.setCallState(nullptr, Call::eDelivered, Call::eIncoming));
    for (const char* type : {softwareTypes::qorvex, softwareTypes::sip}) {
        settings.change([type](auto& values) { values.m_softwareType = type; });
        EXPECT_FALSE(
            tracker.onCallEvent(nullptr, Call::eDelivered, Call::eIncoming, "", "", "", "", "", false))
            << "no call id, " << type;
    }
    EXPECT_EQ(calls.getNumberOfCalls(), 1U);
}

}  // namespace
