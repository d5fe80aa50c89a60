#pragma once

#include <string>
#include <vector>

#include "host/csta-wire/EventSchemas.h"
#include "host/csta-wire/SwitchParty.h"

namespace host {

/// One event of the switch, common to all its monitors except for the state of the monitored phone. The type
/// determines which members are used.
struct SwitchEvent {
    /// A phone that receives the event, and the ECMA-323 value of the state of its own connection.
    struct Listener {
        std::string device;
        std::string localConnection;
    };
    /// A party of the call that a transfer or a conference creates, and its previous call, if any.
    struct Connection {
        SwitchParty party;
        std::string oldCallId;
    };

    WireEvent type = WireEvent::eOriginated;
    /// For a transfer and a conference: the primary old call.
    std::string callId;
    /// The party of the event's connection.
    SwitchParty subject;
    /// The device that is specific to the event (alertingDevice, answeringDevice, ...).
    SwitchParty device;
    SwitchParty calling;
    SwitchParty called;
    SwitchParty redirectedFrom;
    /// The new party of a diversion, a transfer or a conference; the target of a callback.
    SwitchParty newDestination;
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
    std::vector<SwitchParty> members;
};

using SwitchEvents = std::vector<SwitchEvent>;

}  // namespace host
