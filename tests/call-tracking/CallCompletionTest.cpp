#include "src/JournalServiceEvents/CallCompletion.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/texts/communicationsServiceTexts.h"
#include "tests/call-tracking/Line.h"
#include "tests/support/FakeHardware.h"

namespace {

using journal::Call;
using journal::SettingValues;
using journaltest::CapturedLog;
using journaltest::FakeClock;
using journaltest::FakeHardware;
using journaltest::Line;
using Journal = std::vector<std::string>;

constexpr auto kIn = Call::eIncoming;
constexpr auto kOut = Call::eOutgoing;
constexpr auto kNone = Call::eDirectionUnknown;

struct Row {
    const char* name;
    Call::directions_t direction;
    std::vector<int> states;
    std::function<void(Call&)> with;
    std::function<void(SettingValues&)> settings;
    Journal journal;
    bool answer = true;
    bool kept = false;
    const char* log = "";
};

void nothing(Call&) {}
void asUsual(SettingValues&) {}

std::unique_ptr<Call> callOf(const Row& row) {
    auto call = std::make_unique<Call>(row.direction, "7", FakeClock::kStart);
    call->m_sRemoteParty = "4711";
    call->m_sRemotePartyName = "Ann";
    call->m_sCalledParty = "4720";
    call->m_sCalledPartyName = "Cyd";
    call->m_sDialledParty = "04720";
    call->m_sConnectedParty = "4712";
    call->m_sConnectedPartyName = "Bob";
    call->m_establishedTimeSec = FakeClock::kStart + 10;
    call->m_endTimeSec = FakeClock::kStart + 70;
    row.with(*call);
    return call;
}

void expectRow(const char* softwareType, const Row& row) {
    for (const int state : row.states) {
        SCOPED_TRACE(std::string(row.name) + ", state " + std::to_string(state));
        CapturedLog::reset();
        Line line(softwareType);
        line.configure(row.settings);
        const Call* const call = line.calls.insertEntryToCallMap("7", callOf(row));
        EXPECT_EQ(
            line.parts.completion.createCallEntryAndRemoveCall(call, static_cast<Call::states_t>(state)),
            row.answer);
        EXPECT_EQ(line.journal(), row.journal);
        EXPECT_EQ(line.call("7") != nullptr, row.kept);
        EXPECT_EQ(CapturedLog::contains("createCallEntryAndRemoveCall():removeCall[7]"), !row.kept);
        EXPECT_TRUE(CapturedLog::contains(row.log)) << row.log << "\n" << CapturedLog::dump();
        EXPECT_EQ(CapturedLog::contains("} Unknown Call State: "), !row.answer);
    }
}

TEST(CallCompletion, FilesByTheTableOfEveryPhoneThatIsNotASipPhone) {
    const auto marked = [](SettingValues& values) { values.m_enterMarkedMissedCall = true; };
    const auto withoutNumber = [](Call& call) {
        call.m_sRemoteParty = communicationsServiceTexts::noNumberProvided;
    };
    const std::vector<Row> rows = {
        {"outgoing", kOut, {0, 1, 2, 3, 5, 6, 7}, nothing, asUsual, {"dialled 04720 Ann 01:00"}},
        {"outgoing, forwarded", kOut, {4}, nothing, asUsual, {"dialled 04720 Ann 01:00 sent on"}, true, true},
        {"outgoing, nothing dialled",
         kOut,
         {2},
         [](Call& call) { call.m_sDialledParty.clear(); },
         asUsual,
         {"dialled 4711 Ann 01:00"}},
        {"outgoing, no state", kOut, {-1}, nothing, asUsual, {}, false},
        {"no direction",
         kNone,
         {-1, 0, 2, 3, 4, 6, 7},
         nothing,
         asUsual,
         {},
         false,
         false,
         "Remote Party: 4711"},
        {"incoming, no list", kIn, {-1, 0, 1, 5}, nothing, asUsual, {}, false},
        {"rang",
         kIn,
         {2},
         nothing,
         asUsual,
         {"missed 4711 Ann"},
         true,
         false,
         "createCallEntryAndRemoveCall():{7} eDelivered event creating newMissedCallEntry"},
        {"rang, and the switch marks missed calls",
         kIn,
         {2},
         nothing,
         marked,
         {},
         true,
         false,
         "callId[7], m_enterMarkedMissedCall[true], remoteParty[4711]"},
        {"failed or marked as missed", kIn, {6, 7}, nothing, asUsual, {"missed 4711 Ann"}},
        {"failed or marked, and the switch marks missed calls",
         kIn,
         {6, 7},
         nothing,
         marked,
         {"missed 4711 Ann"}},
        {"answered", kIn, {3}, nothing, asUsual, {"received 4711 Ann 01:00"}},
        {"answered after a transfer",
         kIn,
         {3},
         [](Call& call) { call.m_transferred = true; },
         asUsual,
         {"received 4711 Ann 01:00 transferred"}},
        {"answered, no number",
         kIn,
         {3},
         withoutNumber,
         asUsual,
         {},
         true,
         false,
         "createCallEntryAndRemoveCall():{7} No Number Provided - no entry in received call list"},
        {"rang, no number", kIn, {2}, withoutNumber, asUsual, {"missed noNumberProvided Ann"}},
        {"forwarded", kIn, {4}, nothing, asUsual, {"forwarded 4711 Ann to 4712"}},
        {"the SIP phone's marks mean nothing",
         kIn,
         {2},
         [](Call& call) {
             call.m_ctiAssisted = true;
             call.m_missedEligible = false;
         },
         [](SettingValues& values) { values.m_xsiConfigured = true; },
         {"missed 4711 Ann"}},
    };
    for (const Row& row : rows) {
        expectRow(softwareTypes::qorvex, row);
    }
}

TEST(CallCompletion, FilesByTheTableOfTheSipPhone) {
    const auto asIncoming = [](Call& call) { call.m_treatAsIncoming = true; };
    const auto cti = [](Call& call) { call.m_ctiAssisted = true; };
    const auto connectedTo = [](const char* number) {
        return [number](Call& call) { call.m_sConnectedParty = number; };
    };
    const std::vector<Row> rows = {
        {"outgoing", kOut, {0, 1, 2, 3, 5, 6, 7}, nothing, asUsual, {"dialled 4720 Cyd 01:00"}},
        {"outgoing, called party unknown",
         kOut,
         {0},
         [](Call& call) { call.m_sCalledParty.clear(); },
         asUsual,
         {"dialled 04720 Cyd 01:00"}},
        {"outgoing, no state", kOut, {-1}, nothing, asUsual, {}, false},
        {"no direction",
         kNone,
         {-1, 0, 2, 3, 4, 6},
         nothing,
         asUsual,
         {},
         false,
         false,
         "Remote Party: 4711"},
        {"outgoing, forwarded",
         kOut,
         {4},
         nothing,
         asUsual,
         {"dialled 4720 Cyd sent on"},
         true,
         false,
         "createCallEntryAndRemoveCall():{7} for state == Call::eForwarded, newDialledCallEntry!?"},
        {"outgoing, forwarded to nobody yet", kOut, {4}, connectedTo(""), asUsual, {}, true, true},
        {"outgoing, forwarded to the dialled party",
         kOut,
         {4},
         connectedTo("04720"),
         asUsual,
         {},
         true,
         true},
        {"outgoing, forwarded to the called party", kOut, {4}, connectedTo("4720"), asUsual, {}, true, true},
        {"outgoing, forwardings filed already",
         kOut,
         {4},
         [](Call& call) { call.m_sFirstForwardedParty = "firstForwardedParty_seq_done"; },
         asUsual,
         {}},
        {"incoming, no list", kIn, {-1, 0, 1, 5, 7}, nothing, asUsual, {}, false},
        {"rang or failed", kIn, {2, 6}, nothing, asUsual, {"missed 4711 Ann"}},
        {"rang or failed, answered elsewhere",
         kIn,
         {2, 6},
         [](Call& call) { call.m_completedElsewhere = true; },
         asUsual,
         {"missed 4711 Ann elsewhere"}},
        {"rang or failed, CTI assisted", kIn, {2, 6}, cti, asUsual, {}},
        {"rang or failed, another server journals",
         kIn,
         {2, 6},
         nothing,
         [](SettingValues& values) { values.m_xsiConfigured = true; },
         {}},
        {"rang or failed, not to be missed",
         kIn,
         {2, 6},
         [](Call& call) { call.m_missedEligible = false; },
         asUsual,
         {}},
        {"rang, and the switch marks missed calls",
         kIn,
         {2},
         nothing,
         [](SettingValues& values) { values.m_enterMarkedMissedCall = true; },
         {"missed 4711 Ann"}},
        {"answered", kIn, {3}, nothing, asUsual, {"received 4711 Ann 01:00"}},
        {"answered, no number",
         kIn,
         {3},
         [](Call& call) { call.m_sRemoteParty = communicationsServiceTexts::noNumberProvided; },
         asUsual,
         {"received noNumberProvided Ann 01:00"}},
        {"answered, CTI assisted", kIn, {3}, cti, asUsual, {"dialled 4720 Cyd 01:00"}},
        {"forwarded", kIn, {4}, nothing, asUsual, {"forwarded 4711 Ann to 4712"}},
        {"picked up: rang", kOut, {2}, asIncoming, asUsual, {"missed 4711 Ann"}},
        {"picked up: answered", kOut, {3}, asIncoming, asUsual, {"received 4711 Ann 01:00"}},
        {"picked up: forwarded", kOut, {4}, asIncoming, asUsual, {"forwarded 4711 Ann to 4712"}},
        {"picked up: dialled only", kOut, {0}, asIncoming, asUsual, {}, false},
    };
    for (const Row& row : rows) {
        expectRow(softwareTypes::sip, row);
    }
}

TEST(CallCompletion, FilesAnAnsweredCallWithoutANumberUnderTheCrestInterface) {
    FakeHardware::setSubPlatformVariant(3);
    expectRow(softwareTypes::qorvex,
              {"answered, no number",
               kIn,
               {3},
               [](Call& call) { call.m_sRemoteParty = communicationsServiceTexts::noNumberProvided; },
               asUsual,
               {"received noNumberProvided Ann 01:00"}});
}

TEST(CallCompletion, SavesADeliveredBluetoothCallWithoutTheSwitchsMark) {
    Line line;
    line.configure([](auto& values) { values.m_enterMarkedMissedCall = true; });
    const Call bluetooth(kIn, communicationsServiceTexts::content_bluetoothDeviceId, 0);
    const Call almost(kIn, std::string(communicationsServiceTexts::content_bluetoothDeviceId) + "1", 0);
    const Call ordinary(kIn, "7", 0);
    EXPECT_TRUE(line.parts.completion.shouldSaveDeliveredCallAsMissed(&bluetooth));
    EXPECT_FALSE(line.parts.completion.shouldSaveDeliveredCallAsMissed(&almost));
    EXPECT_FALSE(line.parts.completion.shouldSaveDeliveredCallAsMissed(&ordinary));
    line.configure([](auto& values) { values.m_enterMarkedMissedCall = false; });
    EXPECT_TRUE(line.parts.completion.shouldSaveDeliveredCallAsMissed(&ordinary));
}

TEST(CallCompletion, MarksTheEntriesForTheSwitchsLog) {
    const auto presentations = [](const CallInfo& info) {
        return std::vector<int>{info.getLogTarget(), info.getPresentationA(), info.getPresentationB(),
                                info.getPresentationC(), info.getPresentationD()};
    };
    const auto file = [](Line& line, Call::directions_t direction, Call::states_t state) {
        const Row row{"", direction, {}, nothing, asUsual, {}};
        line.parts.completion.createCallEntryAndRemoveCall(line.calls.insertEntryToCallMap("7", callOf(row)),
                                                           state);
    };
    using Marks = std::vector<int>;
    const auto missedMarks = [&](const char* type, Call::states_t state) {
        Line line(type);
        file(line, kIn, state);
        return presentations(line.list<MissedCallItem>().front().getMissedCallInfoList().front());
    };
    EXPECT_EQ(missedMarks(softwareTypes::qorvex, Call::eDelivered), (Marks{1, 0, 0, 1, 1}));
    EXPECT_EQ(missedMarks(softwareTypes::qorvex, Call::eFailed), (Marks{1, 0, 0, 0, 0}));
    EXPECT_EQ(missedMarks(softwareTypes::sip, Call::eDelivered), (Marks{1, 0, 0, 0, 0}));

    Line line(softwareTypes::sip);
    file(line, kIn, Call::eEstablished);
    EXPECT_EQ(presentations(line.list<ReceivedCallItem>().front().getReceivedCallInfoList().front()),
              (Marks{0, 1, 1, 1, 1}));
    file(line, kOut, Call::eEstablished);
    EXPECT_EQ(presentations(line.list<DialledCallItem>().front().getDialledCallInfoList().front()),
              (Marks{4, 1, 1, 0, 0}));
}

TEST(CallCompletion, ShowsTheLastOrTheFirstForwardedPartyAsConfigured) {
    struct Shown {
        bool last;
        bool autoAnswered;
        const char* first;
        const char* connected;
    };
    const Shown rows[] = {
        {true, false, "4730", "4712"},
        {false, false, "4730", "4730"},
        {false, true, "4730", "4712"},
        {false, false, "", "4712"},
    };
    for (const Shown& row : rows) {
        CapturedLog::reset();
        Line line(softwareTypes::sip);
        line.configure([&row](auto& values) { values.m_ForwardingPartyDisplayLast = row.last; });
        auto call = callOf({"", kOut, {}, nothing, asUsual, {}});
        call->m_sFirstForwardedParty = row.first;
        call->mAutoAnswerForwardedCall = row.autoAnswered;
        line.parts.completion.createCallEntryAndRemoveCall(
            line.calls.insertEntryToCallMap("7", std::move(call)), Call::eForwarded);
        EXPECT_TRUE(CapturedLog::contains(std::string("sConnectedParty: ") + row.connected + ","))
            << CapturedLog::dump();
        EXPECT_TRUE(CapturedLog::contains("startSec: -1, endSec: -1")) << CapturedLog::dump();
    }
}

// ---- delete-missed-when-called ----------------------------------------------------------------------------------

TEST(CallCompletion, TakesTheMissedEntryOfAPartyThatIsCalledBack) {
    for (const char* type : {softwareTypes::qorvex, softwareTypes::sip}) {
        SCOPED_TRACE(type);
        Line line(type);
        line.configure([](auto& values) { values.m_deleteMissedWhenCalled = true; });
        for (const char* caller : {"", "4711", "4712"}) {
            line.rings("1", journaltest::from(caller));
            line.hangsUp("1");
        }
        line.dials("2", journaltest::to("04711"));
        EXPECT_EQ(line.journal(), (Journal{"missed 4712", "missed 4711", "missed"}));
        line.isAnsweredBy("2", journaltest::to("4711"), journaltest::to("4711"));
        EXPECT_EQ(line.journal(), (Journal{"missed 4712", "missed"}));
    }
}

TEST(CallCompletion, SettlesNothingForACallWithoutNumberAndName) {
    Line line;
    line.rings("1", journaltest::nobody());
    line.hangsUp("1");
    Call call(kOut, "2", 0);
    line.parts.completion.findAndDeleteMissedEntryWhenCalled(&call);
    EXPECT_EQ(line.journal(), Journal{"missed"});
    EXPECT_TRUE(CapturedLog::contains(
        "findAndDeleteMissedEntryWhenCalled():Dialled party: '', Called party: ';, Called "
        "party name: '', Remote party: '' Remote party name: ''"))
        << CapturedLog::dump();
}

}  // namespace
