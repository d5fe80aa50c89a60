#pragma once

#include <string>
#include <vector>

#include "host/csta-wire/EventSchemas.h"
#include "host/switch/scenario/ScenarioStep.h"

namespace host {

/// One event of the switch, common to all its monitors except for the state of the monitored phone. The type
/// determines which members are used.
struct SimulatedEvent {
    /// A phone that receives the event, and the ECMA-323 value of the state of its own connection.
    struct Listener {
        std::string device;
        std::string localConnection;
    };
    /// A party of the call that a transfer or a conference creates, and its previous call, if any.
    struct Connection {
        SimulatedParty party;
        std::string oldCallId;
    };

    WireEvent type = WireEvent::eOriginated;
    /// For a transfer and a conference: the primary old call.
    std::string callId;
    /// The party of the event's connection.
    SimulatedParty subject;
    /// The device that is specific to the event (alertingDevice, answeringDevice, ...).
    SimulatedParty device;
    SimulatedParty calling;
    SimulatedParty called;
    SimulatedParty redirectedFrom;
    /// The new party of a diversion, a transfer or a conference; the target of a callback.
    SimulatedParty newDestination;
    std::string cause;
    std::vector<Listener> listeners;

    // Transferred and Conferenced.
    std::string secondaryCallId;
    std::string newCallId;
    std::vector<Connection> connections;

    /// Private text of a call ("MissedCall"), a transfer or a callback.
    std::string privateText;
    /// For a callback: false if it is cancelled.
    bool set = true;
    /// The members of a conference, for its membership message.
    std::vector<SimulatedParty> members;
};

using SimulatedEvents = std::vector<SimulatedEvent>;

}  // namespace host
