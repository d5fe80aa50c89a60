#include "host/csta/SnapshotReader.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "host/csta-wire/WireDocument.h"
#include "host/csta/EventRules.h"
#include "platform/csta/CSTALocalConnectionState.h"

namespace host {

namespace {

constexpr const char* kChoice = "crossRefIDorSnapshotData";

struct SimpleState {
    std::string_view word;
    int own;
    int other;
};

constexpr std::array kSimpleStates = {
    SimpleState{"callNull", CSTA_LCS_Null, CSTA_LCS_Null},
    SimpleState{"callPending", CSTA_LCS_Initiated, CSTA_LCS_Null},
    SimpleState{"callOriginated", CSTA_LCS_Connected, CSTA_LCS_Null},
    SimpleState{"callDelivered", CSTA_LCS_Connected, CSTA_LCS_Alerting},
    SimpleState{"callDeliveredHeld", CSTA_LCS_Hold, CSTA_LCS_Alerting},
    SimpleState{"callReceived", CSTA_LCS_Alerting, CSTA_LCS_Connected},
    SimpleState{"callReceivedOnHold", CSTA_LCS_Alerting, CSTA_LCS_Hold},
    SimpleState{"callEstablished", CSTA_LCS_Connected, CSTA_LCS_Connected},
    SimpleState{"callEstablishedHeld", CSTA_LCS_Hold, CSTA_LCS_Connected},
    SimpleState{"callEstablishedOnHold", CSTA_LCS_Connected, CSTA_LCS_Hold},
    SimpleState{"callQueued", CSTA_LCS_Connected, CSTA_LCS_Queued},
    SimpleState{"callQueuedHeld", CSTA_LCS_Hold, CSTA_LCS_Queued},
    SimpleState{"callFailed", CSTA_LCS_Connected, CSTA_LCS_Fail},
    SimpleState{"callFailedHeld", CSTA_LCS_Hold, CSTA_LCS_Fail},
    SimpleState{"callBlocked", CSTA_LCS_Fail, CSTA_LCS_Null},
};

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
    const std::string word = firstText(state);
    const auto* const row =
        std::find_if(kSimpleStates.begin(), kSimpleStates.end(),
                     [&word](const SimpleState& candidate) { return candidate.word == word; });
    if (row != kSimpleStates.end()) {
        connection.own = row->own;
        connection.others = {row->other};
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
        snapshot.calling = devices.device(calling);
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
