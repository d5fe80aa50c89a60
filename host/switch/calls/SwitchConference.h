#pragma once

#include <string>
#include <vector>

#include "host/switch/calls/LiveCall.h"
#include "host/switch/calls/SwitchEvent.h"

namespace host {

/// A conference call inside the switch. It ends when only one member is left. Not thread-safe.
class SwitchConference {
public:
    SwitchConference(std::string callId, std::vector<SwitchParty> members);

    /// Has no effect if `who` is not a member.
    [[nodiscard]] SwitchEvents leave(const SwitchParty& who);
    /// All members leave; `first` hangs up.
    [[nodiscard]] SwitchEvents hangUp(const SwitchParty& first);
    [[nodiscard]] LiveCall live() const;

private:
    [[nodiscard]] SwitchEvent clear(const SwitchParty& leaving, const SwitchParty& releasing);

    std::string m_callId;
    std::vector<SwitchParty> m_members;
};

}  // namespace host
