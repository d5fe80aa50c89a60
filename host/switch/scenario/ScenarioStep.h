#pragma once

#include <chrono>
#include <cstddef>
#include <string>

#include "host/csta-wire/SwitchParty.h"
#include "platform/csta/CallLogEntryEvent.h"

namespace host {

/// One action of a scenario, in the order of the text. The action determines which members are used. A party
/// that has no number and is not anonymous is the scenario's phone.
struct ScenarioStep {
    enum class Action {
        eWait,               ///< `duration`
        eCall,               ///< makes `call` from `from` to `to`, without events until it rings
        eDial,               ///< makes `call` from `from` to `to`, with the events of the dialling phone
        eConsult,            ///< holds `other` by `party` and dials `call` to `to` from there
        eRing,               ///< the called phone rings
        eAnswerCall,         ///< established by the called party (or `party`)
        eHold,               ///< by `party`
        eRetrieve,           ///< by `party`
        eHangUp,             ///< by `party`
        eAbandon,            ///< the caller hangs up before the call is answered
        eBusy,               ///< the far end of an outgoing call is busy
        eNoAnswer,           ///< the outgoing call is not answered, and the phone hangs up
        eDivert,             ///< to `to`, because of `word`
        ePickUp,             ///< `to` takes the call that rings at another phone
        eAnsweredElsewhere,  ///< another phone with the same number answered
        eTransfer,  ///< the holder of `call` connects its far end with that of `other`; creates `call` anew
        eSingleStepTransfer,  ///< `party` transfers `call` to `to`, whose phone rings
        eJoin,                ///< the holder of `call` makes it a conference with `other`
        eLeave,               ///< `to` leaves the conference `call`
        eMarkMissed,          ///< the switch marks `call` as missed
        eReportMissed,        ///< the switch reports a missed call from `from` without other events
        eName,                ///< the switch sends the name `word` of the far end of `call`
        eCallBackSet,     ///< the phone's callback to `to` is set or progresses; `word` is its private text
        eCallBackCancel,  ///< the phone's callback to `to` is cancelled; `word` as above
        eStatus,          ///< the switch reports the system status `word`
        eDisconnect,      ///< the switch closes all its connections
        eLogAdd,     ///< the switch's log `log` gets an entry of `to`; `word` is the group that was called
        eLogDelete,  ///< the newest entry of `to` leaves it
        eLogClear,   ///< all entries leave it
        eLogPrint,   ///< shows all logs
    };

    Action action = Action::eWait;
    /// Line number in the text.
    std::size_t line = 0;
    std::string call;
    std::string other;
    SwitchParty from;
    SwitchParty to;
    /// The last redirecting party; the number is empty for a direct call.
    SwitchParty redirectedFrom;
    /// "caller" or "called"; empty for the default party of the action.
    std::string party;
    /// The ECMA-323 value of a cause or a status; empty for the default of the action.
    std::string word;
    std::chrono::milliseconds duration{0};
    /// One of the phone's logs at the switch.
    CallLogEntryEvent::_LogTarget log = CallLogEntryEvent::eMissed;
};

/// True if the step creates a call.
[[nodiscard]] inline bool makesCall(const ScenarioStep& step) {
    return step.action == ScenarioStep::Action::eCall || step.action == ScenarioStep::Action::eDial ||
           step.action == ScenarioStep::Action::eConsult;
}

}  // namespace host
