#pragma once

#include <string>
#include <vector>

#include "host/switch/scenario/ScenarioStep.h"

namespace host {

/// A live call at the switch, as the snapshot services report it. A plain value.
struct LiveCall {
    struct Connection {
        SimulatedParty party;
        /// The ECMA-323 value.
        std::string state;
    };

    std::string callId;
    /// Both are unknown parties for a conference.
    SimulatedParty calling;
    SimulatedParty called;
    std::vector<Connection> connections;
};

}  // namespace host
