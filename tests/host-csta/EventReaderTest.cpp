#include "host/csta/EventReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "host/csta-wire/WireDocument.h"
#include "platform/csta/CSTAConferenceEvents.h"
#include "platform/csta/CSTAEventCode.h"

namespace {

using host::EventReader;
using host::EventSource;
using host::WireDocument;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kOwn = "2001";

const char* codeName(CSTAEventCode code) {
    static const std::map<CSTAEventCode, const char*> names = {
        {CSTAEventCode::eServiceInitiated, "ServiceInitiated"},
        {CSTAEventCode::eOriginated, "Originated"},
        {CSTAEventCode::eOffered, "Offered"},
        {CSTAEventCode::eQueued, "Queued"},
        {CSTAEventCode::eDelivered, "Delivered"},
        {CSTAEventCode::eDiverted, "Diverted"},
        {CSTAEventCode::eEstablished, "Established"},
        {CSTAEventCode::eHeld, "Held"},
        {CSTAEventCode::eRetrieved, "Retrieved"},
        {CSTAEventCode::eFailed, "Failed"},
        {CSTAEventCode::eConnectionCleared, "ConnectionCleared"},
        {CSTAEventCode::eTransferred, "Transferred"},
        {CSTAEventCode::eConferenced, "Conferenced"},
        {CSTAEventCode::eCallInformation, "CallInformation"},
        {CSTAEventCode::eNetworkReached, "NetworkReached"},
        {CSTAEventCode::ePrivate, "Private"},
    };
    const auto found = names.find(code);
    return found == names.end() ? "another event" : found->second;
}

/// The events as texts, each with its kind: "Delivered {call: 1, ...}".
std::vector<std::string> texts(const std::vector<std::unique_ptr<CSTAEvent>>& events) {
    std::vector<std::string> all;
    all.reserve(events.size());
    for (const std::unique_ptr<CSTAEvent>& event : events) {
        all.push_back(std::string(codeName(event->getType())) + " {" + event->toString() + "}");
    }
    return all;
}

std::string device(const std::string& member, const std::string& text) {
    return "<" + member + "><deviceIdentifier>" + text + "</deviceIdentifier></" + member + ">";
}

std::string connection(const std::string& member, const std::string& call, const std::string& deviceId) {
    return "<" + member + "><callID>" + call + "</callID><deviceID>" + deviceId + "</deviceID></" + member +
           ">";
}

std::string state(const std::string& word) {
    return "<localConnectionInfo>" + word + "</localConnectionInfo>";
}

std::string cause(const std::string& word) {
    return "<cause>" + word + "</cause>";
}

/// A reader for the own phone; each call is one event of its monitor "M1".
class Events {
public:
    std::vector<std::unique_ptr<CSTAEvent>> read(const std::string& root, const std::string& body,
                                                 const std::string& monitored = "localDeviceID") {
        std::string fault;
        const std::optional<WireDocument> document = WireDocument::parse(
            "<" + root + "><monitorCrossRefID>77</monitorCrossRefID>" + body + "</" + root + ">", fault);
        EXPECT_TRUE(document) << fault;
        return m_reader.read(*document, EventSource{"M1", monitored});
    }
    std::vector<std::string> texts(const std::string& root, const std::string& body,
                                   const std::string& monitored = "localDeviceID") {
        return ::texts(read(root, body, monitored));
    }

private:
    EventReader m_reader{kOwn};
};

struct EventCase {
    const char* what;
    const char* root;
    std::string body;
    std::vector<std::string> expected;
};

void expectAll(const std::vector<EventCase>& cases) {
    for (const EventCase& one : cases) {
        EXPECT_EQ(Events().texts(one.root, one.body), one.expected) << one.what;
    }
}

TEST(EventReader, ReadsTheLifeOfAnIncomingCall) {
    const std::string parties = device("callingDevice", "N&lt;4711&gt;Ann") + device("calledDevice", kOwn) +
                                "<lastRedirectionDevice><notRequired/></lastRedirectionDevice>";
    expectAll({
        {"rings",
         "DeliveredEvent",
         connection("connection", "7", kOwn) + device("alertingDevice", kOwn) + parties + state("alerting") +
             cause("newCall"),
         {"Delivered {call: 7, device: localDeviceID, calling: 4711 Ann, called: localDeviceID, alerting: "
          "localDeviceID, localConnection: 2, cause: 22}"}},
        {"is answered",
         "EstablishedEvent",
         connection("establishedConnection", "7", kOwn) + device("answeringDevice", kOwn) + parties +
             state("connected") + cause("newCall"),
         {"Established {call: 7, device: localDeviceID, calling: 4711 Ann, called: localDeviceID, answering: "
          "localDeviceID, localConnection: 3, cause: 22}"}},
        {"is held",
         "HeldEvent",
         connection("heldConnection", "7", kOwn) + device("holdingDevice", kOwn) + state("hold") +
             cause("transfer"),
         {"Held {call: 7, device: localDeviceID, localConnection: 4, cause: 3}"}},
        {"is retrieved",
         "RetrievedEvent",
         connection("retrievedConnection", "7", kOwn) + device("retrievingDevice", kOwn) + state("connected"),
         {"Retrieved {call: 7, device: localDeviceID, localConnection: 3, cause: 0}"}},
        {"ends",
         "ConnectionClearedEvent",
         connection("droppedConnection", "7", kOwn) + device("releasingDevice", kOwn) + state("null") +
             cause("normalClearing"),
         {"ConnectionCleared {call: 7, device: localDeviceID, releasing: localDeviceID, localConnection: 0, "
          "cause: "
          "48}"}},
    });
}

TEST(EventReader, ReadsTheLifeOfAnOutgoingCall) {
    const std::string parties = device("callingDevice", kOwn) + device("calledDevice", "4712");
    expectAll({
        {"off-hook",
         "ServiceInitiatedEvent",
         connection("initiatedConnection", "8", kOwn) + device("initiatingDevice", kOwn) + cause("makeCall"),
         {"ServiceInitiated {device: localDeviceID}"}},
        {"dialled",
         "OriginatedEvent",
         connection("originatedConnection", "8", kOwn) + parties + cause("newCall"),
         {"Originated {call: 8, device: localDeviceID, calling: localDeviceID, called: 4712, "
          "localConnection: 3, "
          "cause: 22}"}},
        {"rings at a third phone",
         "DeliveredEvent",
         connection("connection", "8", "4799") + device("alertingDevice", "4799") + parties +
             cause("redirected"),
         {"Delivered {call: 8, device: 4799, calling: localDeviceID, called: 4712, alerting: 4799, "
          "localConnection: "
          "3, cause: 25}"}},
        {"the far end is busy",
         "FailedEvent",
         connection("failedConnection", "8", "4712") + device("failingDevice", "4712") + parties +
             cause("busy"),
         {"Failed {call: 8, device: 4712, calling: localDeviceID, called: 4712, failing: 4712, "
          "localConnection: 3, "
          "cause: 16}"}},
    });
}

TEST(EventReader, InfersTheOwnStateThatASwitchLeavesOut) {
    const std::string toMe = device("callingDevice", "4711") + device("calledDevice", kOwn);
    const std::string byMe = device("callingDevice", kOwn) + device("calledDevice", "4711");
    const auto stateOf = [](const std::string& root, const std::string& body) {
        const std::vector<std::string> all = Events().texts(root, body);
        const std::string text = all.empty() ? "" : all.front();
        const std::size_t at = text.find("localConnection: ");
        return at == std::string::npos ? std::string("none") : text.substr(at + 17, 1);
    };
    EXPECT_EQ(stateOf("DeliveredEvent", device("alertingDevice", kOwn) + toMe), "2");
    EXPECT_EQ(stateOf("DeliveredEvent", device("alertingDevice", "4711") + byMe), "3");
    EXPECT_EQ(stateOf("DeliveredEvent", connection("connection", "1", kOwn) + toMe), "2");
    EXPECT_EQ(stateOf("DeliveredEvent", byMe), "3");
    EXPECT_EQ(stateOf("DeliveredEvent", toMe), "2");
    EXPECT_EQ(stateOf("DeliveredEvent", device("alertingDevice", kOwn) + toMe + state("")), "2");
    EXPECT_EQ(stateOf("DeliveredEvent", device("alertingDevice", kOwn) + toMe + state("ringing")), "2");
    EXPECT_EQ(stateOf("OfferedEvent", device("offeredDevice", kOwn) + toMe), "2");
    EXPECT_EQ(stateOf("QueuedEvent", device("queue", "029500") + toMe), "5");
    EXPECT_EQ(stateOf("EstablishedEvent", device("answeringDevice", "4711") + byMe), "3");
    EXPECT_EQ(stateOf("HeldEvent", device("holdingDevice", kOwn)), "4");
    EXPECT_EQ(stateOf("FailedEvent", device("failingDevice", kOwn) + toMe), "6");
    EXPECT_EQ(stateOf("ConnectionClearedEvent", connection("droppedConnection", "1", "4711")), "0");
}

TEST(EventReader, ReadsWithheldUnknownAndOddlyWrittenParties) {
    const auto caller = [](const std::string& member) {
        const std::vector<std::string> all =
            Events().texts("DeliveredEvent", device("alertingDevice", kOwn) + member);
        const std::string& text = all.at(0);
        const std::size_t begin = text.find("calling: ");
        return begin == std::string::npos ? std::string("nobody")
                                          : text.substr(begin + 9, text.find(',', begin) - begin - 9);
    };
    const std::string network = device("networkCallingDevice", "0301234");
    EXPECT_EQ(caller("<callingDevice><restricted/></callingDevice>"), "nobody");
    EXPECT_EQ(caller("<callingDevice><restricted/></callingDevice>" + network), "nobody");
    EXPECT_EQ(caller("<callingDevice><notKnown/></callingDevice>"), "nobody");
    EXPECT_EQ(caller("<callingDevice><notKnown/></callingDevice>" + network), "0301234");
    EXPECT_EQ(caller(network), "0301234");
    EXPECT_EQ(caller("<callingDevice>4711</callingDevice>"), "4711");
    EXPECT_EQ(caller("<callingDevice>\n <x/> <deviceIdentifier typeOfNumber='other'> tel:4711;ext=1 "
                     "</deviceIdentifier></callingDevice>"),
              "4711");
    EXPECT_EQ(
        caller("<callingDevice><deviceIdentifier privateNumber='true'>N&lt;4711&gt;Ann</deviceIdentifier>"
               "</callingDevice>"),
        " Ann");
    EXPECT_EQ(caller("<callingDevice><deviceIdentifier privateName='1'>N&lt;4711&gt;Ann</deviceIdentifier>"
                     "</callingDevice>"),
              "4711");
    EXPECT_EQ(caller("<p:callingDevice xmlns:p='urn:x'><p:deviceIdentifier>4711</p:deviceIdentifier>"
                     "</p:callingDevice>"),
              "4711");
}

TEST(EventReader, KnowsTheOwnPhoneInEveryWrittenForm) {
    for (const char* own :
         {"2001", "N&lt;2001&gt;My Desk", "tel:2001;phone-context=x", "2001:switch1:192.0.2.2:0"}) {
        const std::vector<std::string> all =
            Events().texts("DeliveredEvent",
                           "<connection><callID>1</callID><deviceID><deviceIdentifier>" + std::string(own) +
                               "</deviceIdentifier></deviceID></connection>" + device("callingDevice", own));
        ASSERT_EQ(all.size(), 1U);
        EXPECT_THAT(all[0], testing::HasSubstr("device: localDeviceID, calling: localDeviceID")) << own;
    }
}

TEST(EventReader, KeepsFromThePhoneWhatAnotherPartyDoes) {
    const auto cleared = [](const std::string& dropped, const std::string& rest) {
        return Events()
            .texts("ConnectionClearedEvent", connection("droppedConnection", "7", dropped) + rest)
            .size();
    };
    EXPECT_EQ(cleared("4711", state("connected")), 0U);
    EXPECT_EQ(cleared("4711", state("alerting")), 0U);
    EXPECT_EQ(cleared("4711", state("hold")), 0U);
    EXPECT_EQ(cleared("4711", state("null")), 1U);
    EXPECT_EQ(cleared("4711", ""), 1U);
    EXPECT_EQ(cleared(kOwn, state("connected")), 1U);
    EXPECT_EQ(cleared("", state("connected")), 1U);
    EXPECT_EQ(cleared(kOwn, device("releasingDevice", "4711") + state("null")), 1U);

    EXPECT_THAT(Events().texts("HeldEvent", device("holdingDevice", "4711") + state("connected")), IsEmpty());
    EXPECT_THAT(Events().texts("RetrievedEvent", device("retrievingDevice", "4711")), IsEmpty());
    EXPECT_EQ(Events().texts("HeldEvent", device("holdingDevice", "my other number") + state("hold")).size(),
              1U);
}

TEST(EventReader, DeliversEveryLeaveOfAConference) {
    Events events;
    EXPECT_THAT(events.texts("ConnectionClearedEvent",
                             connection("droppedConnection", "14", "4712") + state("connected")),
                IsEmpty());
    const auto conferenced = events.read(
        "ConferencedEvent",
        connection("primaryOldCall", "11", kOwn) + connection("secondaryOldCall", "12", kOwn) +
            "<conferenceConnections><connectionListItem>" + connection("newConnection", "14", "4711") +
            connection("oldConnection", "11", "4711") + "<endpoint><deviceID>4711</deviceID></endpoint>" +
            "</connectionListItem><connectionListItem>" + connection("newConnection", "14", "4712") +
            connection("oldConnection", "12", "4712") + "<endpoint><deviceID>4712</deviceID></endpoint>" +
            "</connectionListItem></conferenceConnections>" + state("connected"));
    EXPECT_THAT(
        texts(conferenced),
        ElementsAre("Conferenced {conference: 14, primaryOldCall: 11 4711, secondaryOldCall: 12 4712}"));
    const auto& event = dynamic_cast<const CSTAConferencedEvent&>(*conferenced.front());
    EXPECT_EQ(event.getConferenceconnectionsNewconnectionCallID(1), "14");

    EXPECT_THAT(events.texts("ConnectionClearedEvent",
                             connection("droppedConnection", "14", "4712") + state("connected")),
                ElementsAre("ConnectionCleared {call: 14, device: 4712, localConnection: 3, cause: 0}"));
    EXPECT_EQ(
        events.texts("ConnectionClearedEvent", connection("droppedConnection", "14", kOwn) + state("null"))
            .size(),
        1U);
    EXPECT_THAT(events.texts("ConnectionClearedEvent",
                             connection("droppedConnection", "14", "4711") + state("connected")),
                IsEmpty());
}

TEST(EventReader, EndsACallThatIsDivertedAway) {
    const std::string away = connection("connection", "7", kOwn) + device("divertingDevice", kOwn) +
                             device("newDestination", "205");
    EXPECT_THAT(
        Events().texts("DivertedEvent", away + state("null") + cause("callForwardNoAnswer")),
        ElementsAre(
            "Diverted {call: 7, device: localDeviceID, diverting: localDeviceID, newDestination: 205, "
            "localConnection: 0, cause: 8}",
            "ConnectionCleared {call: 7, device: localDeviceID, releasing: localDeviceID, "
            "localConnection: 0, cause: 8}"));
    // Picked up elsewhere; nothing but the event's name says which connection was meant.
    EXPECT_THAT(Events().texts("DivertedEvent", cause("callPickup")),
                ElementsAre("Diverted {call: call-M1, device: , localConnection: 0, cause: 13}",
                            "ConnectionCleared {call: call-M1, device: , localConnection: 0, cause: 40}"));
    // The far end of an outgoing call forwards: the phone stays in its call.
    const std::string there = connection("connection", "7", "4712") + device("divertingDevice", "4712");
    EXPECT_THAT(Events().texts("DivertedEvent", there + state("connected")), IsEmpty());
    EXPECT_THAT(Events().texts("DivertedEvent", there + device("callingDevice", kOwn)), IsEmpty());
    EXPECT_EQ(Events().texts("DivertedEvent", there + device("callingDevice", "4711")).size(), 2U);
}

TEST(EventReader, FollowsATransferToTheCallThatThePhoneKnows) {
    const std::string byMe =
        connection("primaryOldCall", "11", kOwn) + connection("secondaryOldCall", "12", kOwn) +
        device("transferringDevice", kOwn) + device("transferredToDevice", "4712") +
        "<transferredConnections><connectionListItem>" + connection("newConnection", "13", "4711") +
        connection("oldConnection", "11", "4711") + "</connectionListItem></transferredConnections>" +
        cause("transfer");
    EXPECT_THAT(
        Events().texts("TransferedEvent", byMe),
        ElementsAre("Transferred {call: 13, device: localDeviceID, primaryOldCall: 11, secondaryOldCall: 12, "
                    "transferring: localDeviceID, transferredTo: 4712, localConnection: 0, cause: 5}"));

    const std::string toMe =
        connection("primaryOldCall", "21", "210") + connection("secondaryOldCall", "22", "210") +
        device("transferringDevice", "210") + device("transferredToDevice", kOwn) +
        "<transferredConnections><connectionListItem>" + connection("newConnection", "23", "4711") +
        connection("oldConnection", "21", "4711") + "</connectionListItem><connectionListItem>" +
        connection("newConnection", "23", kOwn) + connection("oldConnection", "22", kOwn) +
        "</connectionListItem></transferredConnections>";
    for (const char* spelling : {"TransferedEvent", "TransferredEvent"}) {
        EXPECT_THAT(
            Events().texts(spelling, toMe),
            ElementsAre("Transferred {call: 23, device: 210, primaryOldCall: 22, secondaryOldCall: 21, "
                        "transferring: 210, transferredTo: localDeviceID, localConnection: 3, cause: 0}"));
    }
}

TEST(EventReader, TellsTheFarEndInACallInformation) {
    EXPECT_THAT(
        Events().texts("CallInformationEvent", connection("connection", "7", kOwn) + device("device", kOwn) +
                                                   device("callingDevice", "N&lt;4711&gt;Ann")),
        ElementsAre(testing::HasSubstr("device: 4711 Ann")));
    EXPECT_THAT(Events().texts("CallInformationEvent",
                               connection("connection", "7", kOwn) + device("device", "N&lt;4711&gt;Ann")),
                ElementsAre(testing::HasSubstr("device: 4711 Ann")));
}

TEST(EventReader, ReadsItsOwnPrivateDataAndNoOthers) {
    const auto privateData = [](const std::string& body) {
        return Events().read("PrivateEvent", body).at(0)->getPrivateData();
    };
    EXPECT_EQ(privateData(
                  "<privateData><private><x:callStatus xmlns:x='urn:x'> MissedCall </x:callStatus></private>"
                  "</privateData>"),
              "MissedCall");
    EXPECT_EQ(
        privateData("<extensions><privateData><private>ReminderCall</private></privateData></extensions>"),
        "ReminderCall");
    EXPECT_EQ(privateData("<privateData><string>4d69 7373\n65 64</string></privateData>"), "Missed");
    EXPECT_EQ(privateData("<privateData><string>4d6</string></privateData>"), "");
    EXPECT_EQ(privateData("<privateData><string>00ff</string></privateData>"), "");
    EXPECT_EQ(
        privateData("<privateData><private><v:id xmlns:v='urn:v'>17000013</v:id></private></privateData>"),
        "");
    EXPECT_EQ(privateData(""), "");
}

TEST(EventReader, TellsAnotherMonitoredDeviceFromTheOwnOne) {
    // A shared line 2005: its state is the monitored device's, but only 2001 is the phone's own device.
    Events events;
    EXPECT_THAT(
        events.texts("DeliveredEvent",
                     connection("connection", "7", "2005") + device("alertingDevice", "2005"), "2005"),
        ElementsAre("Delivered {call: 7, device: 2005, alerting: 2005, localConnection: 2, cause: 0}"));
    EXPECT_EQ(events
                  .texts("ConnectionClearedEvent",
                         connection("droppedConnection", "7", "2005") + state("connected"), "2005")
                  .size(),
              1U);
    EXPECT_THAT(events.texts("ConnectionClearedEvent",
                             connection("droppedConnection", "7", kOwn) + state("connected"), "2005"),
                IsEmpty());
}

TEST(EventReader, IgnoresEventsThatItDoesNotKnow) {
    EXPECT_THAT(Events().texts("DigitsDialedEvent", "<x/>"), IsEmpty());
    EXPECT_THAT(Events().texts("NetworkReachedEvent", connection("outboundConnection", "7", "trunk-1")),
                ElementsAre("NetworkReached {device: trunk-1}"));
}

}  // namespace
