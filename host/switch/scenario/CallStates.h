#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/switch/scenario/ScenarioStep.h"
#include "host/switch/scenario/StatementReader.h"

namespace host {

/// The states of a scenario's calls during parsing. Detects an impossible action before the scenario is
/// played ("the call c1 does not ring").
class CallStates {
public:
    enum class State { eOver, eMade, eDialled, eRinging, eConnected, eHeld, eConference };

    /// A word of the scenario text, the call states in which it is valid, and the next state.
    struct Action {
        const char* word;
        ScenarioStep::Action action;
        std::vector<State> validStates;
        /// `std::nullopt`: unchanged.
        std::optional<State> next;
        /// Error text if the call is in another state.
        const char* objection;
        /// The same for the second call, if the action needs one.
        std::vector<State> otherValidStates = {};
        const char* otherObjection = "";
    };
    /// The first action of a word; `nullptr` for an unknown word.
    [[nodiscard]] static const Action* find(const std::string& word);
    /// The action of "transfer" without a second call.
    [[nodiscard]] static const Action& singleStepTransfer();

    /// `reader` supplies the position of a fault and must outlive the object.
    explicit CallStates(const StatementReader& reader) : m_reader(reader) {}

    void setPhone(std::string device) { m_phone = std::move(device); }
    void addLine(std::string device) { m_lines.push_back(std::move(device)); }
    /// Applies a step, whose statement has been read, to its calls. Throws `ScenarioError` if the step is
    /// impossible.
    void apply(const Action& row, const ScenarioStep& step);
    /// True if a call of that name was made.
    [[nodiscard]] bool isKnown(const std::string& call) const { return m_calls.contains(call); }
    [[nodiscard]] State stateOf(const std::string& call) const;

private:
    struct Call {
        State state = State::eOver;
        std::string caller;
        std::string called;
        /// The party that holds the call.
        std::string holder;
        /// The members of a conference.
        std::vector<std::string> members;
    };

    [[nodiscard]] static const std::vector<Action>& actions();

    void checkState(const char* word, const std::string& call, const std::vector<State>& validStates,
                    const char* objection) const;
    void consult(const ScenarioStep& step);
    void pickUp(const ScenarioStep& step, Call& call) const;
    void singleStepTransfer(const ScenarioStep& step, Call& call) const;
    void transfer(const ScenarioStep& step, Call& call);
    void join(const ScenarioStep& step, Call& call);
    void leave(const ScenarioStep& step, Call& call) const;
    /// The far ends of a held call and of another call of the same holder.
    [[nodiscard]] std::pair<std::string, std::string> farEnds(const char* word,
                                                              const ScenarioStep& step) const;

    [[nodiscard]] std::string numberOf(const SwitchParty& party) const;
    /// The device that acts in the call: that of the named side, otherwise the scenario's phone.
    [[nodiscard]] std::string actor(const ScenarioStep& step, const Call& call) const;

    const StatementReader& m_reader;
    std::string m_phone;
    std::vector<std::string> m_lines;
    std::map<std::string, Call> m_calls;
};

}  // namespace host
