#include "host/csta-server/SnapshotWriter.h"

#include <algorithm>

#include "host/csta-server/PartyWriter.h"
#include "host/csta-wire/DeviceText.h"
#include "host/csta-wire/MessageWriter.h"
#include "host/csta-wire/SimpleCallState.h"

namespace host {

namespace {

using Connections = std::vector<LiveCall::Connection>;

/// The states of the device and of the others: one word for a call of two parties.
void writeCallState(MessageWriter& writer, const Connections& connections, Connections::const_iterator own) {
    writer.open("localCallState");
    const std::size_t other = own == connections.begin() ? 1 : 0;
    const auto simple =
        connections.size() == 2 ? simpleCallState(own->state, connections[other].state) : std::nullopt;
    if (simple) {
        writer.text("simpleCallState", simple->word).close();
        return;
    }
    writer.open("compoundCallState").text("localConnectionState", own->state);
    for (auto each = connections.begin(); each != connections.end(); ++each) {
        if (each != own) {
            writer.text("localConnectionState", each->state);
        }
    }
    writer.close().close();
}

}  // namespace

std::string writeDeviceSnapshot(std::string_view nameSpace, const std::string& device,
                                const std::vector<LiveCall>& calls) {
    const std::string wanted = comparableNumber(device);
    MessageWriter writer("SnapshotDeviceResponse", nameSpace);
    writer.open("crossRefIDorSnapshotData").open("snapshotData");
    for (const LiveCall& call : calls) {
        const auto own = std::find_if(
            call.connections.begin(), call.connections.end(), [&wanted](const LiveCall::Connection& one) {
                return one.state != "null" && comparableNumber(one.party.number) == wanted;
            });
        if (own != call.connections.end()) {
            writer.open("snapshotDeviceResponseInfo");
            writeConnection(writer, "connectionIdentifier", call.callId, own->party);
            writeParty(writer, "endpointDevice", own->party);
            writeCallState(writer, call.connections, own);
            writer.close();
        }
    }
    return writer.finish();
}

std::string writeCallSnapshot(std::string_view nameSpace, const LiveCall& call) {
    MessageWriter writer("SnapshotCallResponse", nameSpace);
    writer.open("crossRefIDorSnapshotData").open("snapshotData");
    for (const LiveCall::Connection& one : call.connections) {
        if (one.state != "null") {
            writer.open("snapshotCallResponseInfo");
            writeParty(writer, "deviceOnCall", one.party);
            writeConnection(writer, "callIdentifier", call.callId, one.party);
            writer.text("localConnectionInfo", one.state).close();
        }
    }
    writer.close().close();
    writeParty(writer, "callingDevice", call.calling);
    writeParty(writer, "calledDevice", call.called);
    return writer.finish();
}

}  // namespace host
