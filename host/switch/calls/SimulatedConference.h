#pragma once

#include <string>
#include <vector>

#include "host/switch/calls/LiveCall.h"
#include "host/switch/calls/SimulatedEvent.h"

namespace host {

/// A conference call inside the switch. It ends when only one member is left. Not thread-safe.
class SimulatedConference {
public:
    SimulatedConference(std::string callId, std::vector<SimulatedParty> members);

    /// Has no effect if `who` is not a member.
    [[nodiscard]] SimulatedEvents leave(const SimulatedParty& who);
    /// All members leave; `first` hangs up.
    [[nodiscard]] SimulatedEvents hangUp(const SimulatedParty& first);
    [[nodiscard]] LiveCall live() const;

private:
    [[nodiscard]] SimulatedEvent clear(const SimulatedParty& leaving, const SimulatedParty& releasing);

    std::string m_callId;
    std::vector<SimulatedParty> m_members;
};

}  // namespace host
