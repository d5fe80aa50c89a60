#include "tests/reliability/random-calls/CallEvent.h"

#include <array>

#include "host/csta-wire/MessageWriter.h"

namespace reliability {

namespace {

constexpr const char* kNameSpace = "http://www.ecma-international.org/standards/ecma-323/csta/ed4";

/// The names of an event's elements. Without `parties` the event has no calling and no called device.
struct Schema {
    const char* name;
    const char* connection;
    const char* device;
    bool parties;
    bool redirection;
};

// In the order of EventKind.
constexpr std::array<Schema, 13> kSchemas = {{
    {"ServiceInitiated", "initiatedConnection", "initiatingDevice", false, false},
    {"Originated", "originatedConnection", nullptr, true, false},
    {"Offered", "offeredConnection", "offeredDevice", true, true},
    {"Queued", "queuedConnection", "queue", true, true},
    {"Delivered", "connection", "alertingDevice", true, true},
    {"Diverted", "connection", "divertingDevice", true, true},
    {"Established", "establishedConnection", "answeringDevice", true, true},
    {"Held", "heldConnection", "holdingDevice", false, false},
    {"Retrieved", "retrievedConnection", "retrievingDevice", false, false},
    {"Failed", "failedConnection", "failingDevice", true, true},
    {"ConnectionCleared", "droppedConnection", "releasingDevice", false, false},
    {"Transfered", "primaryOldCall", "transferringDevice", false, false},
    {"Conferenced", "primaryOldCall", "conferencingDevice", false, false},
}};

const Schema& schemaOf(EventKind kind) {
    return kSchemas.at(static_cast<std::size_t>(kind));
}

/// A withheld party's connection has an id that the switch makes up.
std::string connectionId(const Party& party, const std::string& callId) {
    return party.withheld ? "trunk-" + callId : party.number;
}

class EventWriter {
public:
    EventWriter(const CallEvent& event, const Dialect& dialect)
        : m_event(event),
          m_dialect(dialect),
          m_writer(std::string(schemaOf(event.kind).name) + "Event", kNameSpace) {}

    std::string write(const std::string& crossRefId) {
        m_writer.text("monitorCrossRefID", crossRefId);
        connection(schemaOf(m_event.kind).connection, m_event.callId, m_event.subject);
        if (m_event.newCallId.empty()) {
            writeParties();
        } else {
            writeJoining();
        }
        if (m_dialect.localState) {
            m_writer.text("localConnectionInfo", m_event.local);
        }
        m_writer.text("cause", m_event.cause);
        return m_writer.finish();
    }

private:
    void writeParties() {
        const Schema& schema = schemaOf(m_event.kind);
        if (schema.device != nullptr) {
            device(schema.device, m_event.device);
        }
        if (m_event.kind == EventKind::eDiverted) {
            device("newDestination", m_event.to);
        }
        if (schema.parties) {
            device("callingDevice", m_event.calling);
            device("calledDevice", m_event.called);
        }
        if (schema.redirection) {
            m_writer.open("lastRedirectionDevice");
            if (m_event.redirectedBy.number.empty()) {
                m_writer.empty("notRequired");
            } else {
                m_writer.text("numberDialed", deviceText(m_event.redirectedBy, m_dialect));
            }
            m_writer.close();
        }
    }

    void writeJoining() {
        const bool transferred = m_event.kind == EventKind::eTransferred;
        if (!m_event.secondaryCallId.empty()) {
            connection("secondaryOldCall", m_event.secondaryCallId, m_event.subject);
        }
        device(schemaOf(m_event.kind).device, m_event.device);
        device(transferred ? "transferredToDevice" : "addedParty", m_event.to);
        m_writer.open(transferred ? "transferredConnections" : "conferenceConnections");
        for (const CallEvent::Connection& one : m_event.connections) {
            m_writer.open("connectionListItem");
            connection("newConnection", m_event.newCallId, one.party);
            if (!one.oldCallId.empty()) {
                connection("oldConnection", one.oldCallId, one.party);
            }
            device("endpoint", one.party, "deviceID");
            m_writer.close();
        }
        m_writer.close();
    }

    void connection(const char* member, const std::string& callId, const Party& party) {
        m_writer.open(member).text("callID", callId).text("deviceID", connectionId(party, callId)).close();
    }

    void device(const char* member, const Party& party, const char* identifier = "deviceIdentifier") {
        m_writer.open(member);
        if (party.withheld) {
            m_writer.empty("restricted");
        } else if (party.number.empty()) {
            m_writer.empty("notKnown");
        } else {
            m_writer.text(identifier, deviceText(party, m_dialect));
        }
        m_writer.close();
    }

    const CallEvent& m_event;
    const Dialect& m_dialect;
    host::MessageWriter m_writer;
};

std::string text(const Party& party) {
    if (party.withheld) {
        return "withheld";
    }
    return party.number + (party.name.empty() ? "" : " " + party.name);
}

}  // namespace

std::string describe(const CallEvent& event) {
    const Schema& schema = schemaOf(event.kind);
    std::string line = std::string(schema.name) + "(" + event.callId + ": " + text(event.subject);
    if (event.kind == EventKind::eConnectionCleared) {
        line += " dropped by " + text(event.device);
    }
    if (schema.parties) {
        line += ", calling " + text(event.calling) + ", called " + text(event.called);
    }
    if (!event.redirectedBy.number.empty()) {
        line += ", redirected by " + text(event.redirectedBy);
    }
    if (!event.to.number.empty()) {
        line += ", to " + text(event.to);
    }
    if (!event.newCallId.empty()) {
        line += ", secondary " + event.secondaryCallId + ", new " + event.newCallId + " of";
        for (const CallEvent::Connection& one : event.connections) {
            line += " " + text(one.party) + (one.oldCallId.empty() ? "" : " (" + one.oldCallId + ")");
        }
    }
    return line + "; " + event.local + ", " + event.cause + ")";
}

std::string deviceText(const Party& party, const Dialect& dialect) {
    return dialect.names ? "N<" + party.number + ">" + party.name : party.number;
}

std::string writeEvent(const CallEvent& event, const Dialect& dialect, const std::string& crossRefId) {
    return EventWriter(event, dialect).write(crossRefId);
}

}  // namespace reliability
