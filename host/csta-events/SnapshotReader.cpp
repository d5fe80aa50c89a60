#include "host/csta-events/SnapshotReader.h"

#include <utility>

#include "host/csta-events/EventRules.h"
#include "host/csta-wire/SimpleCallState.h"
#include "host/csta-wire/WireDocument.h"
#include "platform/csta/CSTALocalConnectionState.h"

namespace host {

namespace {

constexpr const char* kChoice = "crossRefIDorSnapshotData";

pugi::xml_node dataOf(const WireDocument& message) {
    const pugi::xml_node root = message.root();
    const pugi::xml_node chosen = childNamed(childNamed(root, kChoice), "snapshotData");
    return chosen ? chosen : childNamed(root, "snapshotData");
}

/// The parent of the list's elements: some peers send the segments of a call as the bare list.
pugi::xml_node listOf(const WireDocument& message) {
    const pugi::xml_node data = dataOf(message);
    return data ? data : message.root();
}

/// The device's state comes first, then those of the other parties.
void readCompound(pugi::xml_node compound, DeviceSnapshot::Connection& connection) {
    bool first = true;
    for (const pugi::xml_node one : compound.children()) {
        const std::optional<int> state = localConnectionNumber(firstText(one));
        if (first) {
            connection.own = state;
        } else if (state) {
            connection.others.push_back(*state);
        }
        first = false;
    }
}

void readState(pugi::xml_node state, DeviceSnapshot::Connection& connection) {
    if (const pugi::xml_node compound = childNamed(state, "compoundCallState")) {
        readCompound(compound, connection);
        return;
    }
    if (const std::optional<SimpleCallState> simple = simpleCallState(firstText(state))) {
        connection.own = localConnectionNumber(simple->own);
        connection.others = {localConnectionNumber(simple->other).value_or(CSTA_LCS_Null)};
    }
}

}  // namespace

std::string SnapshotReader::crossRefIdOf(const WireDocument& message) {
    std::string id = childText(childNamed(message.root(), kChoice), "serviceCrossRefID");
    return id.empty() ? childText(message.root(), "serviceCrossRefID") : id;
}

bool SnapshotReader::hasData(const WireDocument& message) {
    return !dataOf(message).empty();
}

bool SnapshotReader::isLastSegment(const WireDocument& segment) {
    const std::string last = childText(segment.root(), "lastSegment");
    return last.empty() || isTrue(last);
}

void SnapshotReader::addTo(DeviceSnapshot& snapshot, const WireDocument& message) {
    for (const pugi::xml_node info : listOf(message).children()) {
        if (localName(info) != "snapshotDeviceResponseInfo") {
            continue;
        }
        DeviceSnapshot::Connection& connection = snapshot.connections.emplace_back();
        connection.callId = childText(childNamed(info, "connectionIdentifier"), "callID");
        readState(childNamed(info, "localCallState"), connection);
    }
}

void SnapshotReader::addTo(CallSnapshot& snapshot, const WireDocument& message, const DeviceReader& devices) {
    const pugi::xml_node root = message.root();
    if (const pugi::xml_node calling = childNamed(root, "callingDevice")) {
        snapshot.calling = devices.caller(calling, {});
    }
    if (const pugi::xml_node called = childNamed(root, "calledDevice")) {
        snapshot.called = devices.device(called);
    }
    for (const pugi::xml_node info : listOf(message).children()) {
        if (localName(info) != "snapshotCallResponseInfo") {
            continue;
        }
        CallSnapshot::Party party{devices.device(childNamed(info, "deviceOnCall")),
                                  localConnectionNumber(childText(info, "localConnectionInfo"))};
        if (party.device.party == EventParty::eUnknown) {
            party.device.party = devices.connectionDevice(childNamed(info, "callIdentifier")).party;
        }
        snapshot.parties.push_back(std::move(party));
    }
}

}  // namespace host
