#include "host/switch/server/EventWriter.h"

#include "host/csta-wire/CallLogWire.h"
#include "host/csta-wire/DeviceText.h"
#include "host/csta-wire/MessageWriter.h"

namespace host {

namespace {

bool isUnknown(const Party& party) {
    return party.number.empty();
}

/// One of the schema's choice for a device, whose text stands in an element called `identifier`.
void writeDevice(MessageWriter& writer, std::string_view member, std::string_view identifier,
                 const Party& party) {
    writer.open(member);
    if (party.anonymous) {
        writer.empty("restricted");
    } else if (isUnknown(party)) {
        writer.empty("notKnown");
    } else {
        writer.text(identifier, deviceText(party.number, party.name));
    }
    writer.close();
}

void writeParty(MessageWriter& writer, std::string_view member, const Party& party) {
    writeDevice(writer, member, "deviceIdentifier", party);
}

void writeRedirection(MessageWriter& writer, const Party& party) {
    writer.open("lastRedirectionDevice");
    if (isUnknown(party)) {
        writer.empty("notRequired");
    } else {
        writer.text("numberDialed", deviceText(party.number, party.name));
    }
    writer.close();
}

/// A party whose number is withheld has a made-up device in its connection.
std::string connectionDevice(const Party& party, const std::string& callId) {
    return party.anonymous ? "trunk-" + callId : party.number;
}

void writeConnection(MessageWriter& writer, std::string_view member, const std::string& callId,
                     const Party& party) {
    writer.open(member).text("callID", callId).text("deviceID", connectionDevice(party, callId)).close();
}

void writePrivateText(MessageWriter& writer, const std::string& text) {
    if (!text.empty()) {
        writer.open("extensions").open("privateData").text("private", text).close().close();
    }
}

/// Which of the members that several events share an event has.
struct Members {
    bool ownDevice = true;
    bool callingAndCalled = true;
    bool redirection = true;
};

Members membersOf(WireEvent event) {
    switch (event) {
        case WireEvent::eServiceInitiated:
        case WireEvent::eHeld:
        case WireEvent::eRetrieved:
        case WireEvent::eConnectionCleared: return {true, false, false};
        case WireEvent::eOriginated: return {false, true, false};
        default: return {};
    }
}

void writeCallEvent(MessageWriter& writer, const EventSchema& shape, const SimulatedEvent& occurrence,
                    std::string_view localConnection) {
    const Members members = membersOf(occurrence.event);
    writeConnection(writer, shape.connection, occurrence.callId, occurrence.subject);
    if (members.ownDevice) {
        writeParty(writer, shape.device, occurrence.device);
    }
    if (occurrence.event == WireEvent::eDiverted) {
        writeParty(writer, "newDestination", occurrence.newDestination);
    }
    if (members.callingAndCalled) {
        writeParty(writer, "callingDevice", occurrence.calling);
        writeParty(writer, "calledDevice", occurrence.called);
    }
    if (members.redirection) {
        writeRedirection(writer, occurrence.redirectedFrom);
    }
    writer.text("localConnectionInfo", localConnection).text("cause", occurrence.cause);
}

/// Transferred and Conferenced differ in names only.
void writeJoining(MessageWriter& writer, const EventSchema& shape, const SimulatedEvent& occurrence,
                  std::string_view localConnection) {
    const bool transferred = occurrence.event == WireEvent::eTransferred;
    writeConnection(writer, shape.connection, occurrence.callId, occurrence.subject);
    if (!occurrence.secondaryCallId.empty()) {
        writeConnection(writer, "secondaryOldCall", occurrence.secondaryCallId, occurrence.subject);
    }
    writeParty(writer, shape.device, occurrence.device);
    writeParty(writer, transferred ? "transferredToDevice" : "addedParty", occurrence.newDestination);
    writer.open(transferred ? "transferredConnections" : "conferenceConnections");
    for (const SimulatedEvent::Connection& one : occurrence.connections) {
        writer.open("connectionListItem");
        writeConnection(writer, "newConnection", occurrence.newCallId, one.party);
        if (!one.oldCallId.empty()) {
            writeConnection(writer, "oldConnection", one.oldCallId, one.party);
        }
        writeDevice(writer, "endpoint", "deviceID", one.party);
        writer.close();
    }
    writer.close();
    writer.text("localConnectionInfo", localConnection).text("cause", occurrence.cause);
    writePrivateText(writer, occurrence.privateText);
}

void writeCallInformation(MessageWriter& writer, const EventSchema& shape, const SimulatedEvent& occurrence) {
    writeConnection(writer, shape.connection, occurrence.callId, occurrence.subject);
    writeParty(writer, shape.device, occurrence.device);
    writeParty(writer, "callingDevice", occurrence.calling);
    if (!occurrence.privateText.empty()) {
        writer.open("extensions").open("privateData").open("private");
        writer.text("callStatus", occurrence.privateText).close().close().close();
    }
}

void writeMembership(MessageWriter& writer, const SimulatedEvent& occurrence) {
    writer.open("privateData").open("private").open("conferenceMembership");
    writer.text("callID", occurrence.callId);
    writer.text("deviceID", connectionDevice(occurrence.subject, occurrence.callId));
    for (const Party& member : occurrence.members) {
        writeParty(writer, "member", member);
    }
}

void writeCallBack(MessageWriter& writer, const EventSchema& shape, const SimulatedEvent& occurrence) {
    writeParty(writer, shape.device, occurrence.device);
    writeParty(writer, "targetDevice", occurrence.newDestination);
    writer.flag("callBackSetCanceled", occurrence.set);
    writePrivateText(writer, occurrence.privateText);
}

}  // namespace

std::string writeEvent(std::string_view nameSpace, const SimulatedEvent& occurrence,
                       std::string_view monitorCrossRefId, std::string_view localConnection) {
    const EventSchema& shape = eventSchema(occurrence.event);
    MessageWriter writer(shape.rootName, nameSpace);
    writer.text("monitorCrossRefID", monitorCrossRefId);
    switch (occurrence.event) {
        case WireEvent::eTransferred:
        case WireEvent::eConferenced: writeJoining(writer, shape, occurrence, localConnection); break;
        case WireEvent::eCallInformation: writeCallInformation(writer, shape, occurrence); break;
        case WireEvent::ePrivate: writeMembership(writer, occurrence); break;
        case WireEvent::eCallBack: writeCallBack(writer, shape, occurrence); break;
        default: writeCallEvent(writer, shape, occurrence, localConnection); break;
    }
    return writer.finish();
}

std::string writeCallLogEvent(std::string_view nameSpace, const CallLogEntryEvent& entry,
                              std::string_view monitorCrossRefId) {
    MessageWriter writer(eventSchema(WireEvent::ePrivate).rootName, nameSpace);
    writer.text("monitorCrossRefID", monitorCrossRefId);
    writeCallLogEntry(writer, entry);
    return writer.finish();
}

}  // namespace host
