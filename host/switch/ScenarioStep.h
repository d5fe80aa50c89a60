#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace host {

/// One end of a simulated call as it is named on the wire.
struct Party {
    std::string number;
    std::string name;
    /// Withholds number and name from everyone else.
    bool anonymous = false;

    [[nodiscard]] bool operator==(const Party&) const = default;
};

/// One action of a scenario, in the order of the text. Which members count depends on the action.
struct ScenarioStep {
    enum class Action {
        eWait,       ///< `duration`
        eCall,       ///< makes `call` from `from` to `to`; silent until it rings
        eDial,       ///< makes `call` from `from` to `to` and sends what a phone that dials sees
        eRing,       ///< the called phone rings
        eAnswer,     ///< the called party (or `party`) answers
        eHold,       ///< by `party`
        eRetrieve,   ///< by `party`
        eHangUp,     ///< by `party`
        eGiveUp,     ///< the caller hangs up before an answer
        eBusy,       ///< the far end of an outgoing call is busy
        eNoAnswer,   ///< nobody answers the outgoing call, and the phone gives up
        eDivert,     ///< to `to`, because of `word`
        eElsewhere,  ///< another phone with the same number answered
        eStatus,     ///< the switch reports the system status `word`
    };

    Action action = Action::eWait;
    std::size_t line = 0;
    std::string call;
    Party from;
    Party to;
    /// The party that the call was redirected from; the number is empty when it came straight.
    Party redirectedFrom;
    /// "caller" or "called"; empty stands for the action's usual party.
    std::string party;
    /// The standard's word of a cause or a status; empty stands for the action's usual one.
    std::string word;
    std::chrono::milliseconds duration{0};
};

}  // namespace host
