#pragma once

#include <string>
#include <vector>

#include "host/switch/calls/SimulatedEvent.h"

namespace host {

/// A call of more than two inside the switch, as `SimulatedCall` is one of two. It ends when only one is left. Not
/// thread-safe.
class SimulatedConference {
public:
    SimulatedConference(std::string callId, std::vector<Party> members);

    /// Nothing happens when nobody of that number is in it.
    [[nodiscard]] CallOccurrences leave(const Party& who);
    /// All leave, `first` of its own accord.
    [[nodiscard]] CallOccurrences hangUp(const Party& first);

private:
    [[nodiscard]] SimulatedEvent clear(const Party& leaving, const Party& releasing);

    std::string m_callId;
    std::vector<Party> m_members;
};

}  // namespace host
