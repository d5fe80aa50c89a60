// Whole calls on both flavours, and the entries that they leave in the journal. A row is: name | script |
// outcome on a phone that is not a SIP phone | outcome on a SIP phone, "=" for the same. "+" continues the
// row above. SimulatedPhone.h describes scripts and outcomes. The scenarios of examples/scenarios play the
// usual calls on the whole program; these rows add the unusual ones.

#include <gtest/gtest.h>

#include "tests/support/SimulatedPhone.h"
#include "tests/support/Table.h"

namespace {

using journaltest::expectOutcomes;
using journaltest::SimulatedPhone;

const std::vector<const char*> kAllTypes = {softwaretypes::qorvex, "", softwaretypes::sip};

TEST(CallSequence, OfAnIncomingCallEndsInTheListThatTheFlavourSays) {
    expectOutcomes(R"(
no answering party      | rings 1 4711:Ann; established 1 - here here; clears 1 | received 4711 Ann | =
answer without devices  | rings 1 4711:Ann; established 1 - - -; clears 1 | received 4711 Ann | =
sent here by a group    | rings 1 4711:Ann cause=redirected by=600:Sales; clears 1 | missed 4711 Ann by 600 | =
sent here and answered  | rings 1 4711:Ann cause=distributed by=600:Sales; answers 1 4711:Ann by=600:Sales;
+   clears 1 | received 4711 Ann by 600 | =
in a queue, rings       | queues 1 4711:Ann here; clears 1 | missed 4711 Ann | =
in a group's queue      | queues 1 4711:Ann 600:Sales; clears 1 | missed 4711 Ann | missed 4711 Ann by 600
answered elsewhere      | rings 1 4711:Ann; clears 1 cause=elsewhere | missed 4711 Ann elsewhere | =
elsewhere, not logged   | set missedLogging off; rings 1 4711; clears 1 cause=elsewhere; rings 2 4712; clears 2
+   | missed 4712 | =
diverted                | rings 1 4711:Ann; diverts 1 4711:Ann here 4712; clears 1 | forwarded 4711 Ann to 4712 |
diverted, anonymous     | rings 1 -; diverts 1 - here 4712:Bob | forwarded to 4712 |
diverted, never rang    | diverts 1 4711:Ann here 4712:Bob | forwarded 4711 Ann to 4712 |
switched off, kept there | set callLog off; rings 1 4711; clears 1; logs missed 4712 | missed 4712, missed 4711 |
not put through         | offers 1; fails 1 4711:Ann here | missed 4711 Ann | =
was an outgoing one     | dials 1 4711; rings 1 4711; clears 1 | | =
answered as another's   | dials 1 4711; established 1 4712 here here; clears 1 | received 4712 | =
waits for the mark      | set marksMissed on; rings 7 4711; rings bluetoothDeviceID 4712; clears 7;
+   clears bluetoothDeviceID | missed 4712 | missed 4712, missed 4711
itself as the far end   | rings 1 here cause=redirected by=here; established 1 here here here; clears 1 | received | =
ring back when answered | answers 1 4711:Ann; ringsAt 1 - 4711:Ann; clears 1 | received 4711 Ann | =
no number               | rings 1 noNumberProvided; answers 2 noNumberProvided; clears 1; clears 2
+   | missed noNumberProvided | missed noNumberProvided, received noNumberProvided
no number, Crest        | hardware 3; answers 2 noNumberProvided; clears 2 | received noNumberProvided | =
placed by a computer    | rings 1 4711:CTI_Assisted; clears 1; answers 2 4711:CTI_Assisted; clears 2
+   | missed 4711, received 4711 | dialled 4711
its name stays a name   | dials 1 4711; reaches 1 4711 4711:Bob; clears 1; answers 2 4711:CTI_Assisted; clears 2
+   | dialled 4711 Bob, received 4711 | dialled 4711 Bob, dialled 4711 Bob
another server journals | set otherServer on; rings 1 4711; clears 1; fails 2 4712 here; answers 3 4713; clears 3
+   | missed 4712, missed 4711, received 4713 | received 4713
failed, waits for marks | set marksMissed on; fails 1 4711 here | missed 4711 | =
clear of nothing        | clears 1; clears -; clears 1 cause=transfer | | =
)",
                   kAllTypes);
}

TEST(CallSequence, OfAnOutgoingCallEndsInTheListThatTheFlavourSays) {
    expectOutcomes(R"(
first seen ringing      | ringsAt 1 4711:Ann 4711:Ann; clears 1 | dialled 4711 Ann | =
another party answered  | dials 1 4711:Ann; ringsAt 1 4711:Ann 4711:Ann; reaches 1 4711:Ann 4712:Bob; passes 2;
+   clears 1 | dialled 4711 Ann 00:02 | =
called party diverts    | dials 1 4711:Ann; ringsAt 1 4711:Ann 4711:Ann; diverts 1 here 4711:Ann 4712:Bob;
+   clears 1 | dialled 4711 Ann | =
diverts, never tracked  | diverts 2 here 4711 4712 | | =
picked up from a phone  | dials 1 *59 cause=directed-pickup; established 1 here 4711:Ann -; passes 9; clears 1
+   | dialled *59 00:09 | received 4711 Ann 00:09
picked up, its parties  | dials 1 *59 cause=directed-pickup; established 1 4711:Ann 4712:Bob here; clears 1
+   | received 4711 Ann | =
picked up from a group  | dials 1 4711:Ann; reaches 1 4711:Ann 4711:Ann cause=group-pickup; passes 9; clears 1
+   | dialled 4711 Ann 00:09 | received 4711 Ann 00:09
sent on, Crest          | hardware 4; dials 1 4711; ringsAt 1 4711 4711; diverts 1 here 4711 4712
+   | dialled 4711 sent on; 1 out Delivered dialled+called+remote[4711] connected[4712] | dialled 4711 sent on
sent on, no target, Crest | hardware 4; dials 1 4711; ringsAt 1 4711 4711; diverts 1 here 4711 -
+   | dialled 4711 sent on; 1 out Delivered dialled+called+remote[4711] | ; 1 out Delivered dialled+called+remote[4711]
sent on to itself, Crest | hardware 4; dials 1 4711; ringsAt 1 4711 4711; diverts 1 here 4711 4711
+   | dialled 4711 sent on; 1 out Delivered dialled+called+remote+connected[4711]
+   | ; 1 out Delivered dialled+called+remote+connected[4711]
another answers, Crest  | hardware 3; dials 1 4711; reaches 1 4711:Ann 4712:Bob; reaches 1 4711:Ann 4712:Bob
+   | ; 1 out Established dialled+remote[4711] called[4711 Ann] connected[4712 Bob] | dialled 4711 sent on
forwarded on, Crest     | hardware 3; dials 1 4711; ringsAt 1 4711:Ann 4712 cause=forward-busy
+   | ; 1 out Delivered dialled[4711] called+remote[4711 Ann] | dialled 4711 sent on
)");
}

TEST(CallSequence, OfAPartyThatIsCalledBackTakesItsMissedEntryAway) {
    expectOutcomes(R"(
no number was called | set deleteWhenCalled on; rings 1 -; clears 1; dials 5 -; established 5 here - -; clears 5
+   | missed, dialled | =
answered             | set deleteWhenCalled on; rings 1 -; clears 1; rings 2 4711; clears 2; rings 3 4712; clears 3;
+   dials 4 04711; reaches 4 4711 4711; clears 4 | missed 4712, missed, dialled 04711
+   | missed 4712, missed, dialled 4711
rang there first     | set deleteWhenCalled on; rings 2 4711; clears 2; dials 4 4711; ringsAt 4 4711 4711;
+   reaches 4 4711 4711; clears 4 | dialled 4711 | =
not answered yet     | set deleteWhenCalled on; rings 2 4711; clears 2; dials 4 4711; clears 4
+   | missed 4711, dialled 4711 | =
first seen answered  | set deleteWhenCalled on; rings 2 4711; clears 2; established 4 here 4711 4711; clears 4
+   | missed 4711, dialled 4711 | =
not wanted           | rings 2 4711; clears 2; dials 4 4711; reaches 4 4711 4711; clears 4
+   | missed 4711, dialled 4711 | =
)");
}

// A clearing right after the hold of its own call may be half of a blind transfer: it waits a second for the
// other half.
TEST(CallSequence, HoldsAClearingBackForASecondWhenItMayBeABlindTransfer) {
    expectOutcomes(R"(
linked by the clear     | answers 1 4711; holds 1 for-transfer; answers 2 4712; passes 1; clears 2 cause=transfer;
+   clears 1 | received 4711 00:01 by 4712 transferred, received 4712 00:01 by 4711 transferred | =
held call is the one    | answers 1 4711; holds 1 for-transfer; retrieves 1; clears 1 cause=transfer;
+   answers 2 4712; clears 2 cause=transfer | received 4712, received 4711 transferred | =
before the second       | answers 1 4711; passes 8; holds 1 for-transfer; clears 1; waits 999
+   | ; 1 in Established remote+connected[4711], a clearing held back
+   | ; 1 in Established dialled+called+remote+connected[4711], a clearing held back
after it                | answers 1 4711; passes 8; holds 1 for-transfer; clears 1; waits 1000
+   | received 4711 00:08 | =
cleared again           | answers 1 4711; holds 1 for-transfer; clears 1; waits 600; holds 2; clears 1; waits 999
+   | ; 1 in Established remote+connected[4711], a clearing held back
+   | ; 1 in Established dialled+called+remote+connected[4711], a clearing held back
cleared again, after it | answers 1 4711; holds 1 for-transfer; clears 1; waits 600; holds 2; clears 1; passes 9;
+   waits 1000; waits 5000 | received 4711 00:09 | =
two calls               | answers 1 4711; answers 2 4712; holds 1 for-transfer; clears 1; passes 1;
+   holds 2 for-transfer; clears 2; waits 1000 | received 4712 00:01, received 4711 00:01 | =
another call was held   | answers 1 4711; holds 2 for-transfer; clears 1 | received 4711 | =
held for another reason | answers 1 4711; holds 1; clears 1 | received 4711 | =
something came between  | answers 1 4711; holds 1 for-transfer; offers 2; clears 1; clears 2 | received 4711 | =
answered after a hold   | holds 1 for-transfer; answers 1 4711:Ann; clears 1 | received 4711 Ann | =
)");
}

TEST(CallSequence, LosesNoClearingThatIsHeldBackWhenTheTimerFails) {
    SimulatedPhone phone;
    phone.plays("answers 1 4711; holds 1 for-transfer; clears 1");
    const int timer = phone.context.runningTimers().front();
    phone.context.stopTimer(timer);  // it has run out, and the service is not notified yet
    phone.plays("passes 5; answers 2 4712; holds 1 for-transfer; clears 1");
    EXPECT_EQ(phone.journal(), "received 4711 00:05");
    phone.context.refuseTimers();
    phone.components().blindTransfer.start(phone.context, phone.service());
    EXPECT_TRUE(phone.context.runningTimers().empty()) << "the first timer is deleted, armed as it was";
    phone.plays("holds 2 for-transfer; clears 2");
    EXPECT_EQ(phone.outcome(), "received 4712, received 4711 00:05") << "without a timer nothing waits";
}

TEST(CallSequence, IsFollowedByWhatEachEventSaysOfTheCall) {
    expectOutcomes(R"(
dialled                 | dials 1 4711:Ann | ; 1 out Originated dialled+called+remote[4711 Ann] | ; 1 out Originated dialled[4711]
group pick-up           | dials 1 4711 cause=group-pickup | ; 1 out Originated dialled+called+remote[4711]
+   | ; 1 out Originated as incoming
pick-up                 | dials 1 4711 cause=pickup | | ; 1 out Originated as incoming
pick-up from park       | dials 1 4711 cause=pickup-from-park | ; 1 out Originated dialled+called+remote[4711]
+   | ; 1 out Originated as incoming
delivered, null         | rings 1 4711 local=null | ; 1 in Delivered remote[4711] | ; 1 in Delivered called+remote[4711]
delivered, held         | rings 1 4711 local=hold | | =
parks a call            | dials 1 4711 cause=park | | =
another party's name    | rings 1 4711; informs 1 4712:Bob | ; 1 in Delivered remote[4711] | ; 1 in Delivered called+remote[4711]
delivered, connected    | rings 1 4711 local=connected | ; 1 out Delivered | =
reminder                | rings 1 4711 private=ReminderCall | | ; 1 in Delivered called+remote[4711]
answered: called here   | established 1 4711 here - | ; 1 in Established remote+connected[4711]
+   | ; 1 in Established dialled+called+remote+connected[4711]
answered here           | established 1 4711 600 here | ; 1 in Established remote+connected[4711]
+   | ; 1 in Established dialled+called+remote+connected[4711]
answered: placed here   | established 1 here 4711 4711 | ; 1 out Established dialled+called+remote+connected[4711] | =
answered: both here     | established 1 here here 4711 | ; 1 out Established remote+connected[4711]
+   | ; 1 out Established dialled+called+remote+connected[4711]
answered: not here      | established 1 4711 4712 4712 | | =
forwarded, unknown      | rings 1 4711 cause=forwarded | | ; 1 in Delivered called+remote[4711]
forwarded, offered      | offers 1; rings 1 4711 cause=forwarded | ; 1 in Delivered remote[4711]
+   | ; 1 in Delivered called+remote[4711]
sender, redirected      | rings 1 4711 by=600 cause=redirected | ; 1 in Delivered remote[4711] redirecting[600] sent here
+   | ; 1 in Delivered called+connected+redirecting[600] remote[4711]
sent on twice           | dials 1 4711; ringsAt 1 4711 4712:Bob cause=forwarded; ringsAt 1 4711 4713 cause=forwarded
+   | ; 1 out Delivered dialled+called+remote[4711] connected[4713] first[4712 Bob]
+   | ; 1 out Delivered dialled[4711] called+remote[4712 Bob]
forwarding              | dials 1 4711; ringsAt 1 4711:Ann 4712:Bob cause=forward-busy
+   | ; 1 out Delivered dialled[4711] called+remote[4711 Ann] | ; 1 out Delivered dialled[4711] remote[4711 Ann] connected[4712 Bob]
called party diverts    | dials 1 4711; diverts 1 here 4711 4712
+   | ; 1 out Originated dialled+called+remote[4711] connected[4712] | ; 1 out Originated dialled+remote[4711] connected[4712]
media server            | answers 1 4711; retrieves 1 media=yes | ; 1 in Established remote+connected[4711] media
+   | ; 1 in Established dialled+called+remote+connected[4711] media
media server no more    | answers 1 4711; retrieves 1 media=yes; retrieves 1; retrieves 2 media=yes
+   | ; 1 in Established remote+connected[4711] | ; 1 in Established dialled+called+remote+connected[4711]
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
no cause, rang          | rings 1 4711:Ann; fails 1 - here cause=none; clears 1 | missed 4711 Ann | =
unknown cause, another  | rings 1 4711:Ann; fails 1 4712 here cause=unknown | missed 4712 | missed 4711 Ann
no cause, answered      | answers 1 4712; fails 1 4711 here cause=none; clears 1 | missed 4711, received 4712
+   | missed 4712
no cause, placed here   | dials 1 4711; fails 1 4712 here cause=none; clears 1 | missed 4712, dialled 4711
+   | dialled 4711
call id 0 diverted      | set serverFeatures off; diverts 0 4713 here 4712 | forwarded 4713 to 4712 |
)");
}

TEST(CallSequence, CountsOnlyWhereTheJournalIsKept) {
    const std::string everything =
        "dials 1 4711; offers 2; queues 3 4711 here; rings 4 4711; diverts 5 4711 here 4712; answers 6 4711; "
        "fails 7 4711 here";
    expectOutcomes("elsewhere | set keptElsewhere on; " + everything + " | | =", kAllTypes);
    expectOutcomes("by the switch | set callEvents off; " + everything + " | |", {softwaretypes::qorvex, ""});
    expectOutcomes("nowhere | set callLog off; " + everything + " | |", {softwaretypes::sip});
    expectOutcomes(R"(
log off, not a SIP phone | set callLog off; rings 1 4711; clears 1 | missed 4711 |
by the switch, SIP phone | set callEvents off; rings 1 4711; clears 1 | | missed 4711
clear comes too early    | rings 1 4711; set keptElsewhere on; clears 1; set keptElsewhere off
+   | | =
clear, switch keeps it   | rings 1 4711; set callEvents off; clears 1 | | missed 4711
no such features         | set serverFeatures off; rings 1 4711; diverts 1 4711 here 4712; clears 1 | missed 4711 |
lost, kept elsewhere     | rings 1 -; set keptElsewhere on; status reset | ; 1 in Delivered | =
lost, switched off       | rings 1 -; set callLog off; status reset | | ; 1 in Delivered
)");
}

TEST(CallSequence, IsForgottenWithItsConferencesWhenTheSwitchHasLostIt) {
    const std::string before = "rings 1 -; conference 9 2 4711 3 4712; status ";
    for (const char* const status : {"cleanup", "disabled", "partiallyDisabled", "reset", "stopped"}) {
        expectOutcomes("lost | " + before + status + " | | =");
    }
    expectOutcomes("kept | " + before + "enabled | ; 1 in Delivered, a conference | ; 1 in Delivered");
}

TEST(CallSequence, ClearsTheReadinessForTheSwitchsLogWhenItIsInDoubt) {
    for (const auto& row : journaltest::table(2, R"(
offers 1                                  | stays
set callEvents off; offers 1              | cleared
set callEvents off; status reset          | stays
status reset                              | cleared
)")) {
        SimulatedPhone phone;
        phone.components().readiness.m_callLogEventsReady = true;
        phone.plays(row[0]);
        EXPECT_EQ(phone.components().readiness.m_callLogEventsReady, row[1] == "stays") << row[0];
    }
}

}  // namespace
