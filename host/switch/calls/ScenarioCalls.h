#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "host/switch/calls/SimulatedCall.h"
#include "host/switch/calls/SimulatedConference.h"

namespace host {

/// The calls of a scenario that is being played, by their names in the text. Performs the steps and returns
/// the events for the phones. A step has no effect if its call does not exist. Not thread-safe.
class ScenarioCalls {
public:
    /// `phone` is the scenario's device, `lines` are its other telephone lines. `newCallId` returns a call id
    /// that is unique at the switch.
    ScenarioCalls(std::string phone, std::vector<std::string> lines, std::function<std::string()> newCallId);

    /// Performs any step except waits and the switch's own status.
    [[nodiscard]] SimulatedEvents perform(const ScenarioStep& step);
    [[nodiscard]] SimulatedEvents hangUpAll();
    /// Adds the live calls to `calls`.
    void addLiveCalls(std::vector<LiveCall>& calls) const;

private:
    [[nodiscard]] SimulatedEvents perform(const ScenarioStep& step, SimulatedCall& call);
    [[nodiscard]] SimulatedEvents performInConference(const ScenarioStep& step,
                                                      SimulatedConference& conference) const;
    [[nodiscard]] SimulatedEvents make(const ScenarioStep& step);
    [[nodiscard]] SimulatedEvents consult(const ScenarioStep& step);
    [[nodiscard]] SimulatedEvents joinWithOther(const ScenarioStep& step, const SimulatedCall& held);
    [[nodiscard]] SimulatedEvents eventWithoutCall(const ScenarioStep& step) const;

    void store(const std::string& name, SimulatedCall call);
    [[nodiscard]] SimulatedCall::Side sideOf(const ScenarioStep& step, const SimulatedCall& call) const;
    [[nodiscard]] SimulatedParty partyOrPhone(const SimulatedParty& party) const;

    const std::string m_phone;
    const std::vector<std::string> m_lines;
    const std::function<std::string()> m_newCallId;
    std::map<std::string, SimulatedCall> m_calls;
    std::map<std::string, SimulatedConference> m_conferences;
};

}  // namespace host
