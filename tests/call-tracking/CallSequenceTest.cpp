// Calls as the switch tells them, on both flavours, and what they leave in the journal. Each row is one script (the steps
// are described at `Line`) with the outcome on every phone that is not a SIP phone, and on a SIP phone; "=" is the same.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/texts/communicationsServiceTexts.h"
#include "tests/call-tracking/Line.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeHardware.h"
#include "tests/support/Table.h"

namespace {

using journaltest::CapturedLog;
using journaltest::Line;

void expectOutcomes(const std::string& text,
                    const std::vector<const char*>& types = {softwareTypes::qorvex, "", softwareTypes::sip}) {
    for (const auto& row : journaltest::table(4, text)) {
        for (const char* const type : types) {
            SCOPED_TRACE(row[0] + " on '" + type + "': " + row[1]);
            journaltest::FakeHardware::setSubPlatformVariant(0);
            Line line(type);
            line.plays(row[1]);
            const bool sip = line.parts.settings.values()->isSip();
            EXPECT_EQ(line.outcome(), sip && row[3] != "=" ? row[3] : row[2]);
        }
    }
}

TEST(CallSequence, OfAnIncomingCallEndsInTheListThatTheFlavourSays) {
    expectOutcomes(R"(
missed                  | rings 1 4711:Ann; clears 1 | missed 4711 Ann | =
offered first           | offers 1; rings 1 4711:Ann; clears 1 | missed 4711 Ann | =
anonymous               | rings 1 -; clears 1 | missed | =
anonymous with a name   | rings 1 :Anonymous; clears 1 | missed Anonymous | =
only offered            | offers 1; clears 1 | | =
answered                | rings 1 4711:Ann; passes 9; answers 1 4711:Ann; passes 65; clears 1
+   | received 4711 Ann 01:05 | =
name with the answer    | rings 1 4711; answers 1 4711:Ann; clears 1 | received 4711 Ann | =
answer names nobody     | rings 1 4711:Ann; established 1 - here here; clears 1 | received 4711 Ann | =
answer without devices  | rings 1 4711:Ann; established 1 - - -; clears 1 | received 4711 Ann | =
held and retrieved      | answers 1 4711:Ann; holds 1; passes 30; retrieves 1; passes 30; clears 1
+   | received 4711 Ann 01:00 | =
first seen answered     | answers 1 4711:Ann; passes 3; clears 1 | received 4711 Ann 00:03 | =
sent here by a group    | rings 1 4711:Ann cause=redirected by=600:Sales; clears 1 | missed 4711 Ann by 600 | =
sent here and answered  | rings 1 4711:Ann cause=distributed by=600:Sales; answers 1 4711:Ann by=600:Sales; clears 1
+   | received 4711 Ann by 600 | =
in a queue, rings       | queues 1 4711:Ann here; clears 1 | missed 4711 Ann | =
in a group's queue      | queues 1 4711:Ann 600:Sales; clears 1 | missed 4711 Ann | missed 4711 Ann by 600
answered elsewhere      | rings 1 4711:Ann; clears 1 cause=elsewhere | missed 4711 Ann elsewhere | =
elsewhere, not logged   | set missedLogging off; rings 1 4711; clears 1 cause=elsewhere; rings 2 4712; clears 2
+   | missed 4712 | =
diverted                | rings 1 4711:Ann; diverts 1 4711:Ann here 4712; clears 1 | forwarded 4711 Ann to 4712 |
diverted, anonymous     | rings 1 -; diverts 1 - here 4712:Bob | forwarded to 4712 |
diverted, never rang    | diverts 1 4711:Ann here 4712:Bob | forwarded 4711 Ann to 4712 |
not put through         | offers 1; fails 1 4711:Ann here | missed 4711 Ann | =
twice, one item         | rings 1 4711; clears 1; passes 60; rings 2 4711; clears 2 | missed 4711, missed 4711 | =
two at once             | rings 1 4711; answers 1 4711; rings 2 4712; passes 5; clears 2; clears 1
+   | missed 4712, received 4711 00:05 | =
itself as the far end   | rings 1 here cause=redirected by=here; established 1 here here here; clears 1 | received | =
ring back when answered | answers 1 4711:Ann; ringsAt 1 - 4711:Ann; clears 1 | | received 4711 Ann
clear of nothing        | clears 1; clears -; clears 1 cause=transfer | | =
)");
}

TEST(CallSequence, OfAnOutgoingCallEndsInTheListThatTheFlavourSays) {
    expectOutcomes(R"(
answered                | dials 1 4711:Ann; ringsAt 1 4711:Ann 4711:Ann; passes 4;
+   reaches 1 4711:Ann 4711:Ann; passes 75; clears 1 | dialled 4711 Ann 01:15 | =
nobody answered         | dials 1 4711; ringsAt 1 4711 4711:Ann; passes 20; clears 1 | dialled 4711 Ann | =
hung up early           | dials 1 4711; clears 1 | dialled 4711 | =
busy                    | dials 1 4711; fails 1 here 4711; clears 1 | dialled 4711 | =
first seen ringing      | ringsAt 1 4711:Ann 4711:Ann; clears 1 | dialled 4711 Ann | =
group's queue           | dials 1 600:Sales; queues 1 here 600:Sales; reaches 1 600:Sales 600:Sales;
+   passes 7; clears 1 | dialled 600 Sales 00:07 | =
group's queue, hung up  | dials 1 600:Sales; queues 1 here 600:Sales; clears 1 | dialled 600 Sales | =
another party answered  | dials 1 4711:Ann; ringsAt 1 4711:Ann 4711:Ann; reaches 1 4711:Ann 4712:Bob;
+   passes 2; clears 1 | dialled 4711 Ann 00:02 | =
called back             | rings 1 here cause=callback; established 1 here 4711:Ann 4711:Ann; passes 9; clears 1
+   | dialled 4711 Ann |
no device at the answer | dials 1 4711; established 1 here - -; passes 2; clears 1 | dialled 4711 00:02 | =
called party diverts    | dials 1 4711:Ann; ringsAt 1 4711:Ann 4711:Ann; diverts 1 here 4711:Ann 4712:Bob; clears 1
+   | dialled 4711 Ann | =
diverts, never tracked  | diverts 2 here 4711 4712 | | =
picked up from a phone  | dials 1 *59 cause=directed-pickup; established 1 here 4711:Ann -; passes 9; clears 1
+   | dialled *59 00:09 | received 4711 Ann 00:09
picked up, its parties  | dials 1 *59 cause=directed-pickup; established 1 4711:Ann 4712:Bob here; clears 1
+   | received 4711 Ann | =
picked up from a group  | dials 1 4711:Ann; reaches 1 4711:Ann 4711:Ann cause=group-pickup; passes 9; clears 1
+   | dialled 4711 Ann 00:09 | received 4711 Ann 00:09
sent on, Crest          | hardware 4; dials 1 4711; ringsAt 1 4711 4711; diverts 1 here 4711 4712
+   | dialled 4711 sent on; 1 out 2 dialled[4711] called[4711] remote[4711] connected[4712] | dialled 4711 sent on
another answers, Crest  | hardware 3; dials 1 4711; reaches 1 4711:Ann 4712:Bob
+   | ; 1 out 3 dialled[4711] called[4711 Ann] remote[4711] connected[4712 Bob] | dialled 4711 sent on
forwarded on, Crest     | hardware 3; dials 1 4711; ringsAt 1 4711:Ann 4712 cause=forward-busy
+   | ; 1 out 2 dialled[4711] called[4711 Ann] remote[4711 Ann] | dialled 4711 sent on
)");
}

TEST(CallSequence, WithATransferKeepsBothEndsApart) {
    expectOutcomes(R"(
linked by the clear     | answers 1 4711:Ann; holds 1 cause=held-for-transfer; answers 2 4712:Bob; passes 1;
+   clears 2 cause=transfer; clears 1
+   | received 4711 Ann 00:01 by 4712 transferred, received 4712 Bob 00:01 by 4711 transferred | =
held call is the one    | answers 1 4711; holds 1 cause=held-for-transfer; retrieves 1;
+   clears 1 cause=transfer; answers 2 4712; clears 2 cause=transfer | received 4712, received 4711 transferred | =
blind, before a second  | answers 1 4711; passes 8; holds 1 cause=held-for-transfer; clears 1; waits 999
+   | ; 1 in 3 remote[4711] connected[4711] | ; 1 in 3 dialled[4711] called[4711] remote[4711] connected[4711]
blind, after it         | answers 1 4711; passes 8; holds 1 cause=held-for-transfer; clears 1; waits 1000
+   | received 4711 00:08 | =
answered after a hold   | holds 1 cause=held-for-transfer; answers 1 4711:Ann; clears 1 | received 4711 Ann | =
)",
                   {softwareTypes::qorvex, softwareTypes::sip});
}

TEST(CallSequence, IsFollowedByWhatEachEventSaysOfTheCall) {
    expectOutcomes(R"(
dialled                 | dials 1 4711:Ann
+   | ; 1 out 0 dialled[4711 Ann] called[4711 Ann] remote[4711 Ann] | ; 1 out 0 dialled[4711]
dialled, no cause       | dials 1 4711 cause=none
+   | ; 1 out 0 dialled[4711] called[4711] remote[4711] | ; 1 out 0 dialled[4711]
group pick-up           | dials 1 4711 cause=group-pickup
+   | ; 1 out 0 dialled[4711] called[4711] remote[4711] | ; 1 out 0 as incoming
pick-up                 | dials 1 4711 cause=pickup | | ; 1 out 0 as incoming
park                    | dials 1 4711 cause=park | | =
retrieve from park      | dials 1 4711 cause=retrieve-park | ; 1 out 0 dialled[4711] called[4711] remote[4711] |
directed pick-up        | dials 1 4711 cause=directed-pickup
+   | ; 1 out 0 dialled[4711] called[4711] remote[4711] | ; 1 out 0 as incoming
pick-up from park       | dials 1 4711 cause=pickup-from-park
+   | ; 1 out 0 dialled[4711] called[4711] remote[4711] | ; 1 out 0 as incoming
delivered, null         | rings 1 4711 local=0 | ; 1 in 2 remote[4711] | ; 1 in 2 called[4711] remote[4711]
delivered, initiated    | rings 1 4711 local=1 | | =
delivered, connected    | rings 1 4711 local=3 | ; 1 out 2 | =
delivered, held         | rings 1 4711 local=4 | | =
delivered, queued       | rings 1 4711 local=5 | | ; 1 out 2
delivered, failed       | rings 1 4711 local=6 | | =
delivered, another      | rings 1 4711 local=7 | | =
reminder                | rings 1 4711 private=ReminderCall | | ; 1 in 2 called[4711] remote[4711]
answered: called here   | established 1 4711 here - | ; 1 in 3 remote[4711] connected[4711]
+   | ; 1 in 3 dialled[4711] called[4711] remote[4711] connected[4711]
answered here           | established 1 4711 600 here | ; 1 in 3 remote[4711] connected[4711]
+   | ; 1 in 3 dialled[4711] called[4711] remote[4711] connected[4711]
answered: placed here   | established 1 here 4711 4711
+   | ; 1 out 3 dialled[4711] called[4711] remote[4711] connected[4711] | =
answered: both here     | established 1 here here 4711 | ; 1 out 3 remote[4711] connected[4711]
+   | ; 1 out 3 dialled[4711] called[4711] remote[4711] connected[4711]
answered: not here      | established 1 4711 4712 4712 | | =
forwarded, unknown      | rings 1 4711 cause=forwarded | | ; 1 in 2 called[4711] remote[4711]
forwarded, offered      | offers 1; rings 1 4711 cause=forwarded | ; 1 in 2 remote[4711]
+   | ; 1 in 2 called[4711] remote[4711]
sender, new call        | rings 1 4711 by=600:Sales | ; 1 in 2 remote[4711]
+   | ; 1 in 2 called[600 Sales] remote[4711] connected[600 Sales] redirecting[600 Sales]
sender, forward         | rings 1 4711 by=600 cause=forward | ; 1 in 2 remote[4711]
+   | ; 1 in 2 called[600] remote[4711] connected[600] redirecting[600]
sender, redirected      | rings 1 4711 by=600 cause=redirected | ; 1 in 2 remote[4711] redirecting[600] sent here
+   | ; 1 in 2 called[600] remote[4711] connected[600] redirecting[600]
sent on                 | dials 1 4711:Ann; ringsAt 1 4711:Ann 4712:Bob cause=forwarded
+   | ; 1 out 2 dialled[4711 Ann] called[4711 Ann] remote[4711 Ann] connected[4712 Bob] first[4712 Bob]
+   | ; 1 out 2 dialled[4711] called[4712 Bob] remote[4712 Bob]
sent on twice           | dials 1 4711; ringsAt 1 4711 4712 cause=forwarded; ringsAt 1 4711 4713 cause=forwarded
+   | ; 1 out 2 dialled[4711] called[4711] remote[4711] connected[4713] first[4712]
+   | ; 1 out 2 dialled[4711] called[4712] remote[4712]
forwarding              | dials 1 4711; ringsAt 1 4711:Ann 4712:Bob cause=forward-busy
+   | ; 1 out 2 dialled[4711] called[4711 Ann] remote[4711 Ann]
+   | ; 1 out 2 dialled[4711] remote[4711 Ann] connected[4712 Bob]
called party diverts    | dials 1 4711; diverts 1 here 4711 4712
+   | ; 1 out 0 dialled[4711] called[4711] remote[4711] connected[4712]
+   | ; 1 out 0 dialled[4711] remote[4711] connected[4712]
media server            | answers 1 4711; retrieves 1 media=yes | ; 1 in 3 remote[4711] connected[4711] media
+   | ; 1 in 3 dialled[4711] called[4711] remote[4711] connected[4711] media
media server no more    | answers 1 4711; retrieves 1 media=yes; retrieves 1; retrieves 2 media=yes
+   | ; 1 in 3 remote[4711] connected[4711] | ; 1 in 3 dialled[4711] called[4711] remote[4711] connected[4711]
)");
}

TEST(CallSequence, ThatFailsLeavesNoRecordBehind) {
    expectOutcomes(R"(
busy here               | fails 1 4711 here | missed 4711 | =
busy there              | fails 1 here 4712 | dialled 4712 | =
not here at all         | fails 1 4713 4714 | | =
no call id              | fails - 4711 here cause=none | | =
call id 0               | fails 0 4711:Ann here | missed 4711 Ann | =
no cause                | fails 1 4711 here cause=none | missed 4711 | =
unknown cause           | fails 1 4711 here cause=unknown | missed 4711 | =
no cause, rang          | rings 1 4711:Ann; fails 1 - here cause=none; clears 1 | missed 4711 Ann | =
no cause, another       | rings 1 4711:Ann; fails 1 4712 here cause=none | missed 4712 | missed 4711 Ann
no cause, answered      | answers 1 4712; fails 1 4711 here cause=none; clears 1
+   | missed 4711, received 4712 | missed 4712
no cause, placed here   | dials 1 4711; fails 1 4712 here cause=none; clears 1
+   | missed 4712, dialled 4711 | dialled 4711
call id 0 diverted      | set serverFeatures off; diverts 0 4713 here 4712 | forwarded 4713 to 4712 |
)");
}

TEST(CallSequence, CountsOnlyWhereTheJournalIsKept) {
    const std::string everything =
        "dials 1 4711; offers 2; queues 3 4711 here; rings 4 4711; diverts 5 4711 here 4712; answers 6 4711; "
        "fails 7 4711 here";
    expectOutcomes("elsewhere | set keptElsewhere on; " + everything + " | | =");
    expectOutcomes("by the switch | set callEvents off; " + everything + " | |", {softwareTypes::qorvex, ""});
    expectOutcomes("nowhere | set callLog off; " + everything + " | |", {softwareTypes::sip});
    expectOutcomes(R"(
log off, not a SIP phone | set callLog off; rings 1 4711; clears 1 | missed 4711 |
by the switch, SIP phone | set callEvents off; rings 1 4711; clears 1 | | missed 4711
clear comes too early    | rings 1 4711; set keptElsewhere on; clears 1; set keptElsewhere off
+   | ; 1 in 2 remote[4711] | ; 1 in 2 called[4711] remote[4711]
clear, switch keeps it   | rings 1 4711; set callEvents off; clears 1 | ; 1 in 2 remote[4711] | missed 4711
no such features         | set serverFeatures off; rings 1 4711; diverts 1 4711 here 4712; clears 1 | missed 4711 |
)");
}

TEST(CallSequence, OnASharedLineWhoseMissedCallsAreNotLoggedIsDropped) {
    Line line(softwareTypes::sip);
    line.parts.lineDevices.insert("2002", {"m2", false, 2});
    line.parts.lineDevices.insert("2003", {"m3", true, 2});
    line.plays(
        "rings 1 4711 at=2002; rings 2 4712 at=2003; rings 3 4713 at=2004; clears 1; clears 2; clears 3");
    EXPECT_EQ(line.outcome(), "missed 4713, missed 4712");
}

TEST(CallSequence, TakesTheNamesOfThePhonebookAndTheTimesOfTheCall) {
    Line line;
    line.phonebook.add("4711", "Ann", "Smith");
    line.plays("rings 1 4711:A.S.; passes 20; clears 1; rings 2 4712; passes 5; answers 2 4712; clears 2");
    EXPECT_EQ(line.journal(), "missed 4711 Ann Smith, received 4712");
    EXPECT_EQ(line.list<MissedCallItem>().front().getMissedCallInfoList().front().getTimeAndDate(),
              "2026-11-21T05:22:05Z");
    EXPECT_EQ(line.list<ReceivedCallItem>().front().getReceivedCallInfoList().front().getTimeAndDate(),
              "2026-11-21T05:22:25Z");
}

TEST(CallSequence, ShowsWhoReallyAnsweredAFeatureAccessCode) {
    Line line;
    line.digits.addFeatureAccessCode("*61");
    line.plays("dials 1 *61; reaches 1 *61 4712:Bob; clears 1");
    EXPECT_EQ(line.journal(), "dialled *61 to 4712");
}

TEST(CallSequence, ClearsTheReadinessForTheSwitchsLogWhenACallIsOfferedThere) {
    Line line;
    line.parts.readiness.m_callLogEventsReady = true;
    line.plays("offers 1");
    EXPECT_TRUE(line.parts.readiness.m_callLogEventsReady);
    line.plays("set callEvents off; offers 2");
    EXPECT_FALSE(line.parts.readiness.m_callLogEventsReady);
}

// ---- the switch and the phone no longer agree -------------------------------------------------------------------

TEST(CallSequence, IsForgottenWithItsConferencesWhenTheSwitchHasLostIt) {
    for (const auto& row : journaltest::table(3, R"(
cleanup | lost | 2
disabled | lost | 0
partiallyDisabled | lost | 0
reset | lost | 0
stopped | lost | 0
enabled | kept | 0
normal | kept | 0
)")) {
        for (const char* type : {softwareTypes::qorvex, softwareTypes::sip}) {
            SCOPED_TRACE(row[0] + " on " + type);
            CapturedLog::reset();
            Line line(type);
            line.plays("rings 1 4711");
            line.parts.conferences.addConference(1, "9");
            line.parts.readiness.m_callLogEventsReady = true;
            line.plays("status " + row[0]);
            const bool lost = row[1] == "lost";
            EXPECT_EQ(line.liveCalls().empty(), lost);
            EXPECT_EQ(line.parts.conferences.getNumberOfConferences(), lost ? 0 : 1);
            EXPECT_EQ(line.parts.readiness.m_callLogEventsReady, !lost);
            EXPECT_EQ(CapturedLog::count("are out of sync. with PBX, release all existing"),
                      std::stoi(row[2]));
            EXPECT_EQ(line.journal(), "");
        }
    }
}

TEST(CallSequence, StaysAfterALossWhileTheJournalIsNotKept) {
    expectOutcomes("kept elsewhere | rings 1 -; set keptElsewhere on; status reset | ; 1 in 2 | =");
    expectOutcomes("switched off | rings 1 -; set callLog off; status reset | | ; 1 in 2");
    Line line;
    line.parts.readiness.m_callLogEventsReady = true;
    line.plays("set callEvents off; status reset");
    EXPECT_TRUE(line.parts.readiness.m_callLogEventsReady) << "the switch keeps the log";
}

}  // namespace
