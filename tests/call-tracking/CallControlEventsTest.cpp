// The frame that the handlers share, and what those of Originated, Established and Retrieved do.

#include "src/JournalServiceEvents/CallControlEvents.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/call-tracking/Line.h"
#include "tests/call-tracking/PartiesText.h"
#include "tests/support/FakeHardware.h"

namespace {

using journal::Call;
using journaltest::CapturedLog;
using journaltest::FakeHardware;
using journaltest::from;
using journaltest::here;
using journaltest::Line;
using journaltest::nobody;
using journaltest::partiesText;
using journaltest::to;
using Journal = std::vector<std::string>;

const std::vector<const char*> kBoth = {softwareTypes::qorvex, softwareTypes::sip};

// ---- the common frame -----------------------------------------------------------------------------------------

void everyEvent(Line& line) {
    line.dials("1", to("4711"));
    line.offers("2");
    line.queues("3", from("4711"), here());
    line.rings("4", from("4711"));
    line.diverts("5", from("4711"), here(), to("4712"));
    line.answers("6", from("4711"));
    line.fails("7", from("4711"), here(), CSTA_EC_Busy);
}

TEST(CallControlEvents, AreIgnoredWhereTheJournalIsNotKept) {
    const struct {
        const char* name;
        const char* type;
        std::function<void(journal::SettingValues&)> settings;
    } rows[] = {
        {"SIP, log disabled", softwareTypes::sip, [](auto& values) { values.m_callLogEnabled = false; }},
        {"SIP, kept elsewhere", softwareTypes::sip,
         [](auto& values) { values.m_ringCentralSyncCallLog = true; }},
        {"kept elsewhere", softwareTypes::qorvex,
         [](auto& values) { values.m_ringCentralSyncCallLog = true; }},
        {"kept by the switch", softwareTypes::qorvex,
         [](auto& values) { values.m_useCSTACallControlEvents = false; }},
    };
    for (const auto& row : rows) {
        Line line(row.type);
        line.configure(row.settings);
        everyEvent(line);
        EXPECT_EQ(line.liveCalls(), 0U) << row.name;
        EXPECT_TRUE(line.journal().empty()) << row.name;
    }
}

TEST(CallControlEvents, AreFollowedOnAQorvexPhoneWhoseLogIsDisabledAndOnASipPhoneWhoseSwitchKeepsTheLog) {
    Line qorvex;
    qorvex.configure([](auto& values) { values.m_callLogEnabled = false; });
    Line sip(softwareTypes::sip);
    sip.configure([](auto& values) { values.m_useCSTACallControlEvents = false; });
    for (Line* line : {&qorvex, &sip}) {
        line->rings("1", from("4711"));
        EXPECT_EQ(line->liveCalls(), 1U);
        line->hangsUp("1");
        EXPECT_EQ(line->journal(), Journal{"missed 4711"});
    }
}

TEST(CallControlEvents, LeaveAClearAloneThatComesWhileTheJournalIsNotKept) {
    Line line;
    line.rings("1", from("4711"));
    line.configure([](auto& values) { values.m_useCSTACallControlEvents = false; });
    line.hangsUp("1");
    EXPECT_EQ(line.liveCalls(), 1U);
    line.configure([](auto& values) {
        values.m_useCSTACallControlEvents = true;
        values.m_ringCentralSyncCallLog = true;
    });
    line.hangsUp("1");
    EXPECT_EQ(line.liveCalls(), 1U);
}

TEST(CallControlEvents, WriteTheirEntryLineEvenWhenTheyAreIgnored) {
    Line line(softwareTypes::sip);
    line.configure([](auto& values) { values.m_callLogEnabled = false; });
    everyEvent(line);
    line.holds("4");
    line.hangsUp("4");
    for (const char* text : {
             "handleCSTAOriginatedEvent[call: 1",
             "handleCSTAOfferedEvent[2][call: 2",
             "handleCSTAQueuedEvent[call: 3",
             "handleCSTADeliveredEvent[call: 4",
             "handleCSTADivertedEvent[call: 5",
             "handleCSTAEstablishedEvent[call: 6",
             "handleCSTAFailedEvent[call: 7",
             "handleCSTAHeldEvent[call: 4",
             "handleCSTAConnectionClearedEvent[call: 4",
             "immediatealyCSTAConnectionClearedEvent[call: 4",
             "handleCSTAConnectionClearedEvent():{4}, event cause: 48",
         }) {
        EXPECT_TRUE(CapturedLog::contains(text)) << text << "\n" << CapturedLog::dump();
    }
}

TEST(CallControlEvents, ClearTheReadinessForTheSwitchsLogWhenACallIsOfferedThere) {
    Line line;
    line.parts.readiness.m_callLogEventsReady = true;
    line.offers("1");
    EXPECT_TRUE(line.parts.readiness.m_callLogEventsReady);
    line.configure([](auto& values) { values.m_useCSTACallControlEvents = false; });
    line.offers("2");
    EXPECT_FALSE(line.parts.readiness.m_callLogEventsReady);
    EXPECT_EQ(line.call("2"), nullptr);
}

// ---- Originated -------------------------------------------------------------------------------------------------

TEST(CallControlEvents, MakeOfADiallingWhatItsCauseSays) {
    const struct {
        int cause;
        const char* qorvex;  // the record's parties, "none" for no record
        const char* sip;
        bool treatAsIncoming;
    } rows[] = {
        {CSTA_EC_NewCall, "dialled[4711 Ann] called[4711 Ann] remote[4711 Ann]", "dialled[4711]", false},
        {CSTA_EC_None, "dialled[4711 Ann] called[4711 Ann] remote[4711 Ann]", "dialled[4711]", false},
        {CSTA_EC_GroupPickupNotify, "dialled[4711 Ann] called[4711 Ann] remote[4711 Ann]", "", true},
        {CSTA_EC_CallPickup, "none", "", true},
        {CSTA_EC_CallPark, "none", "none", false},
        {CSTA_EC_CallRetrievePark, "dialled[4711 Ann] called[4711 Ann] remote[4711 Ann]", "none", false},
        {CSTA_EC_DirectedPickup, "dialled[4711 Ann] called[4711 Ann] remote[4711 Ann]", "", true},
        {CSTA_EC_PickupFromPark, "dialled[4711 Ann] called[4711 Ann] remote[4711 Ann]", "", true},
    };
    for (const auto& row : rows) {
        for (const char* type : kBoth) {
            SCOPED_TRACE(std::string(type) + ", cause " + std::to_string(row.cause));
            const bool sip = type == kBoth.back();
            Line line(type);
            line.dials("1", to("4711", "Ann"), row.cause);
            const Call* const call = line.call("1");
            EXPECT_EQ(call == nullptr ? "none" : partiesText(*call), sip ? row.sip : row.qorvex);
            if (call != nullptr) {
                EXPECT_EQ(call->m_treatAsIncoming, sip && row.treatAsIncoming);
                EXPECT_TRUE(call->isOutgoing());
            }
        }
    }
}

// ---- Established ------------------------------------------------------------------------------------------------

TEST(CallControlEvents, TellTheDirectionOfAnAnsweredCallByItsDevices) {
    const struct {
        const char* name = "";
        CSTADevice calling;
        CSTADevice called;
        CSTADevice answering;
        int direction = -2;  // -2 for no record
    } rows[] = {
        {"called here", from("4711"), here(), nobody(), Call::eIncoming},
        {"answered here", from("4711"), to("600"), here(), Call::eIncoming},
        {"placed here", here(), to("4711"), to("4711"), Call::eOutgoing},
        {"placed and reached here", here(), here(), to("4711"), Call::eOutgoing},
        {"not here at all", from("4711"), to("4712"), to("4712"), -2},
    };
    for (const auto& row : rows) {
        for (const char* type : kBoth) {
            SCOPED_TRACE(std::string(type) + ", " + row.name);
            CapturedLog::reset();
            Line line(type);
            line.isEstablished("1", row.calling, row.called, row.answering);
            const Call* const call = line.call("1");
            EXPECT_EQ(call == nullptr ? -2 : call->m_Direction, row.direction);
            EXPECT_EQ(CapturedLog::contains("handleCSTAEstablishedEvent():{1} Unknown direction"),
                      row.direction == -2);
            if (call != nullptr) {
                EXPECT_NE(call->m_sRemoteParty, CSTADevice::kLocalDevice);
            }
        }
    }
}

TEST(CallControlEvents, SayWhoAnsweredInEachFlavoursWords) {
    Line line;
    line.answers("1", from("4711", "Ann"));
    line.isAnsweredBy("2", to("4711", "Ann"), to("4711", "Ann"));
    line.isAnsweredBy("3", to("4711", "Ann"), to("4712", "Bob"));
    for (const char* text : {
             "handleCSTAEstablishedEvent():{1} Incoming call established; Number: 4711, Name: Ann",
             "handleCSTAEstablishedEvent():{2} Outoing call established; Number: 4711, Name: Ann",
             "handleCSTAEstablishedEvent():{3} Outoing call established, someone other than the called "
             "device has "
             "answered, Number: 4712, Name: Bob",
         }) {
        EXPECT_TRUE(CapturedLog::contains(text)) << text;
    }
    Line sip(softwareTypes::sip);
    sip.isAnsweredBy("4", to("4711"), to("4711"), CSTA_EC_GroupPickupNotify);
    EXPECT_TRUE(
        CapturedLog::contains("establish outgoing call, but cause is CSTA_EC_GroupPickupNotify so "
                              "markCallasIncoming"));
    EXPECT_TRUE(sip.call("4")->m_treatAsIncoming);
}

TEST(CallControlEvents, KeepAPickedUpSipCallWhoseParticipantsAreThePickedUpOnes) {
    Line line(softwareTypes::sip);
    line.dials("1", to("*59"), CSTA_EC_CallPickup);
    line.isEstablished("1", from("4711", "Ann"), to("4712", "Bob"), here());
    line.passes(3);
    line.hangsUp("1");
    EXPECT_EQ(line.journal(), Journal{"received 4711 Ann 00:03"});
}

TEST(CallControlEvents, FileASipCallThatAnotherAnsweredOnlyUnderTheCrestInterface) {
    for (const int hardware : {0, 3}) {
        FakeHardware::setSubPlatformVariant(hardware);
        Line line(softwareTypes::sip);
        line.dials("1", to("4711"));
        line.isAnsweredBy("1", to("4711", "Ann"), to("4712", "Bob"));
        EXPECT_EQ(line.liveCalls(), hardware == 0 ? 1U : 0U);
        line.passes(3);
        line.hangsUp("1");
        EXPECT_EQ(line.journal(), Journal{hardware == 0 ? "dialled 4711 00:03" : "dialled 4711 sent on"});
    }
}

TEST(CallControlEvents, TakeACallBackThatIsEstablishedRightAfterItWasHeldForATransfer) {
    Line line(softwareTypes::sip);
    line.holds("1", CSTA_EC_HeldForTransfer);
    line.answers("1", from("4711", "Ann"));
    EXPECT_TRUE(
        CapturedLog::contains("handleCSTAEstablishedEvent: established event following a held event"));
    line.hangsUp("1");
    EXPECT_EQ(line.journal(), Journal{"received 4711 Ann"});

    CapturedLog::reset();
    line.holds("2", CSTA_EC_HeldForTransfer);
    line.answers("3", from("4711", "Ann"));
    EXPECT_FALSE(CapturedLog::contains("established event following a held event"));
}

TEST(CallControlEvents, CopyTheMediaServerFlagOfARetrievedCall) {
    Line line;
    line.answers("1", from("4711"));
    line.retrieves("1", true);
    EXPECT_TRUE(line.call("1")->m_connectedToMediaServer);
    line.retrieves("1", false);
    EXPECT_FALSE(line.call("1")->m_connectedToMediaServer);
    line.retrieves("2", true);
    EXPECT_EQ(line.call("2"), nullptr);
}

}  // namespace
