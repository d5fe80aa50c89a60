#include "src/JournalServiceEvents/CallCompletion.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/texts/communicationsServiceTexts.h"
#include "tests/call-tracking/Line.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeHardware.h"
#include "tests/support/Table.h"

namespace {

using journal::Call;
using journaltest::CapturedLog;
using journaltest::FakeClock;
using journaltest::FakeHardware;
using journaltest::Line;

/// What a row may say of its call, beside the parties that every row's call has.
const std::map<std::string, std::function<void(Call&)>> kMarks = {
    {"picks-up", [](Call& call) { call.m_treatAsIncoming = true; }},
    {"cti", [](Call& call) { call.m_ctiAssisted = true; }},
    {"elsewhere", [](Call& call) { call.m_completedElsewhere = true; }},
    {"not-eligible", [](Call& call) { call.m_missedEligible = false; }},
    {"transferred", [](Call& call) { call.m_transferred = true; }},
    {"auto-answered", [](Call& call) { call.mAutoAnswerForwardedCall = true; }},
    {"no-number", [](Call& call) { call.m_sRemoteParty = communicationsServiceTexts::noNumberProvided; }},
    {"not-dialled", [](Call& call) { call.m_sDialledParty.clear(); }},
    {"not-called", [](Call& call) { call.m_sCalledParty.clear(); }},
    {"connected-to-none", [](Call& call) { call.m_sConnectedParty.clear(); }},
    {"connected-to-dialled", [](Call& call) { call.m_sConnectedParty = call.m_sDialledParty; }},
    {"connected-to-called", [](Call& call) { call.m_sConnectedParty = call.m_sCalledParty; }},
    {"first-forwarded", [](Call& call) { call.m_sFirstForwardedParty = "4730"; }},
    {"all-filed", [](Call& call) { call.m_sFirstForwardedParty = "firstForwardedParty_seq_done"; }},
};

Call::directions_t directionOf(const std::string& word) {
    return word == "in" ? Call::eIncoming : word == "out" ? Call::eOutgoing : Call::eDirectionUnknown;
}

/// Ends a call of that direction in that state, and answers with what is in the journal then; a record that stays shows as
/// "kept", a call that no list takes as "refused".
std::string filed(Line& line, const std::string& direction, int state, const std::string& marks) {
    auto call = std::make_unique<Call>(directionOf(direction), "7", FakeClock::kStart);
    call->m_sRemoteParty = "4711";
    call->m_sRemotePartyName = "Ann";
    call->m_sCalledParty = "4720";
    call->m_sCalledPartyName = "Cyd";
    call->m_sDialledParty = "04720";
    call->m_sConnectedParty = "4712";
    call->m_establishedTimeSec = FakeClock::kStart + 10;
    call->m_endTimeSec = FakeClock::kStart + 70;
    for (const std::string& mark : journaltest::split(marks, ' ')) {
        if (mark == "crest") {
            FakeHardware::setSubPlatformVariant(3);
        } else if (mark.rfind("set-", 0) == 0) {
            line.plays("set " + mark.substr(4) + " on");
        } else if (mark.rfind("no-", 0) == 0 && !kMarks.contains(mark)) {
            line.plays("set " + mark.substr(3) + " off");
        } else {
            kMarks.at(mark)(*call);
        }
    }
    Call* const held = line.parts.calls.insertEntryToCallMap("7", std::move(call));
    const bool taken =
        line.parts.completion.createCallEntryAndRemoveCall(held, static_cast<Call::states_t>(state));
    const bool kept = line.parts.calls.findCallFromId("7") != nullptr;
    return line.journal() + (kept ? " kept" : "") + (taken ? "" : "refused");
}

TEST(CallCompletion, FilesByTheTableOfTheFlavour) {
    for (const auto& row : journaltest::table(5, R"(
outgoing                 | out 0 1 2 3 5 6 7 | | dialled 04720 Ann 01:00 | dialled 4720 Cyd 01:00
outgoing, no state       | out -1 | | refused | =
nothing dialled          | out 2 | not-dialled | dialled 4711 Ann 01:00 | dialled 4720 Cyd 01:00
called party unknown     | out 0 | not-called | dialled 04720 Ann 01:00 | dialled 04720 Cyd 01:00
no direction             | none -1 0 1 2 3 4 5 6 7 | | refused | =
no list                  | in -1 0 1 5 | | refused | =
rang                     | in 2 | | missed 4711 Ann | =
rang, marks missed calls | in 2 | set-marksMissed | | missed 4711 Ann
rang, no number          | in 2 | no-number | missed noNumberProvided Ann | =
failed                   | in 6 | | missed 4711 Ann | =
failed, marks            | in 6 | set-marksMissed | missed 4711 Ann | =
marked as missed         | in 7 | | missed 4711 Ann | refused
marked, marks            | in 7 | set-marksMissed | missed 4711 Ann | refused
answered elsewhere       | in 2 6 | elsewhere | missed 4711 Ann elsewhere | =
CTI assisted             | in 2 6 | cti | missed 4711 Ann |
another server journals  | in 2 6 | set-otherServer | missed 4711 Ann |
not to be missed         | in 2 6 | not-eligible | missed 4711 Ann |
answered                 | in 3 | | received 4711 Ann 01:00 | =
answered after transfer  | in 3 | transferred | received 4711 Ann 01:00 transferred | =
answered, no number      | in 3 | no-number | | received noNumberProvided Ann 01:00
same under Crest         | in 3 | no-number crest | received noNumberProvided Ann 01:00 | =
answered, CTI assisted   | in 3 | cti | received 4711 Ann 01:00 | dialled 4720 Cyd 01:00
forwarded                | in 4 | | forwarded 4711 Ann to 4712 | =
sent on                  | out 4 | | dialled 04720 Ann 01:00 sent on kept | dialled 4720 Cyd sent on
sent on to nobody yet    | out 4 | connected-to-none | dialled 04720 Ann 01:00 sent on kept | kept
to the dialled party     | out 4 | connected-to-dialled | dialled 04720 Ann 01:00 sent on kept | kept
to the called party      | out 4 | connected-to-called | dialled 04720 Ann 01:00 sent on kept | kept
sent on, all filed       | out 4 | all-filed | dialled 04720 Ann 01:00 sent on kept |
picked up, rang          | out 2 | picks-up | dialled 04720 Ann 01:00 | missed 4711 Ann
picked up, answered      | out 3 | picks-up | dialled 04720 Ann 01:00 | received 4711 Ann 01:00
picked up, forwarded     | out 4 | picks-up | dialled 04720 Ann 01:00 sent on kept | forwarded 4711 Ann to 4712
picked up, only dialled  | out 0 | picks-up | dialled 04720 Ann 01:00 | refused
)")) {
        const auto states = journaltest::split(row[1], ' ');
        for (const std::string type : {softwareTypes::qorvex, softwareTypes::sip}) {
            for (std::size_t state = 1; state < states.size(); ++state) {
                SCOPED_TRACE(row[0] + ", state " + states[state] + " on " + type);
                FakeHardware::setSubPlatformVariant(0);
                Line line(type);
                const std::string outcome = filed(line, states[0], std::stoi(states[state]), row[2]);
                const std::string& expected = type == softwareTypes::sip && row[4] != "=" ? row[4] : row[3];
                EXPECT_EQ(outcome.substr(outcome.front() == ' ' ? 1 : 0), expected);
            }
        }
    }
}

TEST(CallCompletion, ShowsTheLastOrTheFirstForwardedPartyAsConfigured) {
    for (const auto& row : journaltest::table(2, R"(
first-forwarded                               | 4712
first-forwarded no-displayLast                | 4730
first-forwarded no-displayLast auto-answered  | 4712
no-displayLast                                | 4712
)")) {
        CapturedLog::reset();
        Line line(softwareTypes::sip);
        filed(line, "out", Call::eForwarded, row[0]);
        // No list of a SIP phone shows it; the entry's making says it.
        EXPECT_TRUE(CapturedLog::contains("sConnectedParty: " + row[1] + ",")) << row[0];
        EXPECT_TRUE(CapturedLog::contains("startSec: -1, endSec: -1")) << row[0];
    }
}

TEST(CallCompletion, SavesADeliveredBluetoothCallWithoutTheSwitchsMark) {
    Line line;
    const std::string bluetoothId = communicationsServiceTexts::content_bluetoothDeviceId;
    line.plays("set marksMissed on; rings 7 4711; rings " + bluetoothId + " 4712; rings " + bluetoothId +
               "1 4713; clears 7; clears " + bluetoothId + "; clears " + bluetoothId + "1");
    EXPECT_EQ(line.outcome(), "missed 4712");
}

TEST(CallCompletion, MarksTheEntriesForTheSwitchsLog) {
    const auto marks = [](const CallInfo& info) {
        return std::vector<int>{info.getLogTarget(), info.getPresentationA(), info.getPresentationB(),
                                info.getPresentationC(), info.getPresentationD()};
    };
    const auto missedMarks = [&](const char* type, Call::states_t state) {
        Line line(type);
        filed(line, "in", state, "");
        return marks(line.list<MissedCallItem>().front().getMissedCallInfoList().front());
    };
    using Marks = std::vector<int>;
    EXPECT_EQ(missedMarks(softwareTypes::qorvex, Call::eDelivered), (Marks{1, 0, 0, 1, 1}));
    EXPECT_EQ(missedMarks(softwareTypes::qorvex, Call::eFailed), (Marks{1, 0, 0, 0, 0}));
    EXPECT_EQ(missedMarks(softwareTypes::sip, Call::eDelivered), (Marks{1, 0, 0, 0, 0}));

    Line line(softwareTypes::sip);
    filed(line, "in", Call::eEstablished, "");
    EXPECT_EQ(marks(line.list<ReceivedCallItem>().front().getReceivedCallInfoList().front()),
              (Marks{0, 1, 1, 1, 1}));
    filed(line, "out", Call::eEstablished, "");
    EXPECT_EQ(marks(line.list<DialledCallItem>().front().getDialledCallInfoList().front()),
              (Marks{4, 1, 1, 0, 0}));
}

TEST(CallCompletion, TakesTheMissedEntryOfAPartyThatIsCalledBack) {
    for (const char* type : {softwareTypes::qorvex, softwareTypes::sip}) {
        Line line(type);
        line.plays(
            "set deleteWhenCalled on; rings 1 -; clears 1; rings 2 4711; clears 2; rings 3 4712; clears 3");
        line.plays("dials 4 04711");
        EXPECT_EQ(line.journal(), "missed 4712, missed 4711, missed") << type;
        line.plays("reaches 4 4711 4711; dials 5 -; established 5 here - -");
        EXPECT_EQ(line.journal(), "missed 4712, missed") << type;
    }
}

}  // namespace
