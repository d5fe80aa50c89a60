// What the handlers of Delivered and Diverted do beyond whole calls.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/texts/communicationsServiceTexts.h"
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
using With = Line::With;
using Journal = std::vector<std::string>;

const std::vector<const char*> kBoth = {softwareTypes::qorvex, softwareTypes::sip};

// ---- Delivered --------------------------------------------------------------------------------------------------

TEST(DeliveredEvents, TellIncomingFromOutgoingByTheLocalConnection) {
    const struct {
        int localConnection;
        int qorvex;  // the record's direction, -2 for no record
        int sip;
    } rows[] = {
        {CSTA_LCS_Null, Call::eIncoming, Call::eIncoming},
        {CSTA_LCS_Initiated, -2, -2},
        {CSTA_LCS_Alerting, Call::eIncoming, Call::eIncoming},
        {CSTA_LCS_Connected, Call::eOutgoing, Call::eOutgoing},
        {CSTA_LCS_Hold, -2, -2},
        {CSTA_LCS_Queued, -2, Call::eOutgoing},
        {CSTA_LCS_Fail, -2, -2},
        {7, -2, -2},
    };
    for (const auto& row : rows) {
        for (const char* type : kBoth) {
            SCOPED_TRACE(std::string(type) + ", state " + std::to_string(row.localConnection));
            CapturedLog::reset();
            Line line(type);
            With with;
            with.localConnection = row.localConnection;
            line.rings("1", from("4711"), with);
            const int expected = type == kBoth.back() ? row.sip : row.qorvex;
            const Call* const call = line.call("1");
            EXPECT_EQ(call == nullptr ? -2 : call->m_Direction, expected);
            EXPECT_EQ(CapturedLog::contains("handleCSTADeliveredEvent():{1} Unknown Local Connection Info " +
                                            std::to_string(row.localConnection)),
                      expected == -2);
        }
    }
}

TEST(DeliveredEvents, DropAReminderOnEveryPhoneThatIsNotASipPhone) {
    for (const char* type : kBoth) {
        Line line(type);
        With with;
        with.privateData = communicationsServiceTexts::content_callstatus_ReminderCall;
        line.rings("1", from("4711"), with);
        EXPECT_EQ(line.liveCalls(), type == kBoth.back() ? 1U : 0U) << type;
    }
}

TEST(DeliveredEvents, DropACallOnASharedLineWhoseMissedCallsAreNotLogged) {
    Line line(softwareTypes::sip);
    line.parts.lineDevices.insert("2002", {"m2", false, 2});
    line.parts.lineDevices.insert("2003", {"m3", true, 2});
    With with;
    for (const char* device : {"2002", "2003", "2004"}) {
        with.device = device;
        line.rings(device, from("4711"), with);
    }
    EXPECT_EQ(line.call("2002"), nullptr);
    EXPECT_NE(line.call("2003"), nullptr);
    EXPECT_NE(line.call("2004"), nullptr);
    EXPECT_TRUE(CapturedLog::contains(
        "Missed incoming call with id: 2002 to shared secondary line: 2002 - should not be logged"));
    line.hangsUp("2002");
    EXPECT_TRUE(line.journal().empty());
}

TEST(DeliveredEvents, NeverTakeThePhoneItselfForTheFarEnd) {
    for (const char* type : kBoth) {
        Line line(type);
        With with;
        with.cause = CSTA_EC_Redirected;
        with.redirectedBy = here();
        line.rings("1", here(), with);
        line.isEstablished("1", here(), here(), here());
        line.hangsUp("1");
        EXPECT_EQ(line.journal(), Journal{"received"}) << type;
    }
}

TEST(DeliveredEvents, FollowACallThatTheCalledPartySendsOn) {
    Line line;
    line.dials("1", to("4711", "Ann"));
    line.ringsAt("1", to("4711", "Ann"), to("4712", "Bob"), CSTA_EC_Forwarded);
    ASSERT_NE(line.call("1"), nullptr);
    EXPECT_EQ(partiesText(*line.call("1")),
              "dialled[4711 Ann] called[4711 Ann] remote[4711 Ann] connected[4712 Bob]");
    EXPECT_EQ(line.call("1")->m_sFirstForwardedParty, "4712");
    EXPECT_EQ(line.call("1")->m_sFirstForwardedPartyName, "Bob");
    EXPECT_EQ(line.call("1")->m_State, Call::eDelivered);
    line.ringsAt("1", to("4711", "Ann"), to("4713", "Cyd"), CSTA_EC_Forwarded);
    EXPECT_EQ(line.call("1")->m_sFirstForwardedParty, "4712");
    EXPECT_EQ(line.call("1")->m_sConnectedParty, "4713");
}

TEST(DeliveredEvents, OnlyLogAForwardedCallThatIsNotKnown) {
    Line line;
    With with;
    with.cause = CSTA_EC_Forwarded;
    line.rings("1", from("4711"), with);
    EXPECT_EQ(line.liveCalls(), 0U);
    EXPECT_TRUE(CapturedLog::contains("handleCSTADeliveredEvent():{1} forwarded call received"));

    line.offers("2");
    line.rings("2", from("4711"), with);
    line.hangsUp("2");
    EXPECT_EQ(line.journal(), Journal{"missed 4711"});
}

TEST(DeliveredEvents, NoteTheSenderOfARedirectedCallOnly) {
    for (const int cause :
         {CSTA_EC_NewCall, CSTA_EC_CallForward, CSTA_EC_Redirected, CSTA_EC_RedirectedByDistribution}) {
        Line line;
        line.rings("1", from("4711"), With{cause, from("600", "Sales")});
        const bool redirected = cause >= CSTA_EC_Redirected;
        EXPECT_EQ(line.call("1")->m_sRedirectingParty, redirected ? "600" : "") << cause;
        EXPECT_EQ(line.call("1")->m_redirected, redirected) << cause;
    }
    EXPECT_TRUE(
        CapturedLog::contains("handleCSTADeliveredEvent():m_sRedirectingParty[]->[600], "
                              "m_sRedirectingPartyName[]->[Sales]"));
}

TEST(DeliveredEvents, FileASipCallThatIsSentOnOnlyUnderTheCrestInterface) {
    for (const int hardware : {0, 3}) {
        FakeHardware::setSubPlatformVariant(hardware);
        Line line(softwareTypes::sip);
        line.dials("1", to("4711"));
        line.ringsAt("1", to("4711", "Ann"), to("4712", "Bob"), CSTA_EC_CallForwardBusy);
        if (hardware == 0) {
            ASSERT_NE(line.call("1"), nullptr);
            EXPECT_EQ(partiesText(*line.call("1")), "dialled[4711] remote[4711 Ann] connected[4712 Bob]");
        } else {
            EXPECT_EQ(line.journal(), Journal{"dialled 4711 sent on"});
            EXPECT_EQ(line.liveCalls(), 0U);
        }
    }
}

TEST(DeliveredEvents, KeepAnAnsweredSipCallThroughARingBack) {
    Line line(softwareTypes::sip);
    line.answers("1", from("4711", "Ann"));
    line.ringsAt("1", nobody(), to("4711", "Ann"));
    ASSERT_NE(line.call("1"), nullptr);
    EXPECT_EQ(line.call("1")->m_State, Call::eEstablished);
    line.hangsUp("1");
    EXPECT_EQ(line.journal(), Journal{"received 4711 Ann"});
}

// ---- Diverted ---------------------------------------------------------------------------------------------------

TEST(DeliveredEvents, IgnoreADiversionWhileTheSwitchHasNoSuchFeatures) {
    Line line;
    line.configure([](auto& values) { values.m_serverBasedFeatures = false; });
    line.rings("1", from("4711"));
    line.diverts("1", from("4711"), here(), to("4712"));
    EXPECT_TRUE(CapturedLog::contains(
        "handleCSTADivertedEvent():callID = '1' - server based features are off, IGNORE"));
    line.hangsUp("1");
    line.diverts("0", from("4713"), here(), to("4712"));
    EXPECT_EQ(line.journal(), (Journal{"missed 4711", "forwarded 4713 to 4712"}));
    EXPECT_EQ(line.liveCalls(), 0U);
}

TEST(DeliveredEvents, KeepAnOutgoingCallThatIsDivertedAsItIs) {
    for (const char* type : kBoth) {
        Line line(type);
        line.dials("1", to("4711"));
        line.ringsAt("1", to("4711"), to("4711"));
        line.diverts("1", here(), to("4711"), to("4712"));
        ASSERT_NE(line.call("1"), nullptr) << type;
        EXPECT_EQ(line.call("1")->m_State, Call::eDelivered) << type;
        EXPECT_EQ(line.call("1")->m_sRemoteParty, "4711") << type;
        line.diverts("2", here(), to("4711"), to("4712"));
        EXPECT_EQ(line.call("2"), nullptr) << type;
    }
}

TEST(DeliveredEvents, DropAnIncomingSipCallThatIsDiverted) {
    Line line(softwareTypes::sip);
    line.rings("1", from("4711"));
    line.diverts("1", from("4711"), here(), to("4712"));
    EXPECT_TRUE(CapturedLog::contains("{1} Ambiguous direction"));
    EXPECT_EQ(line.liveCalls(), 0U);
    EXPECT_TRUE(line.journal().empty());
}

}  // namespace
