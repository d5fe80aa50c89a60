#include "host/csta-server/EventWriter.h"

#include "host/csta-server/PartyWriter.h"
#include "host/csta-wire/CallLogWire.h"
#include "host/csta-wire/DeviceText.h"
#include "host/csta-wire/MessageWriter.h"

namespace host {

namespace {

void writeRedirection(MessageWriter& writer, const SwitchParty& party) {
    writer.open("lastRedirectionDevice");
    if (party.number.empty()) {
        writer.empty("notRequired");
    } else {
        writer.text("numberDialed", deviceText(party.number, party.name));
    }
    writer.close();
}

void writePrivateText(MessageWriter& writer, const std::string& text) {
    if (!text.empty()) {
        writer.open("extensions").open("privateData").text("private", text).close().close();
    }
}

/// The optional members of a call event.
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
        case WireEvent::eConnectionCleared: return {.callingAndCalled = false, .redirection = false};
        case WireEvent::eOriginated: return {.ownDevice = false, .redirection = false};
        default: return {};
    }
}

void writeCallEvent(MessageWriter& writer, const EventSchema& schema, const SwitchEvent& event,
                    std::string_view localConnection) {
    const Members members = membersOf(event.type);
    writeConnection(writer, schema.connection, event.callId, event.subject);
    if (members.ownDevice) {
        writeParty(writer, schema.device, event.device);
    }
    if (event.type == WireEvent::eDiverted) {
        writeParty(writer, "newDestination", event.newDestination);
    }
    if (members.callingAndCalled) {
        writeParty(writer, "callingDevice", event.calling);
        writeParty(writer, "calledDevice", event.called);
    }
    if (members.redirection) {
        writeRedirection(writer, event.redirectedFrom);
    }
    writer.text("localConnectionInfo", localConnection).text("cause", event.cause);
}

/// Writes Transferred and Conferenced, which differ in names only.
void writeJoining(MessageWriter& writer, const EventSchema& schema, const SwitchEvent& event,
                  std::string_view localConnection) {
    const bool transferred = event.type == WireEvent::eTransferred;
    writeConnection(writer, schema.connection, event.callId, event.subject);
    if (!event.secondaryCallId.empty()) {
        writeConnection(writer, "secondaryOldCall", event.secondaryCallId, event.subject);
    }
    writeParty(writer, schema.device, event.device);
    writeParty(writer, transferred ? "transferredToDevice" : "addedParty", event.newDestination);
    writer.open(transferred ? "transferredConnections" : "conferenceConnections");
    for (const SwitchEvent::Connection& one : event.connections) {
        writer.open("connectionListItem");
        writeConnection(writer, "newConnection", event.newCallId, one.party);
        if (!one.oldCallId.empty()) {
            writeConnection(writer, "oldConnection", one.oldCallId, one.party);
        }
        writeDevice(writer, "endpoint", "deviceID", one.party);
        writer.close();
    }
    writer.close();
    writer.text("localConnectionInfo", localConnection).text("cause", event.cause);
    writePrivateText(writer, event.privateText);
}

void writeCallInformation(MessageWriter& writer, const EventSchema& schema, const SwitchEvent& event) {
    writeConnection(writer, schema.connection, event.callId, event.subject);
    writeParty(writer, schema.device, event.device);
    writeParty(writer, "callingDevice", event.calling);
    if (!event.privateText.empty()) {
        writer.open("extensions").open("privateData").open("private");
        writer.text("callStatus", event.privateText).close().close().close();
    }
}

void writeMembership(MessageWriter& writer, const SwitchEvent& event) {
    writer.open("privateData").open("private").open("conferenceMembership");
    writer.text("callID", event.callId);
    writer.text("deviceID", connectionDevice(event.subject, event.callId));
    for (const SwitchParty& member : event.members) {
        writeParty(writer, "member", member);
    }
}

void writeCallBack(MessageWriter& writer, const EventSchema& schema, const SwitchEvent& event) {
    writeParty(writer, schema.device, event.device);
    writeParty(writer, "targetDevice", event.newDestination);
    writer.flag("callBackSetCanceled", event.set);
    writePrivateText(writer, event.privateText);
}

}  // namespace

std::string writeEvent(std::string_view nameSpace, const SwitchEvent& event,
                       std::string_view monitorCrossRefId, std::string_view localConnection) {
    const EventSchema& schema = eventSchema(event.type);
    MessageWriter writer(schema.rootName, nameSpace);
    writer.text("monitorCrossRefID", monitorCrossRefId);
    switch (event.type) {
        case WireEvent::eTransferred:
        case WireEvent::eConferenced: writeJoining(writer, schema, event, localConnection); break;
        case WireEvent::eCallInformation: writeCallInformation(writer, schema, event); break;
        case WireEvent::ePrivate: writeMembership(writer, event); break;
        case WireEvent::eCallBack: writeCallBack(writer, schema, event); break;
        default: writeCallEvent(writer, schema, event, localConnection); break;
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
