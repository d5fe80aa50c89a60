// Transfers and conferences: each row is a script for `Line` with the outcome on a Qorvex and on a SIP phone; "=" is the same.

#include <gtest/gtest.h>

#include "platform/csta/CSTACallControlEvents.h"
#include "platform/csta/CSTAConferenceEvents.h"
#include "tests/call-tracking/Line.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

void expectOutcomes(const std::string& text) {
    for (const auto& row : table(4, text)) {
        for (const char* type : {softwareTypes::qorvex, softwareTypes::sip}) {
            SCOPED_TRACE(row[0] + " on " + type + ": " + row[1]);
            Line line(type);
            line.plays(row[1]);
            EXPECT_EQ(line.outcome(), type == softwareTypes::sip && row[3] != "=" ? row[3] : row[2]);
            EXPECT_FALSE(line.parts.blindTransfer.stopBlindTransferTimer())
                << "a clearing is still held back";
            EXPECT_EQ(line.parts.conferences.getNumberOfConferences(), 0);
        }
    }
}

// The leg before the transfer and the one after it are an occurrence each; nothing is filed twice, and no record stays.
TEST(JoinedCalls, OfATransferAreFiledOnceEach) {
    expectOutcomes(R"(
consulted, second cleared | answers 1 4711:Ann; passes 60; holds 1 cause=held-for-transfer; dials 2 4712:Bob;
+   reaches 2 4712:Bob 4712:Bob; passes 5; clears 2 cause=transfer; transfers 1 2 9 here 4712 local=0
+   | dialled 4712 Bob 00:05 by 4711, received 4711 Ann 01:05 by 4712 transferred | =
consulted, second not | answers 1 4711:Ann; passes 60; dials 2 4712:Bob; reaches 2 4712:Bob 4712:Bob; passes 5;
+   transfers 1 2 9 here 4712 local=0 | dialled 4712 Bob 00:05, received 4711 Ann 01:05 | =
consulted, second survives | answers 1 4711; dials 2 4712; reaches 2 4712 4712; passes 5;
+   transfers 1 2 2 here 4712 local=0 | dialled 4712 00:05, received 4711 00:05 | =
blind       | answers 1 4711:Ann; passes 60; holds 1 cause=held-for-transfer; clears 1;
+   transfers 1 - 9 here 4712 local=0 | received 4711 Ann 01:00 | =
blind, same call id | answers 1 4711:Ann; passes 60; holds 1 cause=held-for-transfer; clears 1;
+   transfers 1 - 1 here 4712 local=0 | received 4711 Ann 01:00 | =
blind, two calls within a second | answers 1 4711; answers 2 4712; holds 1 cause=held-for-transfer; clears 1; passes 1;
+   holds 2 cause=held-for-transfer; clears 2; waits 1000 | received 4712 00:01, received 4711 00:01 | =
blind, unknown call | answers 1 4711; passes 9; holds 1 cause=held-for-transfer; clears 1; transfers 7 - 8 here - local=0
+   | received 4711 00:09 | =
somebody else's, its second call is ours | answers 1 4711; passes 5; transfers 77 1 8 4710 here; clears 8
+   | received 4711 00:05 | =
without any call id | transfers - - - 4711 4712 | | =
to this phone | answers 1 4711:Ann; passes 60; transfers 1 - 9 4711 here; clears 9 | received 4711 Ann 01:00 | =
this phone, it was called | answers 1 4711:Ann; passes 60; transfers 1 - 9 4711 4712; passes 30; clears 9
+   | received 4712 00:30 by 4711 transferred, received 4711 Ann 01:00
+   | received 4711 Ann 00:30 by 4711 transferred, received 4711 Ann 01:00
the new partner's own events | answers 1 4711:Ann; passes 60; transfers 1 - 9 4711 4712; ringsAt 9 4712 4712;
+   reaches 9 4712:Bob 4712:Bob; passes 30; clears 9
+   | received 4712 00:30 by 4711 transferred, received 4711 Ann 01:00
+   | received 4711 Ann 00:30 by 4711 transferred, received 4711 Ann 01:00
this phone, it had called | dials 1 4711:Ann; reaches 1 4711:Ann 4711:Ann; passes 60; transfers 1 - 9 4711 4712:Bob;
+   passes 30; clears 9 | dialled 4712 Bob 00:30 by 4711, dialled 4711 Ann 01:00 | =
)");
}

TEST(JoinedCalls, OfAConferenceEndWhenTheirMembersLeave) {
    const std::string three =
        "answers 1 4711:Ann; dials 2 4712:Bob; reaches 2 4712:Bob 4712:Bob; conference 9 1 4711 2 4712; "
        "passes 30; ";
    expectOutcomes("one after the other | " + three +
                   "clears 9 at=4711 local=3; passes 30; clears 9 | "
                   "dialled 4712 Bob 01:00, received 4711 Ann 00:30 | =\n"
                   "the phone first | " +
                   three +
                   "clears 9 | dialled 4712 Bob 00:30, received 4711 Ann 00:30 | =\n"
                   "a stranger changes nothing | " +
                   three +
                   "clears 9 at=4799 local=3; passes 30; clears 9 | "
                   "dialled 4712 Bob 01:00, received 4711 Ann 01:00 | =\n"
                   "its own id is a call, too | conference 9 1 4711 2 4712; established 9 here 4713 4713; "
                   "clears 9 at=here | "
                   "dialled 4713 | =\n"
                   "members without devices | answers 1 4711; answers 2 4712; conference 9 1 localDeviceID 2 "
                   "localDeviceID; "
                   "passes 5; clears 9 | received 4712 00:05, received 4711 00:05 | =\n"
                   "a member's call id is used again | " +
                   three +
                   "clears 1; answers 1 4720; clears 9; passes 10; clears 1 | "
                   "dialled 4712 Bob 00:30, received 4720 00:10, received 4711 Ann 00:30 | =\n"
                   "old calls cleared by themselves | " +
                   three +
                   "clears 1; clears 2; clears 9 | "
                   "dialled 4712 Bob 00:30, received 4711 Ann 00:30 | =\n");
}

TEST(JoinedCalls, PrivateDataOfASipSwitchFillsTheRecord) {
    Line line{softwareTypes::sip};
    line.plays("dials 1 4711:Ann; reaches 1 4711:Ann 4711:Ann");
    CSTATransferredEvent event;
    event.setOldCalls("1", "");
    event.setConnection("9", CSTADevice::kLocalDevice);
    event.setPrivateData(
        "dialledName=A%3Bnn%20100%;firstForwardedNumber=4713;firstForwardedName=Carl;"
        "redirectingNumber=4714;redirectingName=D%c3%b6rte;unknown=1;=;broken");
    line.parts.transferredEvents.handleCSTATransferredEvent(&event);
    const journal::Call* const call = line.parts.calls.findCallFromId("9");
    ASSERT_NE(call, nullptr);
    EXPECT_EQ(call->m_sDialledPartyName, "A;nn 100%");
    EXPECT_EQ(call->m_sFirstForwardedParty + " " + call->m_sFirstForwardedPartyName, "4713 Carl");
    EXPECT_EQ(call->m_sRedirectingParty + " " + call->m_sRedirectingPartyName, "4714 Dörte");
    EXPECT_TRUE(call->m_transferred);
}

TEST(JoinedCalls, AreLeftAloneOnAnUnknownSoftwareType) {
    Line line{"Norlith Other"};
    line.plays("rings 1 4711; transfers 1 - 9 4711 4712");
    EXPECT_TRUE(CapturedLog::contains("Unhandled software type."));
    EXPECT_NE(line.parts.calls.findCallFromId("1"), nullptr);
}

// The table has two places, and what does not fit changes nothing in it.
TEST(JoinedCalls, OddReportsLeaveTheConferencesAsTheyAre) {
    for (const auto& row : table(4, R"(
no call          | conference 8 0 4711 - -                            | - | new conference but primaryOldCallID is empty
second is none   | conference 8 1 4711 0 -                            | 8:1 |
a third          | conference 8 1 1 - -; conference 9 2 2 - -; conference 10 3 3 - - | 8:1 9:1 | max. number already reached
known device     | conference 8 1 4711 2 4712; conference 8 4 4711 - - | 8:2 | primaryOldDeviceIDNumber already entered
expanded         | conference 8 1 4711 2 4712; conference 8 4 4714 0 - | 8:3 |
expanded by none | conference 8 1 4711 - -; conference 8 0 - - -      | 8:1 | already exists and primaryOldCallID is empty
with a second    | conference 8 1 4711 - -; conference 8 4 4714 5 4715 | 8:2 | expanded but secondaryOldCallID exists
)")) {
        SCOPED_TRACE(row[0]);
        CapturedLog::reset();
        Line line;
        std::string script = row[1];
        for (std::size_t at = 0; (at = script.find(" - -", at)) != std::string::npos;) {
            script.replace(at, 4, " 0 0");
        }
        line.plays(script);
        std::string found;
        for (const char* id : {"8", "9", "10"}) {
            int index = -1;
            if (line.parts.conferences.searchConferenceIDIndex(id, index)) {
                found += std::string(found.empty() ? "" : " ") + id + ":" +
                         std::to_string(line.parts.conferences.members(index).size());
            }
        }
        EXPECT_EQ(found.empty() ? "-" : found, row[2]);
        EXPECT_TRUE(row[3].empty() || CapturedLog::contains(row[3])) << CapturedLog::dump();
    }
}

TEST(JoinedCalls, AMembershipGivesASipCallItsPartnersName) {
    Line line{softwareTypes::sip};
    line.plays("dials 1 4711; reaches 1 4711 4711");
    CSTAConferenceMembershipEvent event;
    event.setCallID("1");
    event.setDeviceID("4711");
    event.addUserInformation({"4711", "Ann"});
    line.parts.conferenceEvents.handleCSTAConferenceMembershipEvent(&event);
    line.plays("clears 1");
    EXPECT_EQ(line.journal(), "dialled 4711 Ann");
}

}  // namespace
}  // namespace journaltest
