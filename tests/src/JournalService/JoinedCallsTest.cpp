// Transfers, conferences and call information. A row is: name | script | outcome on a Qorvex phone | outcome
// on a SIP phone, "=" for the same. SimulatedPhone.h describes scripts and outcomes.

#include <gtest/gtest.h>

#include <regex>

#include "platform/csta/CSTACallControlEvents.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/SimulatedPhone.h"
#include "tests/support/Table.h"

namespace journaltest {
namespace {

// The leg before the transfer and the one after it are an occurrence each; no call is filed twice, and no
// record stays.
TEST(JoinedCalls, OfATransferAreFiledOnceEach) {
    expectOutcomes(R"(
consulted, second cleared | answers 1 4711:Ann; passes 60; holds 1 for-transfer; dials 2 4712:Bob;
+   reaches 2 4712:Bob 4712:Bob; passes 5; clears 2 cause=transfer; transfers 1 2 9 here 4712 local=null
+   | dialled 4712 Bob 00:05 by 4711, received 4711 Ann 01:05 by 4712 transferred | =
consulted, second not | answers 1 4711:Ann; passes 60; dials 2 4712:Bob; reaches 2 4712:Bob 4712:Bob; passes 5;
+   transfers 1 2 9 here 4712 local=null | dialled 4712 Bob 00:05, received 4711 Ann 01:05 | =
blind, unknown call | answers 1 4711; passes 9; holds 1 for-transfer; clears 1; transfers 7 - 8 here - local=null
+   | received 4711 00:09 | =
another party's, second call ours        | answers 1 4711; passes 5; transfers 77 1 8 4710 here; clears 8
+   | received 4711 00:05 | =
without any call id | transfers - - - 4711 4712 | | =
held back no longer | answers 1 4711; holds 1 for-transfer; clears 1; transfers 1 - 9 4711 here; waits 5000
+   | received 4711 | =
the new partner's own events | answers 1 4711:Ann; passes 60; transfers 1 - 9 4711 4712; ringsAt 9 4712 4712;
+   reaches 9 4712:Bob 4712:Bob; passes 30; clears 9
+   | received 4712 00:30 by 4711 transferred, received 4711 Ann 01:00
+   | received 4711 Ann 00:30 by 4711 transferred, received 4711 Ann 01:00
the new partner sends it on | answers 1 4711:Ann; passes 60; transfers 1 - 9 4711 4712;
+   ringsAt 9 4712 4714 cause=forwarded; ringsAt 9 4712 4714 cause=forward-busy; passes 30; clears 9
+   | received 4712 00:30 by 4711 transferred, received 4711 Ann 01:00
+   | received 4711 Ann 00:30 by 4711 transferred, received 4711 Ann 01:00
the new partner is connected | answers 1 4711:Ann; transfers 1 - 9 4711 4712; reaches 9 4712 4712:Bob
+   | received 4711 Ann; 9 in Established remote+connected[4712] redirecting[4711]
+   | received 4711 Ann; 9 in Established called+remote[4711 Ann] connected[4712 Bob] redirecting[4711]
first seen in its transfer | transfers 1 - 9 4711 4712; established 9 4712:Bob 600 here; passes 30; clears 9
+   | received 4712 Bob 00:30 by 4711 transferred | =
placed by a computer | answers 1 4711:CTI_Assisted; transfers 1 - 9 4711 4712; passes 30; clears 9
+   | received 4712 00:30 by 4711 transferred, received 4711
+   | dialled 4712 00:30 by 4711, dialled 4711
)");
}

// "3" is a conference of two calls, its phone has talked to Ann and Bob for half a minute.
TEST(JoinedCalls, OfAConferenceEndWhenTheirMembersLeave) {
    const std::string three =
        "answers 1 4711:Ann; dials 2 4712:Bob; reaches 2 4712:Bob 4712:Bob; conference 9 1 4711 2 4712; "
        "passes 30;";
    std::string rows = R"(
all the others leave          | 3 clears 9 at=4711 local=connected; clears 9 at=4712 local=connected
+   | dialled 4712 Bob 00:30, received 4711 Ann 00:30 | =
the phone first               | 3 clears 9 | dialled 4712 Bob 00:30, received 4711 Ann 00:30 | =
a third party changes nothing | 3 clears 9 at=4799 local=connected; passes 30; clears 9
+   | dialled 4712 Bob 01:00, received 4711 Ann 01:00 | =
its own id is a call, too     | conference 9 1 4711 2 4712; established 9 here 4713 4713; clears 9 at=here
+   | dialled 4713 | =
members without devices       | answers 1 4711; answers 2 4712; conference 9 1 localDeviceID 2 localDeviceID;
+   passes 5; clears 9 | received 4712 00:05, received 4711 00:05 | =
a member's id is used again   | 3 clears 1; answers 1 4720; clears 9; passes 10; clears 1
+   | dialled 4712 Bob 00:30, received 4720 00:10, received 4711 Ann 00:30 | =
old calls cleared themselves  | 3 clears 1; clears 2; clears 9 | dialled 4712 Bob 00:30, received 4711 Ann 00:30 | =
grows, another id             | 3 answers 3 4713; conference 10 9 4711 3 4713; passes 5; clears 10 at=4712 local=connected;
+   passes 30; clears 10 | dialled 4712 Bob 00:35, received 4713 00:35, received 4711 Ann 01:05 | =
grows twice                   | 3 answers 3 4713; conference 10 3 4713 9 4711; answers 4 4714;
+   conference 11 10 4711 4 4714; clears 11
+   | dialled 4712 Bob 00:30, received 4714, received 4711 Ann 00:30, received 4713
+   | dialled 4712 Bob 00:30, received 4714, received 4713, received 4711 Ann 00:30
grows under its id            | 3 answers 3 4713; conference 9 3 4713 9 4711; passes 30; clears 9
+   | dialled 4712 Bob 01:00, received 4713 00:30, received 4711 Ann 01:00 | =
another one comes             | 3 answers 3 4713; conference 10 3 4713 0 -; clears 10; passes 5; clears 1; clears 2
+   | dialled 4712 Bob 00:35, received 4711 Ann 00:35, received 4713 | =
a membership brings the name  | dials 1 4711; reaches 1 4711 4711; member 1 4711:Ann; member 2 4711:Bob; clears 1
+   | dialled 4711 | dialled 4711 Ann
that of another call does not | dials 1 4711; reaches 1 4711 4711; member 1 4712:Ann; clears 1 | dialled 4711 | =
)";
    expectOutcomes(std::regex_replace(rows, std::regex("\\| 3 "), "| " + three));
}

// With "system-identifier" 1 a call that rang is missed only when the switch marks it. A mark that fits no
// ringing call has no effect, and a name changes the name alone.
TEST(JoinedCalls, AreMarkedAsMissedAndNamedByCallInformation) {
    expectOutcomes(R"(
marked, rings here   | rings 1 4711; informs 1 4711 private=MissedCall; clears 1 | missed 4711 | =
marked, is answered  | answers 1 4711; informs 1 4711 private=MissedCall; clears 1 | received 4711 | =
marked, is ours      | dials 1 4711; informs 1 4711 private=MissedCall; clears 1 | dialled 4711 | =
marked, is unknown   | informs 1 4711 private=MissedCall | | =
never seen here      | informs -1 4711:Ann private=MissedCall | missed 4711 Ann | =
another journals it  | set otherServer on; informs -1 4711:Ann private=MissedCall | | =
kept elsewhere       | set keptElsewhere on; informs -1 4711 private=MissedCall | | =
kept by the switch   | set callEvents off; informs -1 4711 private=MissedCall | | =
named, was sent here | answers 1 4711 by=600; informs 1 4711:Ann
+   | ; 1 in Established remote[4711 Ann] connected[4711] redirecting[600]
+   | ; 1 in Established called+remote[4711 Ann] connected+redirecting[600]
named, is unknown    | informs 1 4711:Ann | | =
)");
    SimulatedPhone phone;
    phone.plays("informs -1 4711 private=MissedCall");
    const auto info = phone.list<MissedCallItem>().front().getMissedCallInfoList().front();
    EXPECT_TRUE(std::regex_match(info.getCallId(), std::regex("[0-9A-F]{8}"))) << info.getCallId();
}

TEST(JoinedCalls, PrivateDataOfASipSwitchFillsTheRecord) {
    SimulatedPhone phone{softwaretypes::sip};
    phone.plays("dials 1 4711:Ann; reaches 1 4711:Ann 4711:Ann");
    CSTATransferredEvent event;
    event.setOldCalls("1", "");
    event.setConnection("9", CSTADevice::kLocalDevice);
    event.setPrivateData(
        "dialledName=A%3Bnn%20100%;firstForwardedNumber=4713;firstForwardedName=Carl;"
        "redirectingNumber=4714;redirectingName=D%c3%b6rte;unknown=1;=;broken");
    phone.delivers(event);
    const journal::Call* const call = phone.components().calls.findCallFromId("9");
    ASSERT_NE(call, nullptr);
    EXPECT_EQ(call->m_sDialledPartyName, "A;nn 100%");
    EXPECT_EQ(call->m_sFirstForwardedParty + " " + call->m_sFirstForwardedPartyName, "4713 Carl");
    EXPECT_EQ(call->m_sRedirectingParty + " " + call->m_sRedirectingPartyName, "4714 Dörte");
    EXPECT_TRUE(call->m_transferred);
}

TEST(JoinedCalls, AreLeftAloneOnAnUnknownSoftwareType) {
    SimulatedPhone phone{"Norlith Other"};
    phone.plays("rings 1 4711; transfers 1 - 9 4711 4712");
    EXPECT_TRUE(CapturedLog::contains("Unhandled software type."));
    EXPECT_NE(phone.components().calls.findCallFromId("1"), nullptr);
}

// The table has two places, and what does not fit changes nothing in it.
TEST(JoinedCalls, OddReportsLeaveTheConferencesAsTheyAre) {
    for (const auto& row : table(3, R"(
no call          | conference 8 0 4711 0 0                                 |
second is none   | conference 8 1 4711 0 -                                 | 8:1
a third          | conference 8 1 1 0 0; conference 9 2 2 0 0; conference 10 3 3 0 0 | 8:1 9:1
known device     | conference 8 1 4711 2 4712; conference 8 4 4711 0 0     | 8:2
expanded         | conference 8 1 4711 2 4712; conference 8 4 4714 0 -     | 8:3
expanded by none | conference 8 1 4711 0 0; conference 8 0 0 0 -           | 8:1
with a second    | conference 8 1 4711 0 0; conference 8 4 4714 5 4715     | 8:2
grown            | conference 8 1 1 2 2; conference 9 8 1 3 3             | 9:3
both as one      | conference 8 1 1 2 2; conference 9 3 3 4 4; conference 10 8 1 9 3 | 10:4
into the other   | conference 8 1 1 2 2; conference 9 3 3 4 4; conference 9 8 1 0 -  | 9:4
grown, no place  | conference 8 1 1 2 2; conference 9 3 3 0 0; conference 10 8 1 4 4 | 9:1 10:3
a freed place    | conference 8 1 1 2 2; conference 9 3 3 0 0; clears 8; conference 10 4 4 0 0 | 9:1 10:1
)")) {
        SCOPED_TRACE(row[0]);
        SimulatedPhone phone;
        phone.plays(row[1]);
        std::string found;
        for (const char* id : {"8", "9", "10"}) {
            int index = -1;
            if (phone.components().conferences.searchConferenceIDIndex(id, index)) {
                found += std::string(found.empty() ? "" : " ") + id + ":" +
                         std::to_string(phone.components().conferences.members(index).size());
            }
        }
        EXPECT_EQ(found, row[2]);
    }
}

}  // namespace
}  // namespace journaltest
