// Calls of the phone 2001 in which other phones take part, with the entries that they leave. Each row is
// played on both flavours, and again without the own connection's state, which some switches do not send.

#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "host/csta-events/EventReader.h"
#include "host/csta-wire/WireDocument.h"
#include "tests/support/SimulatedPhone.h"
#include "tests/support/Table.h"
#include "tests/support/WireMembers.h"

namespace {

using journaltest::SimulatedPhone;
using journaltest::split;

const std::regex kOwnState(" own=(\\w+)");

/// A word of a row in the terms of the wire; "own=alerting" is the state of the phone's own connection.
std::string message(const std::string& text, bool withOwnState) {
    static const std::vector<std::pair<std::regex, std::string>> kinds = {
        {kOwnState, withOwnState ? " localConnectionInfo=$1" : ""},
        {std::regex("\\bfrom:"), "callingDevice:"},
        {std::regex("\\bto:"), "calledDevice:"},
        {std::regex("^Delivered (\\w+) at:(\\w+)"), "Delivered connection/$1/$2 alertingDevice:$2"},
        {std::regex("^Offered (\\w+) at:(\\w+)"), "Offered offeredConnection/$1/$2 offeredDevice:$2"},
        {std::regex("^Established (\\w+) at:(\\w+)"),
         "Established establishedConnection/$1/$2 answeringDevice:$2"},
        {std::regex("^Originated (\\w+)"), "Originated originatedConnection/$1/2001 callingDevice:2001"},
        {std::regex("^Failed (\\w+) at:(\\w+)"), "Failed failedConnection/$1/$2 failingDevice:$2"},
        {std::regex("^Held (\\w+) at:(\\w+)"), "Held heldConnection/$1/$2 holdingDevice:$2"},
        {std::regex("^Diverted (\\w+) at:(\\w+) away:(\\w+)"),
         "Diverted connection/$1/$2 divertingDevice:$2 newDestination:$3"},
        {std::regex("^Cleared (\\w+) at:(\\w+)"),
         "ConnectionCleared droppedConnection/$1/$2 releasingDevice:$2"},
        {std::regex("^Transfered (\\w+) (\\w+) by:(\\w+)"),
         "Transfered primaryOldCall/$1/$3 secondaryOldCall/$2/$3 transferringDevice:$3 "
         "transferredToDevice:2001"},
    };
    std::string wire = text;
    for (const auto& [pattern, replacement] : kinds) {
        wire = std::regex_replace(wire, pattern, replacement);
    }
    const std::string root = wire.substr(0, wire.find(' ')) + "Event>";
    return "<" + root + journaltest::membersOf(" monitorCrossRefID=77" + wire.substr(wire.find(' '))) + "</" +
           root;
}

std::string outcome(const std::string& messages, const char* type, bool withOwnState) {
    SimulatedPhone phone(type);
    phone.starts();
    host::PhoneCalls calls;
    host::EventReader reader("2001", calls);
    for (const std::string& text : split(messages, ';')) {
        if (text.rfind("passes ", 0) == 0) {
            phone.plays(text);
            continue;
        }
        if (text == "gap") {
            for (host::PhoneCall& call : calls.all()) {
                call.unconfirmed = true;
                calls.store(std::move(call));
            }
            continue;
        }
        std::string fault;
        const auto document = host::WireDocument::parse(message(text, withOwnState), fault);
        EXPECT_TRUE(document) << fault << ": " << text;
        for (host::PhoneEvent& read : reader.read(*document, {"7", "localDeviceID"})) {
            phone.delivers(*read.event);
        }
    }
    return phone.outcome();
}

/// Rows of: name | messages | outcome on Qorvex | outcome on SIP, "=" for the same.
void expectEntries(const std::string& rows) {
    for (const std::vector<std::string>& row : journaltest::table(4, rows)) {
        const std::string& onSip = row[3] == "=" ? row[2] : row[3];
        for (const bool withOwnState : {true, false}) {
            SCOPED_TRACE(row[0] + (withOwnState ? "" : ", own state not sent") + ": " + row[1]);
            EXPECT_EQ(outcome(row[1], softwaretypes::qorvex, withOwnState), row[2]);
            EXPECT_EQ(outcome(row[1], softwaretypes::sip, withOwnState), onSip) << "SIP";
        }
    }
}

TEST(OtherPhones, EstablishDivertFailAndRingWithoutEndingTheCallHere) {
    expectEntries(R"(
a colleague answers        | Delivered 1 at:2001 from:4711 to:2000 own=alerting; Established 1 at:2006 from:4711 to:2000 own=null;
+   Cleared 1 at:2006 own=null | missed 4711 elsewhere | =
a colleague rings, answers | Delivered 1 at:2001 from:4711 to:2000 own=alerting; Delivered 1 at:2006 from:4711 to:2000 own=alerting;
+   Established 1 at:2006 from:4711 to:2000 own=alerting; Cleared 1 at:2001 own=null cause=multipleAlerting
+   | missed 4711 elsewhere | =
a colleague picks it up    | Delivered 1 at:2001 from:4711 to:2001 own=alerting;
+   Diverted 1 at:2001 away:2007 from:4711 to:2001 own=null cause=callPickup;
+   Delivered 1 at:2007 from:4711 to:2007 own=null; Established 1 at:2007 from:4711 to:2007 own=null
+   | missed 4711 elsewhere | =
both ring, the caller gives up | Delivered 1 at:2001 from:4711 to:2000 own=alerting; Delivered 1 at:2006 from:4711 to:2000 own=alerting;
+   Cleared 1 at:4711 own=null | missed 4711 | =
a colleague gives up first | Delivered 1 at:2001 from:4711 to:2000 own=alerting; Cleared 1 at:2006 own=alerting;
+   Established 1 at:2001 from:4711 to:2000 own=connected; passes 2; Cleared 1 at:4711 own=null | received 4711 00:02 | =
a colleague diverts        | Delivered 1 at:2001 from:4711 to:2000 own=alerting; Diverted 1 at:2006 away:2007 from:4711 to:2000 own=alerting;
+   Cleared 1 at:4711 own=null | missed 4711 | =
a colleague diverts, answered | Delivered 1 at:2001 from:4711 to:2000 own=alerting;
+   Diverted 1 at:2006 away:2007 from:4711 to:2000 own=alerting; Established 1 at:2001 from:4711 to:2000 own=connected;
+   passes 2; Cleared 1 at:4711 own=null | received 4711 00:02 | =
a colleague is busy        | Delivered 1 at:2001 from:4711 to:2000 own=alerting; Failed 1 at:2006 from:4711 to:2000 own=alerting;
+   Established 1 at:2001 from:4711 to:2000 own=connected; passes 3; Cleared 1 at:2001 own=null | received 4711 00:03 | =
a colleague drops while talking | Delivered 1 at:2001 from:4711 to:2000 own=alerting;
+   Established 1 at:2001 from:4711 to:2000 own=connected; Cleared 1 at:2006 own=connected; passes 2;
+   Cleared 1 at:4711 own=null | received 4711 00:02 | =
a third party rings        | Delivered 1 at:2001 from:4711 to:2001 own=alerting; Established 1 at:2001 from:4711 to:2001 own=connected;
+   Delivered 1 at:4713 from:4711 to:4713 own=connected; passes 2; Cleared 1 at:2001 own=null | received 4711 00:02 | =
a third party comes and goes | Delivered 1 at:2001 from:4711 to:2001 own=alerting; Established 1 at:2001 from:4711 to:2001 own=connected;
+   Delivered 1 at:4713 from:4711 to:4713 own=connected; Established 1 at:4713 from:4711 to:4713 own=connected;
+   Cleared 1 at:4713 own=connected; passes 2; Cleared 1 at:4711 own=null | received 4711 00:02 | =
a third party is busy      | Delivered 1 at:2001 from:4711 to:2001 own=alerting; Established 1 at:2001 from:4711 to:2001 own=connected;
+   Failed 1 at:2006 from:2001 to:2006 own=connected; passes 2; Cleared 1 at:2001 own=null | received 4711 00:02 | =
a colleague stops ringing  | Delivered 1 at:2001 from:4711 to:2001 own=alerting; Cleared 1 at:2006 own=alerting;
+   Established 1 at:2001 from:4711 to:2001 own=connected; Cleared 1 at:2006 own=connected; passes 2;
+   Cleared 1 at:4711 own=null | received 4711 00:02 | =
the far end is a trunk     | Delivered 1 at:2001 from:4711 to:2001 own=alerting;
+   Established 1 at:2001 from:4711 to:2001 own=connected; passes 2; Cleared 1 at:T15 own=null | received 4711 00:02 | =
answered, then parked      | Delivered 1 at:2001 from:4711 to:2001 own=alerting;
+   Established 1 at:2001 from:4711 to:2001 own=connected; passes 2; Diverted 1 at:2001 away:7000 own=null cause=park;
+   Cleared 1 at:4711 own=null | received 4711 00:02 | =
a withheld caller, the roles are reversed | Delivered 1 at:2001 <callingDevice><restricted/></callingDevice> to:2000 own=alerting;
+   Established 1 at:2001 <callingDevice><restricted/></callingDevice> to:2000 own=connected; Held 1 at:2001 own=hold;
+   Established 1 at:4711 from:2001 own=connected; passes 1; Cleared 1 at:4711 own=null | received Withheld 00:01 | =
the roles are reversed     | Delivered 1 at:2001 from:4711 to:2001 own=alerting; Established 1 at:2001 from:4711 to:2001 own=connected;
+   Held 1 at:2001 own=hold; Established 1 at:4711 from:2001 to:4711 own=connected; passes 1;
+   Cleared 1 at:2001 own=null | received 4711 00:01 | =
)");
}

TEST(OtherPhones, TakePartInAnOutgoingCall) {
    expectEntries(R"(
the far end is offered it  | Originated 1 to:04712 own=connected cause=newCall; Offered 1 at:4712 from:2001 to:4712 own=connected;
+   Cleared 1 at:2001 own=null | dialled 04712 | =
a member of a group is busy | Originated 1 to:2100 own=connected cause=newCall; Failed 1 at:2006 from:2001 to:2100 own=connected cause=busy;
+   Established 1 at:2007 from:2001 to:2100 own=connected; passes 2; Cleared 1 at:2001 own=null | dialled 2100 00:02 | =
the members of a group ring | Originated 1 to:2100 own=connected cause=newCall; Delivered 1 at:2006 from:2001 to:2100 own=connected;
+   Delivered 1 at:2007 from:2001 to:2100 own=connected; Cleared 1 at:2001 own=null | dialled 2100 | =
a member stops ringing     | Originated 1 to:2100 own=connected cause=newCall; Delivered 1 at:2006 from:2001 to:2100 own=connected;
+   Delivered 1 at:2007 from:2001 to:2100 own=connected; Cleared 1 at:2006 own=connected;
+   Established 1 at:2007 from:2001 to:2100 own=connected; passes 2; Cleared 1 at:2007 own=null | dialled 2100 00:02 | =
another device leaves      | Originated 1 to:4711 own=connected cause=newCall; Delivered 1 at:4711 from:2001 to:4711 own=connected;
+   Cleared 1 at:4719 own=connected; Established 1 at:4711 from:2001 to:4711 own=connected; passes 2;
+   Cleared 1 at:2001 own=null | dialled 4711 00:02 | =
first seen established     | Established 1 at:4713 from:2001 to:4712 own=connected; passes 2; Cleared 1 at:2001 own=null
+   | dialled 4712 00:02 | =
picked up                  | Originated 1 to:*8 own=connected cause=newCall;
+   Established 1 at:2001 from:4711 to:2005 own=connected cause=callPickup; passes 2; Cleared 1 at:2001 own=null
+   | received 4711 00:02 | =
)");
}

TEST(OtherPhones, TransferACallHereWhileItRings) {
    const std::string transferred =
        "Delivered 52 at:2001 from:2005 to:2001 own=alerting; Transfered 51 52 by:2005 own=alerting "
        "<transferredConnections> moved/53/51/4711/N<4711>Ann moved/53/52/2001/2001 "
        "</transferredConnections>";
    expectEntries(
        "and is established | " + transferred +
        "; Established 53 at:2001 from:4711 to:2001 own=connected; passes 2; Cleared 53 at:4711 own=null"
        " | received 4711 Ann 00:02 | =\n"
        "and the caller gives up | " +
        transferred + "; Cleared 53 at:4711 own=null | missed 4711 Ann | =\n");
}

/// The reason of the last call that ended, or the reasons of the live calls.
std::string reasonOf(const std::string& messages, bool withOwnState) {
    host::PhoneCalls calls;
    host::CallReason reason{};
    calls.addListener({.changed = {}, .ended = [&](const host::PhoneCall& call) { reason = call.reason; }});
    host::EventReader reader("2001", calls);
    for (const std::string& text : split(messages, ';')) {
        std::string fault;
        const auto document = host::WireDocument::parse(message(text, withOwnState), fault);
        EXPECT_TRUE(document) << fault << ": " << text;
        static_cast<void>(reader.read(*document, {"7", "localDeviceID"}));
    }
    return std::string(wordOf(calls.all().empty() ? reason : calls.all().back().reason));
}

// name | messages | reason
TEST(OtherPhones, AreTheReasonForAnotherParty) {
    const std::string rings = "Delivered 1 at:2001 from:4711 to:2001 own=alerting";
    const std::string dials = "Originated 1 to:4711 own=connected cause=newCall";
    for (const std::vector<std::string>& row : journaltest::table(3, R"(
plain call                | RINGS; Established 1 at:2001 from:4711 to:2001 own=connected; Cleared 1 at:2001 own=null |
forwarded here            | Delivered 1 at:2001 from:4711 to:2005 lastRedirectionDevice:2005 own=alerting cause=callForwardBusy
+   | forward-busy
forwarded here by a member | Delivered 1 at:2001 from:4711 to:2005 lastRedirectionDevice:2005 own=alerting cause=callForward;
+   Established 1 at:2001 from:4711 to:2005 own=connected; Cleared 1 at:4711 own=null | forward-always
busy                      | DIALS; Failed 1 at:4711 from:2001 to:4711 own=fail cause=busy; Cleared 1 at:2001 own=null | busy
rejected                  | DIALS; Failed 1 at:4711 from:2001 to:4711 own=fail cause=callCancelled | rejected
no such number            | DIALS; Failed 1 at:4711 from:2001 to:4711 own=fail cause=destNotObtainable | no-such-number
forwarded, then busy      | DIALS; Delivered 1 at:4712 from:2001 to:4711 lastRedirectionDevice:4711 own=connected cause=callForwardImmediate;
+   Failed 1 at:4712 from:2001 to:4711 own=fail cause=busy | forward-always
failed after the answer   | DIALS; Established 1 at:4711 from:2001 to:4711 own=connected; Failed 1 at:4711 from:2001 to:4711 own=fail cause=busy |
not dialled here          | RINGS; Failed 1 at:2001 from:4711 to:2001 own=fail cause=busy |
not redirected            | Delivered 1 at:2001 from:4711 to:2001 own=alerting cause=callForwardBusy |
forwarded away            | RINGS; Diverted 1 at:2001 away:2007 from:4711 to:2001 own=null cause=callForwardNoAnswer | forward-no-answer
forwarded before it rings | Diverted 1 at:2001 away:2007 from:4711 to:2001 own=null cause=callForwardBusy | forward-busy
the far end forwards      | Originated 1 to:4711 own=connected cause=newCall;
+   Delivered 1 at:4712 from:2001 to:4711 lastRedirectionDevice:4711 own=connected cause=callForwardImmediate | forward-always
a colleague picks it up   | RINGS; Diverted 1 at:2001 away:2007 from:4711 to:2001 own=null cause=callPickup | pick-up
a colleague answers       | RINGS; Established 1 at:2006 from:4711 to:2001 own=null | completed-elsewhere
a colleague answers first | RINGS; Established 1 at:2006 from:4711 to:2001 own=alerting;
+   Cleared 1 at:2001 own=null cause=multipleAlerting | completed-elsewhere
answered elsewhere        | RINGS; Cleared 1 at:2001 own=null cause=multipleAlerting | completed-elsewhere
answered by a key there   | RINGS; Cleared 1 at:2001 own=null cause=keyOperation | completed-elsewhere
a member picks it up      | RINGS; Established 1 at:2006 from:4711 to:2001 own=alerting cause=callPickup;
+   Cleared 1 at:2001 own=null cause=multipleAlerting | pick-up
picked up here            | Originated 1 to:*8 own=connected cause=newCall; Established 1 at:2001 from:4711 to:2005 own=connected
+   | pick-up
transferred here          | Delivered 52 at:2001 from:2005 to:2001 own=alerting; Transfered 51 52 by:2005 own=alerting
+   <transferredConnections> moved/53/51/4711/4711 moved/53/52/2001/2001 </transferredConnections> | transfer
)")) {
        const std::string messages = std::regex_replace(
            std::regex_replace(row[1], std::regex("RINGS"), rings), std::regex("DIALS"), dials);
        EXPECT_EQ(reasonOf(messages, true), row[2]) << row[0];
        EXPECT_EQ(reasonOf(messages, false), row[2]) << row[0] << ", own state not sent";
    }
}

TEST(OtherPhones, UseTheIdOfACallAgain) {
    expectEntries(R"(
another caller rings | Delivered 25 at:2001 from:4711 to:2001 own=alerting; Delivered 25 at:2001 from:4712 to:2001 own=alerting;
+   Cleared 25 at:4712 own=null | missed 4712, missed 4711 | =
another call after a gap | Delivered 25 at:2001 from:4711 to:2001 own=alerting; gap;
+   Established 25 at:2001 from:4712 to:2001 own=connected; Cleared 25 at:2001 own=null | missed 4711, received 4712 | =
the same call after a gap | Delivered 25 at:2001 from:4711 to:2001 own=alerting; gap;
+   Established 25 at:2001 from:4711 to:2001 own=connected; Cleared 25 at:2001 own=null | received 4711 | =
a withheld caller after a gap | Delivered 25 at:2001 from:4711 to:2001 own=alerting; gap;
+   Delivered 25 at:2001 <callingDevice><restricted/></callingDevice> to:2001 own=alerting; Cleared 25 at:2001 own=null
+   | missed Withheld, missed 4711 | =
this phone dials     | Delivered 25 at:2001 from:4711 to:2001 own=alerting; Established 25 at:2001 from:4711 to:2001 own=connected;
+   Originated 25 to:4712 own=connected cause=newCall; Cleared 25 at:2001 own=null | dialled 4712, received 4711 | =
the same caller rings again | Delivered 25 at:2001 from:4711 to:2001 own=alerting; Established 25 at:2001 from:4711 to:2001 own=connected;
+   Delivered 25 at:2001 from:4711 to:2001 own=alerting; Cleared 25 at:2001 own=null | missed 4711, received 4711 | =
a reminder of a held call | Delivered 25 at:2001 from:4711 to:2001 own=alerting; Established 25 at:2001 from:4711 to:2001 own=connected;
+   Held 25 at:2001 own=hold; Delivered 25 at:2001 from:4711 to:2001 own=alerting; Established 25 at:2001 from:4711 to:2001 own=connected;
+   Cleared 25 at:2001 own=null | received 4711 | =
a reminder           | Delivered 25 at:2001 from:4711 to:2001 own=alerting; Established 25 at:2001 from:4711 to:2001 own=connected;
+   Delivered 25 at:2001 from:4711 to:2001 own=alerting cause=recallBusy; Cleared 25 at:2001 own=null | received 4711 | =
a colleague had answered | Delivered 25 at:2001 from:4711 to:2000 own=alerting; Delivered 25 at:2006 from:4711 to:2000 own=alerting;
+   Established 25 at:2006 from:4711 to:2000 own=alerting; gap; Originated 25 to:4712 own=connected cause=newCall;
+   Cleared 25 at:2001 own=null | missed 4711 elsewhere, dialled 4712 | =
another destination after a gap | Originated 25 to:4711 own=connected cause=newCall; gap;
+   Delivered 25 at:4712 from:2001 to:4712 own=connected; Cleared 25 at:2001 own=null | dialled 4712, dialled 4711 | =
)");
}

}  // namespace
