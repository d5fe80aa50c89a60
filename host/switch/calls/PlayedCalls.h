#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "host/switch/calls/SimulatedCall.h"
#include "host/switch/calls/SimulatedConference.h"

namespace host {

/// The calls of a scenario that is being played, under the names that its text gives them: does one step after another
/// and says what the phones hear. A step whose call is not there does nothing. Not thread-safe.
class PlayedCalls {
public:
    /// `phone` is the scenario's device, `lines` are the others that it serves. `newCallId` makes an id that no other
    /// call of the switch has.
    PlayedCalls(std::string phone, std::vector<std::string> lines, std::function<std::string()> newCallId);

    /// Everything but waits and the switch's own status.
    [[nodiscard]] CallOccurrences perform(const ScenarioStep& step);
    [[nodiscard]] CallOccurrences hangUpAll();

private:
    [[nodiscard]] CallOccurrences perform(const ScenarioStep& step, SimulatedCall& call);
    [[nodiscard]] CallOccurrences performInConference(const ScenarioStep& step,
                                                      SimulatedConference& conference) const;
    [[nodiscard]] CallOccurrences make(const ScenarioStep& step);
    [[nodiscard]] CallOccurrences consult(const ScenarioStep& step);
    [[nodiscard]] CallOccurrences joinWithOther(const ScenarioStep& step, const SimulatedCall& held);
    [[nodiscard]] CallOccurrences beside(const ScenarioStep& step) const;

    void put(const std::string& name, SimulatedCall call);
    [[nodiscard]] SimulatedCall::Side sideOf(const ScenarioStep& step, const SimulatedCall& call) const;
    [[nodiscard]] Party orPhone(const Party& party) const;

    const std::string m_phone;
    const std::vector<std::string> m_lines;
    const std::function<std::string()> m_newCallId;
    std::map<std::string, SimulatedCall> m_calls;
    std::map<std::string, SimulatedConference> m_conferences;
};

}  // namespace host
