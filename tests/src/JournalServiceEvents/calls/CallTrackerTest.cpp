// The state machine by itself: the state after each event, and the calls that are filed.

#include "src/JournalServiceEvents/calls/CallTracker.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/texts/SoftwareTypes.h"
#include "src/JournalService/base/JournalClock.h"
#include "src/JournalService/base/PhoneSettings.h"
#include "src/JournalServiceEvents/calls/CallMap.h"
#include "src/JournalServiceEvents/calls/FinishedCallsIfc.h"
#include "tests/support/CallTexts.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeHardware.h"
#include "tests/support/Table.h"

namespace {

using journal::Call;
using journaltest::CapturedLog;

/// Notes the state by which a call is filed, and removes the record as the real component does.
class FinishedCalls final : public journal::FinishedCallsIfc {
public:
    explicit FinishedCalls(journal::CallMap& calls) : m_calls(calls) {}

    bool createCallEntryAndRemoveCall(const Call* call, Call::states_t state) override {
        filedBy = state;
        return m_calls.removeCall(call->m_sCallId);
    }
    void findAndDeleteMissedEntryWhenCalled(Call* /*call*/) override {}

    Call::states_t filedBy = Call::eUnknown;

private:
    journal::CallMap& m_calls;
};

class CallTrackerTest : public testing::Test {
protected:
    Call* record(Call::directions_t direction, Call::states_t state) {
        Call* const call = calls.insertEntryToCallMap("7", std::make_unique<Call>(direction, "7", 0));
        call->m_State = state;
        return call;
    }
    /// The outcome of a new state, as the matrix below names it.
    std::string outcomeOf(Call& call, Call::states_t newState) {
        CapturedLog::reset();
        const auto before = call.m_State;
        const bool accepted = tracker.setCallState(&call, newState, call.m_Direction);
        const Call* const after = calls.findCallFromId("7");
        if (after == nullptr) {
            return finished.filedBy == newState ? "filed" : finished.filedBy == before ? "closed" : "?";
        }
        if (accepted) {
            return after->m_State == newState ? "set" : after->m_State == before ? "stays" : "?";
        }
        EXPECT_EQ(after->m_State, before);
        return CapturedLog::contains("setCallState():Wrong call transition")      ? "wrong"
               : CapturedLog::contains("setCallState():Unexpected JS Call State") ? "unexpected"
                                                                                  : "refused";
    }

    journal::JournalClock journalClock;
    journal::PhoneSettings settings;
    journal::CallMap calls;
    FinishedCalls finished{calls};
    journal::CallTracker tracker{calls, settings, journalClock, finished};
};

// A row is the state before, a column the new state; a cell is the outcome:
//     set           the new state is stored                 stays         the old state is kept
//     filed         filed by the new state, and removed     closed        filed by the old state, and removed
//     wrong         refused as a wrong transition           unexpected    refused as an unexpected state
// Of a cell's two outcomes the second is, for Established, that of an outgoing call that counts as incoming,
// and for Forwarded that of any other outgoing call, except under Crest.
TEST_F(CallTrackerTest, FollowsTheMatrixOfStates) {
    const struct {
        const char* name;
        Call::directions_t direction;
        bool countsAsIncoming;
        int hardware;
    } kinds[] = {{"incoming", Call::eIncoming, false, 0},
                 {"outgoing", Call::eOutgoing, false, 0},
                 {"outgoing, Crest", Call::eOutgoing, false, 3},
                 {"as incoming", Call::eOutgoing, true, 0}};
    const auto rows = journaltest::table(9, R"(
                | Originated | Offered | Delivered | Established      | Forwarded   | Cleared | Failed | CallInformation
Unknown         | set        | set     | set       | set              | filed/stays | closed  | filed  | set
Originated      | wrong      | set     | set       | set              | filed/stays | closed  | filed  | set
Offered         | wrong      | wrong   | set       | set              | filed/stays | closed  | filed  | set
Delivered       | wrong      | wrong   | wrong     | set              | filed/stays | closed  | filed  | set
Established     | wrong      | wrong   | wrong     | set              | filed/stays | closed  | filed  | set
Forwarded       | wrong      | wrong   | wrong     | unexpected/stays | filed/set   | closed  | filed  | stays
CallInformation | wrong      | wrong   | wrong     | unexpected/set   | filed/stays | closed  | filed  | wrong
)");
    for (std::size_t row = 1; row < rows.size(); ++row) {
        for (std::size_t column = 1; column < rows[row].size(); ++column) {
            for (const auto& kind : kinds) {
                const auto newState = journaltest::stateOf(rows[0][column]);
                SCOPED_TRACE(std::string(kind.name) + " from " + rows[row][0] + " to " + rows[0][column]);
                const auto outcomes = journaltest::split(rows[row][column], '/');
                const bool staysOut = kind.direction == Call::eOutgoing && !kind.countsAsIncoming;
                const bool second =
                    newState == Call::eEstablished ? kind.countsAsIncoming : staysOut && kind.hardware == 0;
                journaltest::setHardwareVariant(kind.hardware);
                calls.removeAllCalls();
                Call* const call = record(kind.direction, journaltest::stateOf(rows[row][0]));
                call->m_treatAsIncoming = kind.countsAsIncoming;
                EXPECT_EQ(outcomeOf(*call, newState), second ? outcomes.back() : outcomes.front());
            }
        }
    }
}

TEST_F(CallTrackerTest, RefusesWhatCannotBeFollowed) {
    EXPECT_EQ(outcomeOf(*record(Call::eIncoming, Call::eDelivered), Call::eUnknown), "refused");
    EXPECT_FALSE(tracker.setCallState(nullptr, Call::eDelivered, Call::eIncoming));
    for (const char* type : {softwaretypes::qorvex, softwaretypes::sip}) {
        settings.change([type](auto& values) { values.m_softwareType = type; });
        EXPECT_FALSE(
            tracker.onCallEvent(nullptr, Call::eDelivered, Call::eIncoming, "", "", "", "", "", false))
            << "no call id, " << type;
    }
    EXPECT_EQ(calls.getNumberOfCalls(), 1U);
}

}  // namespace
