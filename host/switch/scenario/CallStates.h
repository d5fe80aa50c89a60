#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/switch/scenario/ScenarioStep.h"
#include "host/switch/scenario/StatementReader.h"

namespace host {

/// What the calls of a scenario are doing at the present line of its text, so that an action that cannot happen is
/// found before anything is played ("the call c1 does not ring").
class CallStates {
public:
    enum class State { eOver, eMade, eDialled, eRinging, eUp, eHeld, eConference };

    /// What a word does, to calls in which state, and what they are then.
    struct Action {
        const char* word;
        ScenarioStep::Action action;
        std::vector<State> fits;
        /// Nothing: as before.
        std::optional<State> then;
        /// Why not, when the call is in another state.
        const char* objection;
        /// The same for a second call that the action needs.
        std::vector<State> otherFits = {};
        const char* otherObjection = "";
    };
    /// The first action of a word; null when there is none.
    [[nodiscard]] static const Action* find(const std::string& word);
    /// How "transfer" goes on when no second call is named.
    [[nodiscard]] static const Action& handingOn();

    /// `reader` says where a fault is, and outlives the object.
    explicit CallStates(const StatementReader& reader) : m_reader(reader) {}

    void setPhone(std::string device) { m_phone = std::move(device); }
    void addLine(std::string device) { m_lines.push_back(std::move(device)); }
    /// Notes what the step, whose statement has been read, does to its calls. Throws `ScenarioError` when that
    /// cannot be.
    void apply(const Action& row, const ScenarioStep& step);
    /// There is a call of that name, or was.
    [[nodiscard]] bool isKnown(const std::string& call) const { return m_calls.contains(call); }
    [[nodiscard]] State stateOf(const std::string& call) const;

private:
    struct Call {
        State state = State::eOver;
        std::string caller;
        std::string called;
        /// Who holds it.
        std::string holder;
        /// Of a conference.
        std::vector<std::string> members;
    };

    [[nodiscard]] static const std::vector<Action>& actions();

    void check(const char* word, const std::string& call, const std::vector<State>& fits,
               const char* objection) const;
    void consult(const ScenarioStep& step);
    void pickUp(const ScenarioStep& step, Call& call) const;
    void handOn(const ScenarioStep& step, Call& call) const;
    void transfer(const ScenarioStep& step, Call& call);
    void join(const ScenarioStep& step, Call& call);
    void leave(const ScenarioStep& step, Call& call) const;
    /// The two far ends of a call that is held and another one of the same holder.
    [[nodiscard]] std::pair<std::string, std::string> farEnds(const char* word,
                                                              const ScenarioStep& step) const;

    [[nodiscard]] std::string numberOf(const Party& party) const;
    /// The device that acts in the call: the named side, else the phone's.
    [[nodiscard]] std::string actor(const ScenarioStep& step, const Call& call) const;

    const StatementReader& m_reader;
    std::string m_phone;
    std::vector<std::string> m_lines;
    std::map<std::string, Call> m_calls;
};

}  // namespace host
