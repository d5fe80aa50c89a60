// The way of the parties of events into a call's record, by each flavour's rules. A row is a course of
// events, each as "in|out STATE REMOTE [DIVERTED]" ("_" is a space in a name), and what is known of the call
// in the end.

#include <gtest/gtest.h>

#include <string>

#include "src/JournalServiceEvents/calls/PartyRules.h"
#include "tests/support/CallTexts.h"
#include "tests/support/Table.h"

namespace {

using journal::Call;

using journaltest::deviceOf;
using journaltest::split;

/// Returns the parties of a new record after the events; "cti" after the parties is the mark of a call that
/// an application placed.
std::string partiesAfter(const std::string& events, bool sip, const std::string& callId = "7") {
    Call call(Call::eIncoming, callId, 0);
    for (const std::string& event : split(events, ';')) {
        const auto words = split(event, ' ');
        const auto state = journaltest::stateOf(words.at(1));
        const CSTADevice remote = deviceOf(words.size() > 2 ? words[2] : "");
        const CSTADevice diverted = deviceOf(words.size() > 3 ? words[3] : "");
        const journal::EventParties parties{remote.number, remote.name, diverted.number, diverted.name};
        call.m_Direction = words[0] == "in" ? Call::eIncoming : Call::eOutgoing;
        if (sip) {
            journal::mergeSipParties(call, state, call.m_Direction, parties);
        } else {
            journal::mergeQorvexParties(call, state, parties);
        }
        call.m_State = state;
    }
    return journaltest::partiesText(call) + (call.m_ctiAssisted ? " cti" : "");
}

TEST(PartyRulesQorvex, KeepWhatIsKnownAndLetADivertedPartyWin) {
    for (const auto& row : journaltest::table(3, R"(
an anonymous caller's name      | in Delivered :Anonymous | remote[ Anonymous]
a later number does not replace | in Delivered 4711:Ann; in Delivered 4712:Bob | remote[4711 Ann]
a later name fills in           | in Delivered 4711; in Delivered 4711:Ann | remote[4711 Ann]
another party's name does not   | in Delivered 4711; in Delivered 4712:Bob | remote[4711]
answered by an unnamed party    | in Delivered 4711:Ann; in Established | remote[4711 Ann] connected[4711]
diverted                        | in Forwarded 4712:Bob 4711:Ann | remote[4711 Ann] connected[4712 Bob]
diverted replaces another       | in Delivered 4711; in Forwarded 4712:Bob 4713:Cyd | remote[4713 Cyd] connected[4712 Bob]
diverted keeps its name         | in Delivered 4711:Ann; in Forwarded 4712 4711:A.S. | remote[4711 Ann] connected[4712]
nameless one takes a name away  | in Delivered 4711:Ann; in Forwarded 4712 4713 | remote[4713] connected[4712]
)")) {
        EXPECT_EQ(partiesAfter(row[1], false), row[2]) << row[0];
    }
}

TEST(PartyRulesQorvex, LetOnlyABluetoothCallWithoutANumberTakeALaterNumber) {
    for (const auto& row : journaltest::table(3, R"(
bluetoothDeviceID | in Delivered noNumberProvided; in Delivered 4711 | remote[4711]
bluetoothDeviceID | in Delivered noNumberProvided; in Delivered      | remote[noNumberProvided]
bluetoothDeviceID | in Delivered 4712; in Delivered 4711             | remote[4712]
7                 | in Delivered noNumberProvided; in Delivered 4711 | remote[noNumberProvided]
)")) {
        EXPECT_EQ(partiesAfter(row[1], false, row[0]), row[2]) << row[0] << ": " << row[1];
    }
}

TEST(PartyRulesSip, FollowTheCallStepByStep) {
    for (const auto& row : journaltest::table(3, R"(
sent here: who sent it is called, connected and redirecting | in Delivered 4711:Ann 600:Sales
+   | called+connected+redirecting[600 Sales] remote[4711 Ann]
sent here without names: known names stay, the redirecting one does not | in Delivered 4711:Ann 600:Sales; in Established 4711 601
+   | called+connected[601 Sales] remote[4711 Ann] redirecting[601]
sent here by another: a known caller stays | in Delivered 4711:Ann 600; in Established 4713:Cyd 600
+   | called+connected+redirecting[600] remote[4711 Ann]
sent on: the new party is connected only | out Delivered 4711:Ann; out Delivered 4711:Ann 4712:Bob
+   | called+remote[4711 Ann] connected[4712 Bob]
forwarded: the reported party becomes remote | out Delivered 4711:Ann; out Forwarded 4713:Cyd 4712:Bob
+   | called[4711 Ann] remote[4713 Cyd] connected[4712 Bob]
forwarded without names: the names stay | out Delivered 4711:Ann; out Established 4711:Ann; out Forwarded 4713 4712
+   | dialled[4711] called[4711 Ann] remote[4713 Ann] connected[4712 Ann]
forwarded to the remote party itself | out Delivered 4711:Ann; out Forwarded 4713:Cyd 4711:A.S.
+   | called+remote[4711 Ann] connected[4711 A.S.]
failed goes the same way | out Delivered 4711:Ann; out Failed 4713:Cyd 4712 | called[4711 Ann] remote[4713 Cyd] connected[4712]
forwarded without parties | out Forwarded |
forwarded to an unknown party | out Originated 4711; out Forwarded 4712:Bob | dialled[4711] called+remote[4712 Bob]
dialling again is as any other event | out Originated 4711; out Originated 4712:Bob | dialled[4711] called+remote[4712 Bob]
another party while both are the same | out Delivered 4711:Ann; out Delivered 4712:Bob | called+remote[4711 Ann]
a changed name of the same party | out Delivered 4711:Ann; out Delivered 4711:A.S. | called+remote[4711 A.S.]
the same party without a name, no party | out Delivered 4711:Ann; out Delivered 4711; out Cleared | called+remote[4711 Ann]
called and remote differ: replaced | in Delivered 4711:Ann 600; in Delivered 4713:Cyd
+   | called+remote[4713 Cyd] connected+redirecting[600]
called and remote differ: the remote party again | in Delivered 4711:Ann 600:Sales; in Delivered 4711:Ann
+   | called+remote[4711 Ann] connected+redirecting[600 Sales]
called and remote differ: no parties | in Delivered 4711:Ann 600; in Cleared | called+connected+redirecting[600] remote[4711 Ann]
no parties leave an anonymous name | in Delivered :Anonymous 600; in Cleared | called+connected+redirecting[600] remote[ Anonymous]
answered: connected and dialled | out Delivered 4711:Ann; out Established 4711:Ann | dialled[4711] called+remote+connected[4711 Ann]
answered without a party | out Originated 4711; out Delivered 4711:Ann; out Established | called+remote[4711 Ann] connected[4711]
answered again by another | out Delivered 4711:Ann; out Established 4711:Ann; out Established 4712:Bob
+   | dialled[4712] called+remote[4711 Ann] connected[4712 Bob]
answered again without a name | out Delivered 4711:Ann; out Established 4711:Ann; out Established 4712
+   | dialled+connected[4712] called+remote[4711 Ann]
a connected remote party whose name goes | out Delivered 4711:Ann; out Established 4711:Ann; out CallInformation 4711
+   | dialled+called[4711] remote+connected[4711 Ann]
answered on Bluetooth: what was dialled stays | out Originated bluetoothDeviceID; out Delivered bluetoothDeviceID; out Established 4711:Ann
+   | dialled+called+remote[bluetoothDeviceID] connected[4711 Ann]
a Bluetooth call keeps its called party | in Delivered 4711:Ann bluetoothDeviceID; in Delivered 4712:Bob
+   | called+connected+redirecting[bluetoothDeviceID] remote[4712 Bob]
an application's call is known by its mark | in Delivered 4711:CTI_Assisted | called+remote[4711] cti
which is no name | in Delivered 4711:CTI_assisted | called+remote[4711 CTI assisted]
)")) {
        EXPECT_EQ(partiesAfter(row[1], true), row[2]) << row[0];
    }
}

}  // namespace
