#include "host/switch/calls/ScenarioCalls.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "host/switch/calls/TransferAndConference.h"

namespace host {

namespace {

using Action = ScenarioStep::Action;
using Side = SwitchCall::Side;

constexpr const char* kNormal = "normalClearing";

/// Lets the called phone ring if it does not ring yet.
SwitchEvents ringIfNeeded(SwitchCall& call) {
    return call.isRinging() ? SwitchEvents() : SwitchEvents{call.ring()};
}

void append(SwitchEvents& all, SwitchEvents more) {
    all.insert(all.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

}  // namespace

ScenarioCalls::ScenarioCalls(std::string phone, std::vector<std::string> lines,
                             std::function<std::string()> newCallId)
    : m_phone(std::move(phone)), m_lines(std::move(lines)), m_newCallId(std::move(newCallId)) {}

SwitchEvents ScenarioCalls::perform(const ScenarioStep& step) {
    switch (step.action) {
        case Action::eCall:
        case Action::eDial: return make(step);
        case Action::eConsult: return consult(step);
        case Action::eReportMissed:
        case Action::eCallBackSet:
        case Action::eCallBackCancel: return eventWithoutCall(step);
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

SwitchEvents ScenarioCalls::hangUpAll() {
    SwitchEvents events;
    for (auto& [name, call] : m_calls) {
        append(events, call.hangUp(Side::eCaller, kNormal));
    }
    for (auto& [name, conference] : m_conferences) {
        append(events, conference.hangUp(partyOrPhone({})));
    }
    m_calls.clear();
    m_conferences.clear();
    return events;
}

SwitchCall* ScenarioCalls::find(std::string_view callId, std::string_view device) {
    const auto found = std::find_if(m_calls.begin(), m_calls.end(), [&](const auto& each) {
        return (callId.empty() || each.second.id() == callId) && each.second.sideOf(device);
    });
    return found == m_calls.end() ? nullptr : &found->second;
}

void ScenarioCalls::addLiveCalls(std::vector<LiveCall>& calls) const {
    const auto add = [&calls](LiveCall call) {
        if (std::any_of(call.connections.begin(), call.connections.end(),
                        [](const LiveCall::Connection& one) { return one.state != "null"; })) {
            calls.push_back(std::move(call));
        }
    };
    for (const auto& [name, call] : m_calls) {
        add(call.live());
    }
    for (const auto& [name, conference] : m_conferences) {
        add(conference.live());
    }
}

SwitchEvents ScenarioCalls::perform(const ScenarioStep& step, SwitchCall& call) {
    // A client has answered the call, or ended it, before the scenario.
    const bool isInformation = step.action == Action::eMarkMissed || step.action == Action::eName;
    const bool isEstablished =
        step.action == Action::eAnswerCall && std::as_const(call).end(Side::eCalled).state == "connected";
    if ((call.isOver() && !isInformation) || isEstablished) {
        return {};
    }
    switch (step.action) {
        case Action::eRing: return {call.ring()};
        case Action::eAnswerCall: {
            SwitchEvents events = ringIfNeeded(call);
            events.push_back(call.answerCall());
            return events;
        }
        case Action::eHold: return {call.hold(sideOf(step, call), "normal")};
        case Action::eRetrieve: return {call.retrieve(sideOf(step, call))};
        case Action::eHangUp: return call.hangUp(sideOf(step, call), kNormal);
        case Action::eAbandon: return call.hangUp(Side::eCaller, kNormal);
        case Action::eBusy: return call.fail("busy");
        case Action::eNoAnswer: {
            SwitchEvents events = ringIfNeeded(call);
            append(events, call.hangUp(Side::eCaller, kNormal));
            return events;
        }
        case Action::eDivert: return call.divert(step.to, step.word);
        case Action::ePickUp: return call.divert(partyOrPhone(step.to), "callPickup");
        case Action::eAnsweredElsewhere: return {call.answerElsewhere()};
        case Action::eSingleStepTransfer: {
            TransferredCall next =
                singleStepTransfer(call, sideOf(step, call), partyOrPhone(step.to), m_newCallId());
            store(step.call, std::move(next.call));
            return std::move(next.events);
        }
        case Action::eTransfer:
        case Action::eJoin: return joinWithOther(step, call);
        case Action::eMarkMissed: return {call.markMissed()};
        case Action::eName: return {call.setName(sideOf(step, call), step.word)};
        default: return {};
    }
}

SwitchEvents ScenarioCalls::performInConference(const ScenarioStep& step,
                                                SwitchConference& conference) const {
    return step.action == Action::eHangUp  ? conference.hangUp(partyOrPhone({}))
           : step.action == Action::eLeave ? conference.leave(partyOrPhone(step.to))
                                           : SwitchEvents();
}

SwitchEvents ScenarioCalls::make(const ScenarioStep& step) {
    SwitchCall call(m_newCallId(), partyOrPhone(step.from), partyOrPhone(step.to), step.redirectedFrom,
                    step.word);
    SwitchEvents events = call.originate(step.action == Action::eDial ? "makeCall" : "");
    store(step.call, std::move(call));
    return events;
}

SwitchEvents ScenarioCalls::consult(const ScenarioStep& step) {
    const auto first = m_calls.find(step.other);
    if (first == m_calls.end()) {
        return {};
    }
    const Side by = sideOf(step, first->second);
    SwitchEvents events = {first->second.hold(by, "consultation")};
    SwitchCall call(m_newCallId(), first->second.party(by), partyOrPhone(step.to), {}, {});
    append(events, call.originate("consultation"));
    store(step.call, std::move(call));
    return events;
}

SwitchEvents ScenarioCalls::joinWithOther(const ScenarioStep& step, const SwitchCall& held) {
    const auto other = m_calls.find(step.other);
    if (other == m_calls.end()) {
        return {};
    }
    const Side holder = held.end(Side::eCaller).state == "hold" ? Side::eCaller : Side::eCalled;
    const HeldPair pair{held, holder, other->second};
    SwitchEvents events;
    if (step.action == Action::eTransfer) {
        TransferredCall next = transferCalls(pair, m_newCallId());
        events = std::move(next.events);
        store(step.call, std::move(next.call));
    } else {
        ConferencedCalls next = joinCalls(pair, m_newCallId());
        events = std::move(next.events);
        m_calls.erase(step.call);
        m_conferences.insert_or_assign(step.call, std::move(next.conference));
    }
    m_calls.erase(step.other);
    return events;
}

/// An event that the switch sends to the phone without a call.
SwitchEvents ScenarioCalls::eventWithoutCall(const ScenarioStep& step) const {
    SwitchEvent event;
    event.subject = partyOrPhone({});
    event.device = event.subject;
    event.listeners = {{event.subject.number, "null"}};
    if (step.action == Action::eReportMissed) {
        event.type = WireEvent::eCallInformation;
        event.callId = "-1";
        event.calling = step.from;
        event.privateText = "MissedCall";
    } else {
        event.type = WireEvent::eCallBack;
        event.newDestination = step.to;
        event.set = step.action == Action::eCallBackSet;
        event.privateText = step.word;
    }
    return {std::move(event)};
}

void ScenarioCalls::store(const std::string& name, SwitchCall call) {
    m_conferences.erase(name);
    m_calls.insert_or_assign(name, std::move(call));
}

/// The acting side: the named one, otherwise the scenario's phone.
Side ScenarioCalls::sideOf(const ScenarioStep& step, const SwitchCall& call) const {
    if (!step.party.empty()) {
        return step.party == "caller" ? Side::eCaller : Side::eCalled;
    }
    const std::string& called = call.party(Side::eCalled).number;
    const bool own = called == m_phone || std::find(m_lines.begin(), m_lines.end(), called) != m_lines.end();
    return own ? Side::eCalled : Side::eCaller;
}

SwitchParty ScenarioCalls::partyOrPhone(const SwitchParty& party) const {
    return party.number.empty() && !party.anonymous ? SwitchParty{m_phone, party.name, false} : party;
}

}  // namespace host
