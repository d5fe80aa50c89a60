#include "host/switch/scenario/CallStates.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace host {

namespace {

constexpr const char* kAnonymous = "anonymous";

const std::string& otherEnd(const std::string& end, const std::string& caller, const std::string& called) {
    return end == caller ? called : caller;
}

}  // namespace

const std::vector<CallStates::Action>& CallStates::actions() {
    using Step = ScenarioStep::Action;
    using enum State;
    static const std::vector<Action> rows = {
        {"call", Step::eCall, {eOver}, eMade, "is still there"},
        {"dial", Step::eDial, {eOver}, eDialled, "is still there"},
        {"consult", Step::eConsult, {eOver}, eDialled, "is still there", {eConnected}, "is not connected"},
        {"ring", Step::eRing, {eMade, eDialled}, eRinging, "cannot ring now"},
        {"answer", Step::eAnswerCall, {eRinging}, eConnected, "does not ring"},
        {"connect", Step::eAnswerCall, {eDialled, eRinging}, eConnected, "is not being set up"},
        {"hold", Step::eHold, {eConnected}, eHeld, "is not connected"},
        {"retrieve", Step::eRetrieve, {eHeld}, eConnected, "is not held"},
        {"hangup",
         Step::eHangUp,
         {eDialled, eRinging, eConnected, eHeld, eConference},
         eOver,
         "is not there"},
        {"giveup", Step::eAbandon, {eMade, eDialled, eRinging}, eOver, "is not being set up"},
        {"busy", Step::eBusy, {eDialled}, eOver, "was not just dialled"},
        {"noanswer", Step::eNoAnswer, {eDialled, eRinging}, eOver, "is not being set up"},
        {"divert", Step::eDivert, {eMade, eDialled, eRinging}, eRinging, "is not being set up"},
        {"pickup", Step::ePickUp, {eRinging}, eConnected, "does not ring"},
        {"elsewhere", Step::eAnsweredElsewhere, {eRinging}, eOver, "does not ring"},
        {"transfer",
         Step::eTransfer,
         {eHeld},
         eConnected,
         "is not held",
         {eRinging, eConnected},
         "neither rings nor is connected"},
        {"transfer", Step::eSingleStepTransfer, {eConnected}, eRinging, "is not connected"},
        {"join", Step::eJoin, {eHeld}, eConference, "is not held", {eConnected}, "is not connected"},
        {"leave", Step::eLeave, {eConference}, eConference, "is no conference"},
        {"missed", Step::eMarkMissed, {eMade, eRinging}, std::nullopt, "is not being set up"},
        {"name",
         Step::eName,
         {eMade, eDialled, eRinging, eConnected, eHeld},
         std::nullopt,
         "is a conference"},
    };
    return rows;
}

const CallStates::Action* CallStates::find(const std::string& word) {
    const auto row = std::find_if(actions().begin(), actions().end(),
                                  [&word](const Action& candidate) { return candidate.word == word; });
    return row == actions().end() ? nullptr : &*row;
}

const CallStates::Action& CallStates::singleStepTransfer() {
    return *std::find_if(actions().begin(), actions().end(), [](const Action& candidate) {
        return candidate.action == ScenarioStep::Action::eSingleStepTransfer;
    });
}

void CallStates::apply(const Action& row, const ScenarioStep& step) {
    checkState(row.word, step.call, row.validStates, row.objection);
    if (!row.otherValidStates.empty()) {
        checkState(row.word, step.other, row.otherValidStates, row.otherObjection);
    }
    if (stateOf(step.call) == State::eConference && !step.party.empty()) {
        m_reader.fail("\"" + std::string(row.word) + "\": a conference has members, no caller");
    }
    using Step = ScenarioStep::Action;
    if (step.action == Step::eCall || step.action == Step::eDial) {
        m_calls[step.call] = {State::eOver, numberOf(step.from), numberOf(step.to), {}, {}};
    } else if (step.action == Step::eConsult) {
        consult(step);
    }
    Call& call = m_calls[step.call];
    call.state = row.next.value_or(call.state);
    switch (step.action) {
        case Step::eHold: call.holder = actor(step, call); break;
        case Step::eDivert:
            call.called = numberOf(step.to);
            call.state = step.word == "callPickup" ? State::eConnected : call.state;
            break;
        case Step::ePickUp: pickUp(step, call); break;
        case Step::eSingleStepTransfer: singleStepTransfer(step, call); break;
        case Step::eTransfer: transfer(step, call); break;
        case Step::eJoin: join(step, call); break;
        case Step::eLeave: leave(step, call); break;
        default: break;
    }
}

void CallStates::checkState(const char* word, const std::string& call, const std::vector<State>& validStates,
                            const char* objection) const {
    const State state = stateOf(call);
    if (std::find(validStates.begin(), validStates.end(), state) == validStates.end()) {
        m_reader.fail("\"" + std::string(word) + "\": the call " + call + " " +
                      (!isKnown(call)          ? "was never made"
                       : state == State::eOver ? "is over"
                                               : objection));
    }
}

void CallStates::consult(const ScenarioStep& step) {
    Call& held = m_calls[step.other];
    held.state = State::eHeld;
    held.holder = actor(step, held);
    m_calls[step.call] = {State::eOver, held.holder, numberOf(step.to), {}, {}};
}

void CallStates::pickUp(const ScenarioStep& step, Call& call) const {
    const std::string number = numberOf(step.to);
    if (number == call.called || number == call.caller) {
        m_reader.fail("\"pickup\": " + number + " is in the call " + step.call + " already");
    }
    call.called = number;
}

void CallStates::singleStepTransfer(const ScenarioStep& step, Call& call) const {
    call.caller = otherEnd(actor(step, call), call.caller, call.called);
    call.called = numberOf(step.to);
}

void CallStates::transfer(const ScenarioStep& step, Call& call) {
    std::tie(call.caller, call.called) = farEnds("transfer", step);
    call.state = std::exchange(m_calls[step.other].state, State::eOver);
}

void CallStates::join(const ScenarioStep& step, Call& call) {
    const auto [first, second] = farEnds("join", step);
    call.members = {call.holder, first, second};
    m_calls[step.other].state = State::eOver;
}

void CallStates::leave(const ScenarioStep& step, Call& call) const {
    const std::string number = numberOf(step.to);
    const auto member = std::find(call.members.begin(), call.members.end(), number);
    if (member == call.members.end()) {
        m_reader.fail("\"leave\": " + number + " is not in the conference " + step.call);
    }
    call.members.erase(member);
    call.state = call.members.size() == 1 ? State::eOver : State::eConference;
}

std::pair<std::string, std::string> CallStates::farEnds(const char* word, const ScenarioStep& step) const {
    const Call& held = m_calls.at(step.call);
    const Call& other = m_calls.at(step.other);
    if (held.holder != other.caller && held.holder != other.called) {
        m_reader.fail("\"" + std::string(word) + "\": " + held.holder + ", who holds the call " + step.call +
                      ", is not in the call " + step.other);
    }
    return {otherEnd(held.holder, held.caller, held.called),
            otherEnd(held.holder, other.caller, other.called)};
}

CallStates::State CallStates::stateOf(const std::string& call) const {
    const auto known = m_calls.find(call);
    return known == m_calls.end() ? State::eOver : known->second.state;
}

std::string CallStates::numberOf(const SwitchParty& party) const {
    return party.anonymous ? kAnonymous : party.number.empty() ? m_phone : party.number;
}

std::string CallStates::actor(const ScenarioStep& step, const Call& call) const {
    if (!step.party.empty()) {
        return step.party == "caller" ? call.caller : call.called;
    }
    const bool own =
        call.called == m_phone || std::find(m_lines.begin(), m_lines.end(), call.called) != m_lines.end();
    return own ? call.called : call.caller;
}

}  // namespace host
