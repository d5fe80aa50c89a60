#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/switch/calls/SwitchCall.h"
#include "host/switch/calls/SwitchConference.h"
#include "host/switch/scenario/ScenarioStep.h"

namespace host {

/// The calls of a scenario that is being played, by their names in the text. Performs the steps and returns
/// the events for the phones. A step has no effect if its call does not exist. Not thread-safe.
class ScenarioCalls {
public:
    /// `phone` is the scenario's device, `lines` are its other telephone lines. `newCallId` returns a call id
    /// that is unique at the switch.
    ScenarioCalls(std::string phone, std::vector<std::string> lines, std::function<std::string()> newCallId);

    /// Performs any step except waits and the switch's own status.
    [[nodiscard]] SwitchEvents perform(const ScenarioStep& step);
    [[nodiscard]] SwitchEvents hangUpAll();
    /// The live call with that id in which the device takes part, or null. An empty id stands for any call.
    [[nodiscard]] SwitchCall* find(std::string_view callId, std::string_view device);
    /// Adds the live calls to `calls`.
    void addLiveCalls(std::vector<LiveCall>& calls) const;

private:
    [[nodiscard]] SwitchEvents perform(const ScenarioStep& step, SwitchCall& call);
    [[nodiscard]] SwitchEvents performInConference(const ScenarioStep& step,
                                                   SwitchConference& conference) const;
    [[nodiscard]] SwitchEvents make(const ScenarioStep& step);
    [[nodiscard]] SwitchEvents consult(const ScenarioStep& step);
    [[nodiscard]] SwitchEvents joinWithOther(const ScenarioStep& step, const SwitchCall& held);
    [[nodiscard]] SwitchEvents eventWithoutCall(const ScenarioStep& step) const;

    void store(const std::string& name, SwitchCall call);
    [[nodiscard]] SwitchCall::Side sideOf(const ScenarioStep& step, const SwitchCall& call) const;
    [[nodiscard]] SwitchParty partyOrPhone(const SwitchParty& party) const;

    const std::string m_phone;
    const std::vector<std::string> m_lines;
    const std::function<std::string()> m_newCallId;
    std::map<std::string, SwitchCall> m_calls;
    std::map<std::string, SwitchConference> m_conferences;
};

}  // namespace host
