#include "host/csta-events/EventReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "host/csta-events/OtherDeviceEvents.h"
#include "host/csta-wire/DeviceText.h"
#include "host/csta-wire/WireDocument.h"
#include "platform/csta/CSTAConferenceEvents.h"
#include "platform/csta/CSTAPrivateEvents.h"
#include "tests/support/EventName.h"
#include "tests/support/Table.h"
#include "tests/support/WireMembers.h"

namespace {

using host::comparableNumber;
using host::DeviceText;
using host::parseDeviceText;
using journaltest::membersOf;
using journaltest::split;
using journaltest::table;
using testing::HasSubstr;

/// "Held call: 7, device: here, own: 4, cause: 3", then what only some events hold; private data in brackets.
std::string textOf(const CSTAEvent& event) {
    std::string text =
        journaltest::nameOf(event) + (event.toString().empty() ? "" : " ") +
        std::regex_replace(std::regex_replace(event.toString(), std::regex("localDeviceID"), "here"),
                           std::regex("localConnection"), "own");
    if (const auto* callBack = dynamic_cast<const CSTACallBackEvent*>(&event)) {
        const CSTADevice& target = callBack->getTargetDevice();
        text += callBack->getOriginatingDevice().isLocal() ? " from here" : " from elsewhere";
        text += " to " + target.number + " " + target.name + (callBack->isSet() ? ", set" : ", cancelled");
    }
    if (const auto* membership = dynamic_cast<const CSTAConferenceMembershipEvent*>(&event)) {
        std::string name;
        std::string number;
        for (std::size_t i = 1; membership->getUserInformation(i, name, number); ++i) {
            text += ", " + number + (name.empty() ? "" : " " + name);
        }
    }
    const auto* privateEvent = dynamic_cast<const CSTAPrivateEvent*>(&event);
    if (privateEvent != nullptr && privateEvent->getCallLogEntry() != nullptr) {
        const CallLogEntryEvent& entry = *privateEvent->getCallLogEntry();
        text += " log " + entry.name + " " + entry.textC + entry.textD + entry.textE + entry.textF + " ";
        for (const int number :
             std::initializer_list<int>{entry.presentationA, entry.presentationB, entry.presentationC,
                                        entry.presentationD, entry.valueE, entry.valueF}) {
            text += std::to_string(number);
        }
    }
    return text + (event.getPrivateData().empty() ? "" : " [" + event.getPrivateData() + "]");
}

/// The events that the phone 2001 receives for messages separated by ";". A message is its name, "Held" or on
/// the monitor of another device "Held@2005", and its members.
std::string eventsOf(const std::string& events) {
    host::PhoneCalls calls;
    host::EventReader reader("2001", calls);
    std::map<std::string, std::unique_ptr<host::OtherDeviceEvents>> others;
    std::string all;
    for (const std::string& event : split(std::regex_replace(events, std::regex(" ; "), "\n"), '\n')) {
        const std::vector<std::string> name = split(event.substr(0, event.find(' ')), '@');
        const std::string members = event.substr(std::min(event.find(' '), event.size()));
        const std::string root = name[0] + "Event>";
        std::string fault;
        const auto document = host::WireDocument::parse(
            "<" + root + membersOf(" monitorCrossRefID=77" + members) + "</" + root, fault);
        EXPECT_TRUE(document) << fault << ": " << event;
        const std::string device = name.size() > 1 ? name[1] : "localDeviceID";
        const auto& other =
            others.try_emplace(device, host::OtherDeviceEvents::of(device, "2001")).first->second;
        for (auto& read : reader.read(*document, {"M1", device})) {
            const auto adapted =
                other == nullptr ? std::move(read.event) : other->adapt(std::move(read.event));
            if (adapted != nullptr) {
                all += (all.empty() ? "" : "; ") + textOf(*adapted);
            }
        }
    }
    return all;
}

/// Rows of messages and their events: the whole text, or after ".." a part of it. A final "." is the end.
void expectEvents(const std::string& rows) {
    for (const std::vector<std::string>& row : table(2, rows)) {
        const std::string text = eventsOf(row[0]);
        if (row[1].rfind("..", 0) == 0) {
            EXPECT_THAT(text + ".", HasSubstr(row[1].substr(2))) << row[0];
        } else {
            EXPECT_EQ(text, row[1]) << row[0];
        }
    }
}

TEST(EventReader, ReadsEveryEventOfACall) {
    expectEvents(R"(
Delivered connection/7/2001 alertingDevice:2001 callingDevice:N<4711>Ann calledDevice:2001
+ <lastRedirectionDevice><notRequired/></lastRedirectionDevice> localConnectionInfo=alerting cause=newCall
+ | Delivered call: 7, device: here, calling: 4711 Ann, called: here, alerting: here, own: 2, cause: 22
Established establishedConnection/7/2001 answeringDevice:2001 callingDevice:4711 calledDevice:2004
+ <lastRedirectionDevice><numberDialed>2004</numberDialed></lastRedirectionDevice> cause=callPickup
+ | Established call: 7, device: here, calling: 4711, called: 2004, answering: here, lastRedirection: 2004,
+ own: 3, cause: 11
Held heldConnection/7/2001 holdingDevice:2001 localConnectionInfo=hold cause=consultation
+ | Held call: 7, device: here, own: 4, cause: 3
ConnectionCleared droppedConnection/7/2001 releasingDevice:2001 localConnectionInfo=null cause=normalClearing
+ | ConnectionCleared call: 7, device: here, releasing: here, own: 0, cause: 48
Originated originatedConnection/8/2001 callingDevice:2001 calledDevice:4712 cause=newCall
+ | Originated call: 8, device: here, calling: here, called: 4712, own: 3, cause: 22
NetworkReached outboundConnection/7/trunk-1 | NetworkReached device: trunk-1
Delivered connection/8/4799 alertingDevice:4799 callingDevice:2001 calledDevice:4712 cause=redirected
+ | Delivered call: 8, device: 4799, calling: here, called: 4712, alerting: 4799, own: 3, cause: 25
Failed failedConnection/8/4712 failingDevice:4712 callingDevice:2001 calledDevice:4712 cause=busy
+ | Failed call: 8, device: 4712, calling: here, called: 4712, failing: 4712, own: 3, cause: 16
Diverted connection/7/2001 divertingDevice:2001 newDestination:205 cause=callForwardNoAnswer
+ | Diverted call: 7, device: here, diverting: here, newDestination: 205, own: 0, cause: 8;
+ ConnectionCleared call: 7, device: here, releasing: here, own: 0, cause: 8
Diverted connection/7/2001 divertingDevice:2001 newDestination:205 cause=callPickup |
CallInformation connection/-1/2001 device:2001 callingDevice:N<4711>Ann
+ | CallInformation call: -1, device: here, calling: 4711 Ann, device: 4711 Ann, own: 0, cause: 0
CallInformation connection/-1/2001 device:N<4711>Ann | ..device: here, device: 4711 Ann,
DigitsDialed <x/> |
)");
}

TEST(EventReader, FollowsATransferFromTheCallOfThePhone) {
    expectEvents(R"(
Transfered primaryOldCall/11/2001 secondaryOldCall/12/2001 transferringDevice:2001 transferredToDevice:4712
+ cause=transfer <transferredConnections> moved/13/11/4711/4711 moved/13/12/4712/N<4712>Bob </transferredConnections>
+ | ConnectionCleared call: 12, device: here, releasing: here, own: 0, cause: 5;
+ Transferred call: 13, device: here, primaryOldCall: 11, secondaryOldCall: 12, transferring: here,
+ transferredTo: 4712 Bob, own: 0, cause: 5
Transfered primaryOldCall/11/2001 secondaryOldCall/12/2001 transferringDevice:2001 localConnectionInfo=hold
+ <transferredToDevice><notKnown/></transferredToDevice>
+ <transferredConnections> moved/13/11/4711/4711 moved/13/12/4712/N<4712>Bob </transferredConnections>
+ | ..Transferred call: 13, device: here, primaryOldCall: 11, secondaryOldCall: 12, transferring: here,
+ transferredTo: 4712 Bob, own: 0
Transfered primaryOldCall/11/2001 transferringDevice:2001 <transferredToDevice><restricted/></transferredToDevice>
+ <transferredConnections> moved/13/11/4711/4711 moved/13/12/4712/4712 </transferredConnections> cause=transfer
+ | Transferred call: 13, device: here, primaryOldCall: 11, secondaryOldCall: , transferring: here, own: 0, cause: 5
Transfered primaryOldCall/21/210 secondaryOldCall/22/210 transferringDevice:210 transferredToDevice:2001
+ <transferredConnections> moved/23/21/4711/4711 moved/23/22/2001/2001 </transferredConnections>
+ | Transferred call: 23, device: 210, primaryOldCall: 22, secondaryOldCall: 21, transferring: 210,
+ transferredTo: here, own: 3, cause: 0
Transferred primaryOldCall/21/210 transferringDevice:210 transferredToDevice:2001 | ..Transferred call:
)");
}

TEST(EventReader, DeliversTheLeavingAndTheMembersOfAConference) {
    expectEvents(R"(
ConnectionCleared droppedConnection/14/4712 localConnectionInfo=connected
+ ; Conferenced primaryOldCall/11/2001 secondaryOldCall/12/2001 <conferenceConnections>
+ moved/14/11/4711/N<4711>Ann moved/14/12/4712/4712 </conferenceConnections>
+ ; ConnectionCleared droppedConnection/14/4712 localConnectionInfo=connected
+ ; ConnectionCleared droppedConnection/14/2001 localConnectionInfo=null
+ ; ConnectionCleared droppedConnection/14/4711 localConnectionInfo=connected
+ | Conferenced conference: 14, primaryOldCall: 11 4711, secondaryOldCall: 12 4712;
+ ConnectionCleared call: 14, device: 4712, own: 3, cause: 0; ConnectionCleared call: 14, device: here, own: 0, cause: 0
Private <privateData><private><conferenceMembership> callID=14 deviceID=4711 member:N<4711>Ann member:2001
+ </conferenceMembership></private></privateData>
+ | ConferenceMembership call: 14, device: 4711, members: 2, 4711 Ann, localDeviceID
)");
}

TEST(EventReader, ReadsEveryFormOfPartiesAndInfersTheOwnState) {
    expectEvents(R"(
Delivered <callingDevice><restricted/></callingDevice> networkCallingDevice:030 | ..calling:  Withheld, own
Delivered <callingDevice><notKnown/></callingDevice> networkCallingDevice:030   | ..calling: 030,
Delivered <callingDevice><notKnown/></callingDevice>       | ..device: , own
Delivered callingDevice:N<>Ann                             | ..calling:  Ann,
Delivered callingDevice:N<>Ann networkCallingDevice:030    | ..calling: 030 Ann,
Delivered <callingDevice><deviceIdentifier_privateNumber='true'>4711</deviceIdentifier></callingDevice> | ..calling:  Withheld,
Delivered callingDevice=4711                | ..calling: 4711,
Delivered <callingDevice>_<x/>_<deviceIdentifier_typeOfNumber='other'>_tel:4711;ext=1_</deviceIdentifier></callingDevice>
+ | ..calling: 4711,
Delivered <callingDevice><deviceIdentifier_privateNumber='true'>N&lt;4711&gt;Ann</deviceIdentifier></callingDevice>
+ | ..calling:  Ann,
Delivered <callingDevice><deviceIdentifier>4711</deviceIdentifier><x:displayName_xmlns:x='u'>Ann</x:displayName></callingDevice>
+ | ..calling: 4711 Ann,
Delivered <callingDevice><notKnown/><displayName>Ann</displayName></callingDevice> | ..calling:  Ann,
Delivered <callingDevice><deviceIdentifier_privateName='1'>N&lt;4711&gt;Ann</deviceIdentifier></callingDevice>
+ | ..calling: 4711,
Delivered callingDevice:N<2001>2001              | ..calling: here,
Delivered callingDevice:2001:switch1:192.0.2.2:0 | ..calling: here,
Delivered <connection><deviceID><deviceIdentifier>2001</deviceIdentifier></deviceID></connection> | ..device: here,
Delivered connection/1/2001 callingDevice:4711             | ..own: 2,
Delivered callingDevice:2001                               | ..own: 3,
Delivered alertingDevice:2001 localConnectionInfo=ringing  | ..own: 2,
Offered offeredDevice:2001 callingDevice:4711              | ..own: 2,
Queued queue:029500 callingDevice:4711                     | ..own: 5,
Failed failingDevice:2001 callingDevice:4711               | ..own: 6,
ConnectionCleared droppedConnection/1/4711                 | ..own: 0,
)");
}

TEST(EventReader, DropsEventsOfOtherParties) {
    expectEvents(R"(
ConnectionCleared droppedConnection/7/4711 localConnectionInfo=hold       |
ConnectionCleared droppedConnection/7/4711 localConnectionInfo=null       | ..Cleared
ConnectionCleared droppedConnection/7/4711                                | ..Cleared
ConnectionCleared droppedConnection/7/ localConnectionInfo=connected      | ..Cleared
ConnectionCleared droppedConnection/7/2001 releasingDevice:4711           | ..Cleared
Held holdingDevice:my_other_number localConnectionInfo=hold               | ..Held
Retrieved retrievingDevice:4711                                           |
Diverted connection/7/4712 divertingDevice:4712 localConnectionInfo=connected |
Diverted connection/7/4712 divertingDevice:4712 callingDevice:2001        |
Diverted connection/7/4712 divertingDevice:4712 callingDevice:4711        | ..; ConnectionCleared
ConnectionCleared@2005 droppedConnection/7/2005 localConnectionInfo=connected | ..Cleared
ConnectionCleared@2005 droppedConnection/7/2001 localConnectionInfo=connected |
Delivered@2005 connection/7/2005 alertingDevice:2005 | Delivered call: 7@2005, device: 2005, alerting: 2005, own: 2, cause: 0
)");
}

TEST(EventReader, FollowsTheRingingCallsOfASharedLine) {
    expectEvents(R"(
Originated@2005 originatedConnection/7/2005 callingDevice:2005                               |
Offered@2005 offeredConnection/7/4711 callingDevice:2005                                     |
Delivered@2005 connection/7/4711 alertingDevice:4711 callingDevice:2005                      |
Delivered@2005 connection/7/2005 alertingDevice:2005 callingDevice:2001                      |
Delivered@2001 connection/7/2001 alertingDevice:2001                                         | ..call: 7, device: here
Established@2005 establishedConnection/7/2005 answeringDevice:2005 callingDevice:4711
+ | Diverted call: 7@2005, device: 2005, calling: 4711, own: 0, cause: 0
ConnectionCleared@2005 droppedConnection/7/2005 cause=callPickup                             | ..Diverted call: 7@2005
ConnectionCleared@2005 droppedConnection/7/4711                                              | ..Cleared call: 7@2005
Failed@2005 failedConnection/7/2005 failingDevice:2005 cause=callNotAnswered                 | ..Cleared call: 7@2005
CallInformation@2005 connection/-1/2005 device:2005 callingDevice:4711                       | ..call: -1
Conferenced@2005 primaryOldCall/7/2005                                                       |
Transfered@2005 primaryOldCall/7/2005 transferringDevice:4711 transferredToDevice:4712       |
Delivered@2005 connection/7/2005 alertingDevice:2005 callingDevice:4711 localConnectionInfo=alerting
+ ; Transfered@2005 primaryOldCall/7/4711 transferringDevice:4711 transferredToDevice:2005
+ <transferredConnections> moved/8/7/2005/2005 </transferredConnections>
+ ; Transfered@2005 primaryOldCall/8/4711 transferringDevice:4711 transferredToDevice:2005
+ | ..call: 8@2005, device: 4711, primaryOldCall: 7@2005, secondaryOldCall: , transferring: 4711, transferredTo: here,
)");
}

TEST(EventReader, ReadsOwnPrivateDataAndCompleteLogEntriesOnly) {
    expectEvents(R"(
Private <privateData><private><x:callStatus_xmlns:x='urn:x'>_MissedCall_</x:callStatus></private></privateData>
+ | Private [MissedCall]
Private <extensions><privateData><private>Reminder</private></privateData></extensions> | Private [Reminder]
Private <privateData><string>4d69_7373__65_64</string></privateData> | Private [Missed]
Private <privateData><string>4d6</string></privateData>    | Private
Private <privateData><string>00ff</string></privateData>   | Private
Private <privateData><private><v:id_xmlns:v='urn:v'>17000013</v:id></private></privateData> | Private
Private <privateData><private><callLogEntry> action=add logTarget=7 name=A_&amp;_B presentationA=1 presentationB=2
+ presentationC=3 presentationD=4 textC=c textD=d valueE=5 textE=e valueF=6 textF=f </callLogEntry></private></privateData>
+ | Private log A & B cdef 123456
Private <privateData><private><callLogEntry> action=add </callLogEntry></private></privateData> | Private
Private <privateData><private><callLogEntry> action=edit logTarget=1 </callLogEntry></private></privateData> | Private
Private <privateData><private><callLogEntry> action=add logTarget=one </callLogEntry></private></privateData> | Private
CallBack originatingDevice:2001 targetDevice:N<4711>Ann callBackSetCanceled=true
+ <extensions><privateData><private>onBusy_requested</private></privateData></extensions>
+ | CallBack from here to 4711 Ann, set [onBusy requested]
CallBack originatingDevice:2001 targetDevice:N<4711>Ann callBackSetCanceled=false | ..Ann, cancelled
)");
}

TEST(EventReader, ConvertsACauseByTheKindOfEvent) {
    expectEvents(R"(
Delivered alertingDevice:2001 cause=redirected                                  | ..cause: 49.
Delivered alertingDevice:2001 cause=callForwardBusy                             | ..cause: 49.
Delivered alertingDevice:2001 cause=Redirected                                  | ..cause: 1.
Delivered alertingDevice:2001                                                   | ..cause: 0.
Delivered alertingDevice:4711 callingDevice:2001 cause=callForwardNoAnswer      | ..cause: 8.
Originated callingDevice:2001 cause=callForward                                 | ..cause: 9.
Originated callingDevice:2001 cause=callPickup                                  | ..cause: 13.
Held holdingDevice:2001 cause=singleStepTransfer                                | ..cause: 3.
Held holdingDevice:2001 cause=alternate                                         | ..cause: 2.
ConnectionCleared droppedConnection/7/2001 cause=callPickup                     | ..cause: 40.
Failed failingDevice:4712 callingDevice:2001                                    | ..cause: 99.
)");
}

TEST(DeviceText, IsReadInEveryWrittenForm) {
    const std::string rows = R"(
                 | +15550100123 | +15550100123
                 | 309900       | 309900;noa=nk
                 | 4711         | N<4711>
                 | 30990100     | N<30990100>+ 30(990)100;noa=nk
Ann <ops> > Desk | 4711         | N<4711> Ann <ops> > Desk ;uid=1
Ann Müller       | 4711         | N<4711!sub&call/12%agent>Ann Müller
Ann              |              | N<>Ann
                 | 4711         | N<4711
                 | +49-30-1062  | TEL:+49-30-1062;phone-context=dialstring
                 | ann          | sip:ann@example.org;user=phone
                 | +4930        | sips:%2b4930@example.org
                 | 12%3         | sip:12%3
                 | queue:south  | queue:south
                 | Front desk   | Front desk
)";
    for (const std::vector<std::string>& row : table(3, rows)) {
        const DeviceText device{row[1], row[0]};
        EXPECT_EQ(parseDeviceText(" " + row[2] + "\n"), device) << row[2];
        EXPECT_EQ(parseDeviceText(host::deviceText(device.number, device.name)), device) << row[2];
    }
    EXPECT_EQ(parseDeviceText(host::deviceText("4711", "Ann; Desk")), (DeviceText{"4711", "Ann, Desk"}));
    EXPECT_EQ(comparableNumber("+49 (30) 20-01"), comparableNumber("N<+493020.01>Ann"));
    EXPECT_EQ(comparableNumber("Ann"), comparableNumber("sip:ANN@example.org"));
    EXPECT_NE(comparableNumber("2001"), comparableNumber("+492001"));
    EXPECT_NE(comparableNumber("*61"), comparableNumber("61"));
}

// A name of 1,024 bytes that ends inside a character is cut before it.
TEST(EventReader, CutsLongTextsOfTheSwitchAtACharacter) {
    const DeviceText cut = parseDeviceText("N<" + std::string(300, '7') + ">" + std::string(1023, 'x') + "ü");
    EXPECT_EQ(cut, (DeviceText{std::string(256, '7'), std::string(1023, 'x')}));
    const std::string id(5000, '9');
    EXPECT_EQ(eventsOf("Held heldConnection/" + id + "/2001"),
              eventsOf("Held heldConnection/" + id + "1/2001"));
}

}  // namespace
