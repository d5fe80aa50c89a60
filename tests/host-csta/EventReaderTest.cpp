#include "host/csta/EventReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "host/csta-wire/CallLogWire.h"
#include "host/csta-wire/MessageWriter.h"
#include "host/csta-wire/WireDocument.h"
#include "platform/csta/CSTAConferenceEvents.h"
#include "platform/csta/CSTAPrivateEvents.h"
#include "tests/host-csta/EventTexts.h"

namespace {

using host::WireDocument;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

/// The XML of members in short: "connection/7/2001|callingDevice:4711|cause=newCall" is a connection (call and device), a
/// device identifier and a text; what begins with '<' stands for itself.
std::string members(const std::string& text) {
    const auto element = [](const std::string& name, const std::string& content) {
        std::string xml = "<";
        return xml.append(name).append(">").append(content).append("</").append(name).append(">");
    };
    std::istringstream in(text);
    std::string xml;
    for (std::string field; std::getline(in, field, '|');) {
        if (field.empty()) {
            continue;
        }
        const std::size_t at = std::min(field.find_first_of(":/=<"), field.size() - 1);
        const std::string name = field.substr(0, at);
        std::string value = field.substr(at + 1);
        const std::size_t slash = value.find('/');
        switch (field[at]) {
            case ':': value = element("deviceIdentifier", value); break;
            case '/':
                value =
                    element("callID", value.substr(0, slash)) + element("deviceID", value.substr(slash + 1));
                break;
            default: break;
        }
        xml += name.empty() ? field : element(name, value);
    }
    return xml;
}

/// An entry of a connection list: a party's connection before and after.
std::string moved(const std::string& newCall, const std::string& oldCall, const std::string& number,
                  const std::string& endpoint) {
    return "<connectionListItem>" +
           members("newConnection/" + newCall + "/" + number + "|oldConnection/" + oldCall + "/" + number) +
           "<endpoint><deviceID>" + endpoint + "</deviceID></endpoint></connectionListItem>";
}

/// A reader for the phone 2001; each call is one event of its monitor "M1".
class Events {
public:
    std::vector<std::unique_ptr<CSTAEvent>> read(const std::string& root, const std::string& body,
                                                 const std::string& monitored = "localDeviceID") {
        std::string fault;
        const std::optional<WireDocument> document = WireDocument::parse(
            "<" + root + ">" + members("monitorCrossRefID=77|" + body) + "</" + root + ">", fault);
        EXPECT_TRUE(document) << fault << ": " << body;
        return m_reader.read(*document, {"M1", monitored});
    }
    /// The events as texts, each with its kind: "Delivered {call: 1, ...}".
    Texts texts(const std::string& root, const std::string& body) {
        Texts all;
        for (const std::unique_ptr<CSTAEvent>& event : read(root, body)) {
            all.push_back(linktest::nameOf(*event) + " {" + event->toString() + "}");
        }
        return all;
    }

private:
    host::EventReader m_reader{"2001"};
};

TEST(EventReader, ReadsEveryEventOfACall) {
    const struct {
        const char* root;
        const char* body;
        Texts expected;
    } cases[] = {
        {"DeliveredEvent",
         "connection/7/2001|alertingDevice:2001|callingDevice:N&lt;4711&gt;Ann|calledDevice:2001"
         "|<lastRedirectionDevice><notRequired/></"
         "lastRedirectionDevice>|localConnectionInfo=alerting|cause=newCall",
         {"Delivered {call: 7, device: localDeviceID, calling: 4711 Ann, called: localDeviceID, alerting: "
          "localDeviceID, localConnection: 2, cause: 22}"}},
        // Picked up here.
        {"EstablishedEvent",
         "establishedConnection/7/2001|answeringDevice:2001|callingDevice:4711|calledDevice:2004"
         "|<lastRedirectionDevice><numberDialed>2004</numberDialed></lastRedirectionDevice>|cause=callPickup",
         {"Established {call: 7, device: localDeviceID, calling: 4711, called: 2004, answering: "
          "localDeviceID, lastRedirection: 2004, localConnection: 3, cause: 11}"}},
        {"HeldEvent",
         "heldConnection/7/2001|holdingDevice:2001|localConnectionInfo=hold|cause=consultation",
         {"Held {call: 7, device: localDeviceID, localConnection: 4, cause: 3}"}},
        {"ConnectionClearedEvent",
         "droppedConnection/7/2001|releasingDevice:2001|localConnectionInfo=null|cause=normalClearing",
         {"Cleared {call: 7, device: localDeviceID, releasing: localDeviceID, localConnection: 0, cause: "
          "48}"}},
        {"OriginatedEvent",
         "originatedConnection/8/2001|callingDevice:2001|calledDevice:4712|cause=newCall",
         {"Originated {call: 8, device: localDeviceID, calling: localDeviceID, called: 4712, "
          "localConnection: 3, cause: 22}"}},
        {"NetworkReachedEvent", "outboundConnection/7/trunk-1", {"NetworkReached {device: trunk-1}"}},
        {"DeliveredEvent",
         "connection/8/4799|alertingDevice:4799|callingDevice:2001|calledDevice:4712|cause=redirected",
         {"Delivered {call: 8, device: 4799, calling: localDeviceID, called: 4712, alerting: 4799, "
          "localConnection: 3, cause: 25}"}},
        {"FailedEvent",
         "failedConnection/8/4712|failingDevice:4712|callingDevice:2001|calledDevice:4712|cause=busy",
         {"Failed {call: 8, device: 4712, calling: localDeviceID, called: 4712, failing: 4712, "
          "localConnection: 3, cause: 16}"}},
        {"DivertedEvent",
         "connection/7/2001|divertingDevice:2001|newDestination:205|cause=callForwardNoAnswer",
         {"Diverted {call: 7, device: localDeviceID, diverting: localDeviceID, newDestination: 205, "
          "localConnection: 0, cause: 8}",
          "Cleared {call: 7, device: localDeviceID, releasing: localDeviceID, localConnection: 0, cause: "
          "8}"}},
        // Nothing but the event's name says which connection was meant.
        {"DivertedEvent",
         "cause=callPickup",
         {"Diverted {call: call-M1, device: , localConnection: 0, cause: 13}",
          "Cleared {call: call-M1, device: , localConnection: 0, cause: 40}"}},
        {"DigitsDialedEvent", "<x/>", {}},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(Events().texts(one.root, one.body), one.expected) << one.body;
    }
}

TEST(EventReader, FollowsATransferToTheCallThatThePhoneKnows) {
    const std::string byMe =
        "primaryOldCall/11/2001|transferringDevice:2001|cause=transfer|<transferredConnections>" +
        moved("13", "11", "4711", "4711") + moved("13", "12", "4712", "N&lt;4712&gt;Bob") +
        "</transferredConnections>|";
    const std::string calls =
        "Transferred {call: 13, device: localDeviceID, primaryOldCall: 11, secondaryOldCall: ";
    for (const char* to :
         {"transferredToDevice:4712", "<transferredToDevice><notKnown/></transferredToDevice>"}) {
        EXPECT_THAT(Events().texts("TransferedEvent", byMe + "secondaryOldCall/12/2001|" + to),
                    ElementsAre("Cleared {call: 12, device: localDeviceID, releasing: localDeviceID, "
                                "localConnection: 0, cause: 5}",
                                calls + "12, transferring: localDeviceID, transferredTo: 4712 Bob, "
                                        "localConnection: 0, cause: 5}"));
    }
    EXPECT_THAT(
        Events().texts("TransferedEvent", byMe + "<transferredToDevice><restricted/></transferredToDevice>"),
        ElementsAre(calls + ", transferring: localDeviceID, localConnection: 0, cause: 5}"));

    const std::string toMe =
        "primaryOldCall/21/210|secondaryOldCall/22/210|transferringDevice:210"
        "|transferredToDevice:2001|<transferredConnections>" +
        moved("23", "21", "4711", "4711") + moved("23", "22", "2001", "2001") + "</transferredConnections>";
    for (const char* spelling : {"TransferedEvent", "TransferredEvent"}) {
        EXPECT_THAT(
            Events().texts(spelling, toMe),
            ElementsAre("Transferred {call: 23, device: 210, primaryOldCall: 22, secondaryOldCall: 21, "
                        "transferring: 210, transferredTo: localDeviceID, localConnection: 3, cause: 0}"));
    }
}

TEST(EventReader, DeliversEveryLeaveOfAConference) {
    Events events;
    const auto leaves = [&events](const std::string& party, const std::string& state) {
        return events.texts("ConnectionClearedEvent",
                            "droppedConnection/14/" + party + "|localConnectionInfo=" + state);
    };
    EXPECT_THAT(leaves("4712", "connected"), IsEmpty());
    const auto conferenced = events.read(
        "ConferencedEvent", "primaryOldCall/11/2001|secondaryOldCall/12/2001|<conferenceConnections>" +
                                moved("14", "11", "4711", "N&lt;4711&gt;Ann") +
                                moved("14", "12", "4712", "4712") + "</conferenceConnections>");
    const auto& event = dynamic_cast<const CSTAConferencedEvent&>(*conferenced.at(0));
    EXPECT_EQ(event.toString(), "conference: 14, primaryOldCall: 11 4711, secondaryOldCall: 12 4712");
    EXPECT_EQ(event.getConferenceconnectionsNewconnectionCallID(1), "14");

    EXPECT_THAT(leaves("4712", "connected"),
                ElementsAre("Cleared {call: 14, device: 4712, localConnection: 3, cause: 0}"));
    EXPECT_EQ(leaves("2001", "null").size(), 1U);
    EXPECT_THAT(leaves("4711", "connected"), IsEmpty());
}

TEST(EventReader, ReadsTheMembersOfAConference) {
    const auto events = Events().read(
        "PrivateEvent", "<privateData><private><conferenceMembership>" +
                            members("callID=14|deviceID=4711|member:N&lt;4711&gt;Ann|member:2001") +
                            "</conferenceMembership></private></privateData>");
    const auto& event = dynamic_cast<const CSTAConferenceMembershipEvent&>(*events.at(0));
    EXPECT_EQ(event.toString(), "call: 14, device: 4711, members: 2");
    std::string name;
    std::string number;
    EXPECT_TRUE(event.getUserInformation(1, name, number));
    EXPECT_EQ(number + ' ' + name, "4711 Ann");
}

TEST(EventReader, ReadsACallbackThatIsSetOrCancelled) {
    for (const std::string set : {"true", "false"}) {
        const auto events = Events().read(
            "CallBackEvent",
            "originatingDevice:2001|targetDevice:N&lt;4711&gt;Ann|callBackSetCanceled=" + set +
                "|<extensions><privateData><private>onBusy requested</private></privateData></extensions>");
        const auto& event = dynamic_cast<const CSTACallBackEvent&>(*events.at(0));
        EXPECT_EQ(event.isSet(), set == "true");
        EXPECT_TRUE(event.getOriginatingDevice().isLocal());
        EXPECT_EQ(event.getTargetDevice(), (CSTADevice{"4711", "Ann"}));
        EXPECT_EQ(event.getPrivateData(), "onBusy requested");
    }
}

TEST(EventReader, InfersTheOwnStateThatASwitchLeavesOut) {
    const struct {
        const char* root;
        const char* body;
        const char* state;
    } cases[] = {
        {"DeliveredEvent", "alertingDevice:2001|callingDevice:4711", "2"},
        {"DeliveredEvent", "alertingDevice:4711|callingDevice:2001", "3"},
        {"DeliveredEvent", "connection/1/2001|callingDevice:4711", "2"},
        {"DeliveredEvent", "callingDevice:2001", "3"},
        {"DeliveredEvent", "callingDevice:4711", "2"},
        {"DeliveredEvent", "alertingDevice:2001|localConnectionInfo=ringing", "2"},
        {"OfferedEvent", "offeredDevice:2001|callingDevice:4711", "2"},
        {"QueuedEvent", "queue:029500|callingDevice:4711", "5"},
        {"EstablishedEvent", "answeringDevice:4711|callingDevice:2001", "3"},
        {"HeldEvent", "holdingDevice:2001", "4"},
        {"FailedEvent", "failingDevice:2001|callingDevice:4711", "6"},
        {"ConnectionClearedEvent", "droppedConnection/1/4711", "0"},
    };
    for (const auto& one : cases) {
        EXPECT_THAT(Events().texts(one.root, one.body),
                    ElementsAre(HasSubstr(std::string("localConnection: ") + one.state + ",")))
            << one.body;
    }
}

TEST(EventReader, ReadsWithheldUnknownAndOddlyWrittenParties) {
    const std::pair<const char*, const char*> cases[] = {
        {"<callingDevice><restricted/></callingDevice>|networkCallingDevice:030", "device: , local"},
        {"<callingDevice><notKnown/></callingDevice>", "device: , local"},
        {"<callingDevice><notKnown/></callingDevice>|networkCallingDevice:030", "calling: 030,"},
        {"networkCallingDevice:030", "calling: 030,"},
        {"callingDevice=4711", "calling: 4711,"},
        {"<callingDevice>\n <x/> <deviceIdentifier typeOfNumber='other'> tel:4711;ext=1 </deviceIdentifier>"
         "</callingDevice>",
         "calling: 4711,"},
        {"<callingDevice><deviceIdentifier privateNumber='true'>N&lt;4711&gt;Ann</deviceIdentifier>"
         "</callingDevice>",
         "calling:  Ann,"},
        {"<callingDevice><deviceIdentifier privateName='1'>N&lt;4711&gt;Ann</deviceIdentifier>"
         "</callingDevice>",
         "calling: 4711,"},
        {"<p:callingDevice xmlns:p='urn:x'><p:deviceIdentifier>4711</p:deviceIdentifier></p:callingDevice>",
         "calling: 4711,"},
        {"callingDevice:N&lt;2001&gt;2001", "calling: localDeviceID,"},
        {"callingDevice:tel:2001;phone-context=x", "calling: localDeviceID,"},
        {"callingDevice:2001:switch1:192.0.2.2:0", "calling: localDeviceID,"},
        {"<connection><deviceID><deviceIdentifier>2001</deviceIdentifier></deviceID></connection>",
         "device: localDeviceID,"},
    };
    for (const auto& [body, expected] : cases) {
        EXPECT_THAT(Events().texts("DeliveredEvent", body), ElementsAre(HasSubstr(expected))) << body;
    }
    // In a call information the platform wants the far end.
    for (const char* body : {"connection/-1/2001|device:2001|callingDevice:N&lt;4711&gt;Ann",
                             "connection/-1/2001|device:N&lt;4711&gt;Ann"}) {
        EXPECT_THAT(Events().texts("CallInformationEvent", body),
                    ElementsAre(testing::AllOf(HasSubstr("call: -1,"), HasSubstr("device: 4711 Ann"))));
    }
}

TEST(EventReader, KeepsFromThePhoneWhatAnotherPartyDoes) {
    const struct {
        const char* root = "";
        const char* body = "";
        std::size_t delivered = 0;
        const char* monitored = "localDeviceID";
    } cases[] = {
        {"ConnectionClearedEvent", "droppedConnection/7/4711|localConnectionInfo=connected", 0},
        {"ConnectionClearedEvent", "droppedConnection/7/4711|localConnectionInfo=hold", 0},
        {"ConnectionClearedEvent", "droppedConnection/7/4711|localConnectionInfo=null", 1},
        {"ConnectionClearedEvent", "droppedConnection/7/4711", 1},
        {"ConnectionClearedEvent", "droppedConnection/7/2001|localConnectionInfo=connected", 1},
        {"ConnectionClearedEvent", "droppedConnection/7/|localConnectionInfo=connected", 1},
        {"ConnectionClearedEvent", "droppedConnection/7/2001|releasingDevice:4711", 1},
        {"HeldEvent", "holdingDevice:4711|localConnectionInfo=connected", 0},
        {"HeldEvent", "holdingDevice:my other number|localConnectionInfo=hold", 1},
        {"RetrievedEvent", "retrievingDevice:4711", 0},
        {"DivertedEvent", "connection/7/4712|divertingDevice:4712|localConnectionInfo=connected", 0},
        {"DivertedEvent", "connection/7/4712|divertingDevice:4712|callingDevice:2001", 0},
        {"DivertedEvent", "connection/7/4712|divertingDevice:4712|callingDevice:4711", 2},
        // On a shared line the own phone is another party.
        {"ConnectionClearedEvent", "droppedConnection/7/2005|localConnectionInfo=connected", 1, "2005"},
        {"ConnectionClearedEvent", "droppedConnection/7/2001|localConnectionInfo=connected", 0, "2005"},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(Events().read(one.root, one.body, one.monitored).size(), one.delivered)
            << one.root << one.body;
    }
    const auto rings = Events().read("DeliveredEvent", "connection/7/2005|alertingDevice:2005", "2005");
    EXPECT_EQ(rings.at(0)->toString(), "call: 7, device: 2005, alerting: 2005, localConnection: 2, cause: 0");
}

TEST(EventReader, ReadsItsOwnPrivateDataAndNoOthers) {
    const std::pair<const char*, const char*> cases[] = {
        {"<privateData><private><x:callStatus xmlns:x='urn:x'> MissedCall </x:callStatus></private>"
         "</privateData>",
         "MissedCall"},
        {"<extensions><privateData><private>ReminderCall</private></privateData></extensions>",
         "ReminderCall"},
        {"<privateData><string>4d69 7373\n65 64</string></privateData>", "Missed"},
        {"<privateData><string>4d6</string></privateData>", ""},
        {"<privateData><string>00ff</string></privateData>", ""},
        {"<privateData><private><v:id xmlns:v='urn:v'>17000013</v:id></private></privateData>", ""},
        {"<x/>", ""},
    };
    for (const auto& [body, expected] : cases) {
        EXPECT_EQ(Events().read("PrivateEvent", body).at(0)->getPrivateData(), expected) << body;
    }
}

TEST(EventReader, ReadsAnEntryOfTheSwitchsCallLog) {
    const std::string data =
        "<privateData><private><callLogEntry><action>delete</action><logTarget>7</logTarget>"
        "<subscriberNumber>4711</subscriberNumber><name>A &amp; B</name><presentationA>1</presentationA>"
        "<presentationB>2</presentationB><presentationC>3</presentationC><presentationD>4</presentationD>"
        "<textC>c</textC><textD>d</textD><valueE>5</valueE><textE>e</textE><valueF>6</valueF><textF>f</textF>"
        "<entryTime>2026-11-21T05:22:05</entryTime><entryTimeFormat>local</entryTimeFormat></callLogEntry>"
        "</private></privateData>";
    const auto events = Events().read("PrivateEvent", "|" + data);
    const CallLogEntryEvent* const entry =
        dynamic_cast<const CSTAPrivateEvent&>(*events.at(0)).getCallLogEntry();
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->action, CallLogEntryEvent::eDelete);
    EXPECT_EQ(entry->presentationA + 10 * entry->presentationB, 21);
    EXPECT_EQ(entry->presentationC + 10 * entry->presentationD, 43);
    EXPECT_EQ(entry->valueE + 10 * entry->valueF, 65);
    EXPECT_EQ(entry->textC + entry->textD + entry->textE + entry->textF, "cdef");
    // What is written of it is what was read: no member is lost, none stands in another's place.
    host::MessageWriter writer("PrivateEvent", "urn:x");
    host::writeCallLogEntry(writer, *entry);
    EXPECT_THAT(writer.finish(), HasSubstr(data));

    for (const char* const other : {"<action>add</action>", "<action>edit</action><logTarget>1</logTarget>",
                                    "<action>add</action><logTarget>one</logTarget>"}) {
        const auto none =
            Events().read("PrivateEvent", "|<privateData><private><callLogEntry>" + std::string(other) +
                                              "</callLogEntry></private></privateData>");
        EXPECT_EQ(dynamic_cast<const CSTAPrivateEvent&>(*none.at(0)).getCallLogEntry(), nullptr) << other;
    }
}

}  // namespace
