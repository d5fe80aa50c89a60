#pragma once

#include <chrono>
#include <cstddef>
#include <string>

#include "platform/csta/CallLogEntryEvent.h"

namespace host {

/// One end of a simulated call as it is named on the wire.
struct Party {
    std::string number;
    std::string name;
    /// Withholds number and name from everyone else.
    bool anonymous = false;

    [[nodiscard]] bool operator==(const Party&) const = default;
};

/// The same device, whatever name it is given; all who are anonymous are one.
[[nodiscard]] inline bool isSameDevice(const Party& one, const Party& other) {
    return one.anonymous == other.anonymous && one.number == other.number;
}

/// One action of a scenario, in the order of the text. Which members count depends on the action. A party without
/// number that is not anonymous stands for the scenario's phone.
struct ScenarioStep {
    enum class Action {
        eWait,       ///< `duration`
        eCall,       ///< makes `call` from `from` to `to`; silent until it rings
        eDial,       ///< makes `call` from `from` to `to` and sends what a phone that dials sees
        eConsult,    ///< holds `other` by `party` and dials `call` to `to` from there
        eRing,       ///< the called phone rings
        eResponse,   ///< the called party (or `party`) answers
        eHold,       ///< by `party`
        eRetrieve,   ///< by `party`
        eHangUp,     ///< by `party`
        eGiveUp,     ///< the caller hangs up before an answer
        eBusy,       ///< the far end of an outgoing call is busy
        eNoAnswer,   ///< nobody answers the outgoing call, and the phone gives up
        eDivert,     ///< to `to`, because of `word`
        ePickUp,     ///< `to` answers the call that rings at another phone
        eElsewhere,  ///< another phone with the same number answered
        eTransfer,  ///< who holds `call` connects its far end with that of `other`; both are `call` from then on
        eHandOn,        ///< `party` hands `call` on to `to`, who rings
        eJoin,          ///< who holds `call` makes it a conference with `other`
        eLeave,         ///< `to` leaves the conference `call`
        eMarkMissed,    ///< the switch marks `call` as missed
        eReportMissed,  ///< the switch reports a missed call from `from` that the phone never saw
        eName,          ///< the phone learns late that the far end of `call` is called `word`
        eCallBackSet,  ///< the phone's callback to `to` is set or gets on; `word` is what the switch says of it
        eCallBackCancel,  ///< the phone's callback to `to` is cancelled; `word` as above
        eStatus,          ///< the switch reports the system status `word`
        eLogAdd,     ///< the switch's log `log` gets an entry of `to`; `word` is the group that was called
        eLogDelete,  ///< the newest entry of `to` leaves it
        eLogClear,   ///< all of them do
        eLogPrint,   ///< shows all logs
    };

    Action action = Action::eWait;
    std::size_t line = 0;
    std::string call;
    std::string other;
    Party from;
    Party to;
    /// The party that the call was redirected from; the number is empty when it came straight.
    Party redirectedFrom;
    /// "caller" or "called"; empty stands for the action's usual party.
    std::string party;
    /// The standard's word of a cause or a status; empty stands for the action's usual one.
    std::string word;
    std::chrono::milliseconds duration{0};
    /// One of the phone's logs at the switch.
    CallLogEntryEvent::_LogTarget log = CallLogEntryEvent::eMissed;
};

/// The step brings a call into being.
[[nodiscard]] inline bool makesCall(const ScenarioStep& step) {
    return step.action == ScenarioStep::Action::eCall || step.action == ScenarioStep::Action::eDial ||
           step.action == ScenarioStep::Action::eConsult;
}

}  // namespace host
