#pragma once

#include <string>
#include <vector>

#include "host/switch/calls/LiveCall.h"
#include "host/switch/calls/SimulatedEvent.h"

namespace host {

/// A conference call inside the switch. It ends when only one member is left. Not thread-safe.
class SimulatedConference {
public:
    SimulatedConference(std::string callId, std::vector<Party> members);

    /// Has no effect if `who` is not a member.
    [[nodiscard]] SimulatedEvents leave(const Party& who);
    /// All members leave; `first` hangs up.
    [[nodiscard]] SimulatedEvents hangUp(const Party& first);
    [[nodiscard]] LiveCall live() const;

private:
    [[nodiscard]] SimulatedEvent clear(const Party& leaving, const Party& releasing);

    std::string m_callId;
    std::vector<Party> m_members;
};

}  // namespace host
