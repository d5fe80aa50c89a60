#include "host/switch/EventWriter.h"

#include "host/csta-wire/DeviceText.h"
#include "host/csta-wire/MessageWriter.h"

namespace host {

namespace {

bool isUnknown(const Party& party) {
    return party.number.empty();
}

void writeParty(MessageWriter& writer, std::string_view member, const Party& party) {
    writer.open(member);
    if (party.anonymous) {
        writer.empty("restricted");
    } else if (isUnknown(party)) {
        writer.empty("notKnown");
    } else {
        writer.text("deviceIdentifier", deviceText(party.number, party.name));
    }
    writer.close();
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
void writeConnection(MessageWriter& writer, std::string_view member, const CallOccurrence& occurrence) {
    writer.open(member).text("callID", occurrence.callId);
    writer.text("deviceID",
                occurrence.subject.anonymous ? "trunk-" + occurrence.callId : occurrence.subject.number);
    writer.close();
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

}  // namespace

std::string writeEvent(std::string_view nameSpace, const CallOccurrence& occurrence,
                       std::string_view monitorCrossRefId, std::string_view localConnection) {
    const EventShape& shape = eventShape(occurrence.event);
    const Members members = membersOf(occurrence.event);
    MessageWriter writer(shape.rootName, nameSpace);
    writer.text("monitorCrossRefID", monitorCrossRefId);
    writeConnection(writer, shape.connection, occurrence);
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
    return writer.finish();
}

}  // namespace host
