#include "host/switch/calls/PlayedCalls.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "host/switch/calls/CallJoining.h"

namespace host {

namespace {

using Action = ScenarioStep::Action;
using Side = SimulatedCall::Side;

constexpr const char* kNormal = "normalClearing";

/// What needs the called phone to ring finds it ringing.
CallOccurrences rungFirst(SimulatedCall& call) {
    return call.isRinging() ? CallOccurrences() : CallOccurrences{call.ring()};
}

void append(CallOccurrences& all, CallOccurrences more) {
    all.insert(all.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

}  // namespace

PlayedCalls::PlayedCalls(std::string phone, std::vector<std::string> lines,
                         std::function<std::string()> newCallId)
    : m_phone(std::move(phone)), m_lines(std::move(lines)), m_newCallId(std::move(newCallId)) {}

CallOccurrences PlayedCalls::perform(const ScenarioStep& step) {
    switch (step.action) {
        case Action::eCall:
        case Action::eDial: return make(step);
        case Action::eConsult: return consult(step);
        case Action::eReportMissed:
        case Action::eCallBackSet:
        case Action::eCallBackCancel: return beside(step);
        default: break;
    }
    if (const auto call = m_calls.find(step.call); call != m_calls.end()) {
        return perform(step, call->second);
    }
    if (const auto conference = m_conferences.find(step.call); conference != m_conferences.end()) {
        return performInConference(step, conference->second);
    }
    return {};
}

CallOccurrences PlayedCalls::hangUpAll() {
    CallOccurrences heard;
    for (auto& [name, call] : m_calls) {
        append(heard, call.hangUp(Side::eCaller, kNormal));
    }
    for (auto& [name, conference] : m_conferences) {
        append(heard, conference.hangUp(orPhone({})));
    }
    m_calls.clear();
    m_conferences.clear();
    return heard;
}

CallOccurrences PlayedCalls::perform(const ScenarioStep& step, SimulatedCall& call) {
    switch (step.action) {
        case Action::eRing: return {call.ring()};
        case Action::eResponse: {
            CallOccurrences heard = rungFirst(call);
            heard.push_back(call.answer());
            return heard;
        }
        case Action::eHold: return {call.hold(sideOf(step, call), "normal")};
        case Action::eRetrieve: return {call.retrieve(sideOf(step, call))};
        case Action::eHangUp: return call.hangUp(sideOf(step, call), kNormal);
        case Action::eGiveUp: return call.hangUp(Side::eCaller, kNormal);
        case Action::eBusy: return call.busy();
        case Action::eNoAnswer: {
            CallOccurrences heard = rungFirst(call);
            append(heard, call.hangUp(Side::eCaller, kNormal));
            return heard;
        }
        case Action::eDivert: return call.divert(step.to, step.word);
        case Action::ePickUp: return call.divert(orPhone(step.to), "callPickup");
        case Action::eElsewhere: return {call.answerElsewhere()};
        case Action::eHandOn: {
            TransferredCall next = handOn(call, sideOf(step, call), orPhone(step.to), m_newCallId());
            put(step.call, std::move(next.call));
            return std::move(next.heard);
        }
        case Action::eTransfer:
        case Action::eJoin: return joinWithOther(step, call);
        case Action::eMarkMissed: return {call.markMissed()};
        case Action::eName: return {call.tellName(sideOf(step, call), step.word)};
        default: return {};
    }
}

CallOccurrences PlayedCalls::performInConference(const ScenarioStep& step,
                                                 SimulatedConference& conference) const {
    return step.action == Action::eHangUp  ? conference.hangUp(orPhone({}))
           : step.action == Action::eLeave ? conference.leave(orPhone(step.to))
                                           : CallOccurrences();
}

CallOccurrences PlayedCalls::make(const ScenarioStep& step) {
    SimulatedCall call(m_newCallId(), orPhone(step.from), orPhone(step.to), step.redirectedFrom, step.word);
    CallOccurrences heard = call.originate(step.action == Action::eDial ? "makeCall" : "");
    put(step.call, std::move(call));
    return heard;
}

CallOccurrences PlayedCalls::consult(const ScenarioStep& step) {
    const auto first = m_calls.find(step.other);
    if (first == m_calls.end()) {
        return {};
    }
    const Side by = sideOf(step, first->second);
    CallOccurrences heard = {first->second.hold(by, "consultation")};
    SimulatedCall call(m_newCallId(), first->second.party(by), orPhone(step.to), {}, {});
    append(heard, call.originate("consultation"));
    put(step.call, std::move(call));
    return heard;
}

CallOccurrences PlayedCalls::joinWithOther(const ScenarioStep& step, const SimulatedCall& held) {
    const auto other = m_calls.find(step.other);
    if (other == m_calls.end()) {
        return {};
    }
    const Side holder = held.end(Side::eCaller).state == "hold" ? Side::eCaller : Side::eCalled;
    const HeldPair pair{held, holder, other->second};
    CallOccurrences heard;
    if (step.action == Action::eTransfer) {
        TransferredCall next = transferCalls(pair, m_newCallId());
        heard = std::move(next.heard);
        put(step.call, std::move(next.call));
    } else {
        ConferencedCalls next = joinCalls(pair, m_newCallId());
        heard = std::move(next.heard);
        m_calls.erase(step.call);
        m_conferences.insert_or_assign(step.call, std::move(next.conference));
    }
    m_calls.erase(step.other);
    return heard;
}

/// What the switch tells the phone without any call.
CallOccurrences PlayedCalls::beside(const ScenarioStep& step) const {
    SimulatedEvent heard;
    heard.subject = orPhone({});
    heard.device = heard.subject;
    heard.listeners = {{heard.subject.number, "null"}};
    if (step.action == Action::eReportMissed) {
        heard.event = WireEvent::eCallInformation;
        heard.callId = "-1";
        heard.calling = step.from;
        heard.privateText = "MissedCall";
    } else {
        heard.event = WireEvent::eCallBack;
        heard.newDestination = step.to;
        heard.set = step.action == Action::eCallBackSet;
        heard.privateText = step.word;
    }
    return {std::move(heard)};
}

void PlayedCalls::put(const std::string& name, SimulatedCall call) {
    m_conferences.erase(name);
    m_calls.insert_or_assign(name, std::move(call));
}

/// Without a word it is the scenario's phone that acts.
Side PlayedCalls::sideOf(const ScenarioStep& step, const SimulatedCall& call) const {
    if (!step.party.empty()) {
        return step.party == "caller" ? Side::eCaller : Side::eCalled;
    }
    const std::string& called = call.party(Side::eCalled).number;
    const bool own = called == m_phone || std::find(m_lines.begin(), m_lines.end(), called) != m_lines.end();
    return own ? Side::eCalled : Side::eCaller;
}

Party PlayedCalls::orPhone(const Party& party) const {
    return party.number.empty() && !party.anonymous ? Party{m_phone, party.name, false} : party;
}

}  // namespace host
