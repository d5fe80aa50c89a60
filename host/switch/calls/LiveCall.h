#pragma once

#include <string>
#include <vector>

#include "host/csta-wire/SwitchParty.h"

namespace host {

/// A live call at the switch, as the snapshot services report it. A plain value.
struct LiveCall {
    struct Connection {
        SwitchParty party;
        /// The ECMA-323 value.
        std::string state;
    };

    std::string callId;
    /// Both are unknown parties for a conference.
    SwitchParty calling;
    SwitchParty called;
    std::vector<Connection> connections;
};

}  // namespace host
