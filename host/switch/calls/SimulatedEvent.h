#pragma once

#include <string>
#include <vector>

#include "host/csta-wire/EventSchemas.h"
#include "host/switch/scenario/ScenarioStep.h"

namespace host {

/// One event, as every monitor of it would see it but for the state of the monitored phone. Which members count depends
/// on the event.
struct SimulatedEvent {
    /// A phone that hears of it, and the standard's word for the state of its own connection.
    struct Listener {
        std::string device;
        std::string localConnection;
    };
    /// A party of the call that a transfer or a conference has made, and the call that it came from, if any.
    struct Connection {
        Party party;
        std::string oldCallId;
    };

    WireEvent event = WireEvent::eOriginated;
    /// After a transfer and in a conference: the primary old call.
    std::string callId;
    /// Whose connection it is about.
    Party subject;
    /// The device that only this event names (alerting, answering, holding, releasing, ...).
    Party device;
    Party calling;
    Party called;
    Party redirectedFrom;
    /// Where the call goes: of a diversion, a transfer, a conference; who is called back.
    Party newDestination;
    std::string cause;
    std::vector<Listener> listeners;

    // Transferred and Conferenced.
    std::string secondaryCallId;
    std::string newCallId;
    std::vector<Connection> connections;

    /// What the switch says of a call beside the standard ("MissedCall"), and of a transfer or a callback.
    std::string privateText;
    /// Of a callback: false when it is cancelled.
    bool set = true;
    /// Who a conference consists of, in the message that says so.
    std::vector<Party> members;
};

using CallOccurrences = std::vector<SimulatedEvent>;

}  // namespace host
