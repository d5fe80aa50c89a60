#include "tests/reliability/random-calls/SwitchModel.h"

#include <algorithm>
#include <utility>

namespace reliability {

namespace {

void setState(Call& call, const Party& party, const std::string& state) {
    const auto found = std::find_if(call.connections.begin(), call.connections.end(),
                                    [&party](const Call::Connection& one) { return one.party == party; });
    if (state == "null") {
        if (found != call.connections.end()) {
            call.connections.erase(found);
        }
    } else if (found != call.connections.end()) {
        found->state = state;
    } else {
        call.connections.push_back({party, state});
    }
    if (party == SwitchModel::own() && state != "null") {
        call.watched = true;
    }
}

}  // namespace

std::string Call::stateOf(const Party& party) const {
    const auto found = std::find_if(connections.begin(), connections.end(),
                                    [&party](const Connection& one) { return one.party == party; });
    return found == connections.end() ? "null" : found->state;
}

void Story::append(const Story& next) {
    for (Leg& leg : legs) {
        leg.storyEnd = steps.size();
    }
    for (Leg leg : next.legs) {
        leg.began += steps.size();
        for (std::optional<std::size_t>* const step : {&leg.established, &leg.ended}) {
            if (*step) {
                **step += steps.size();
            }
        }
        legs.push_back(std::move(leg));
    }
    steps.insert(steps.end(), next.steps.begin(), next.steps.end());
    choices.emplace_back("then");
    choices.insert(choices.end(), next.choices.begin(), next.choices.end());
}

const Party& SwitchModel::own() {
    static const Party party{kOwnNumber, "Own Phone"};
    return party;
}

Call& SwitchModel::place(std::string id, const Party& calling, const Party& called) {
    Call call;
    call.id = std::move(id);
    call.calling = calling;
    call.called = called;
    m_calls.push_back(std::move(call));
    setState(m_calls.back(), calling, "connected");
    return m_calls.back();
}

void SwitchModel::initiate(Call& call, const Party& party) {
    setState(call, party, "initiated");
    show(call, eventOf(EventKind::eServiceInitiated, call, party, "makeCall"));
}

void SwitchModel::originate(Call& call, const std::string& cause) {
    setState(call, call.calling, "connected");
    show(call, eventOf(EventKind::eOriginated, call, call.calling, cause));
}

void SwitchModel::offer(Call& call, const Party& party) {
    setState(call, party, "alerting");
    show(call, eventOf(EventKind::eOffered, call, party, "newCall"));
}

void SwitchModel::queue(Call& call, const Party& group) {
    show(call, eventOf(EventKind::eQueued, call, group, "enteringDistribution"));
}

void SwitchModel::ring(Call& call, const Party& party, const std::string& cause) {
    setState(call, party, "alerting");
    show(call, eventOf(EventKind::eDelivered, call, party, cause));
}

void SwitchModel::establish(Call& call, const Party& party, const std::string& cause) {
    setState(call, party, "connected");
    show(call, eventOf(EventKind::eEstablished, call, party, cause));
}

void SwitchModel::establishTurned(Call& call, const Party& answering, const Party& calling) {
    setState(call, own(), "connected");
    CallEvent event = eventOf(EventKind::eEstablished, call, answering, "newCall");
    event.calling = calling;
    event.called = answering;
    show(call, std::move(event));
}

void SwitchModel::fail(Call& call, const Party& party, const std::string& cause) {
    setState(call, party, "null");
    show(call, eventOf(EventKind::eFailed, call, party, cause));
}

void SwitchModel::hold(Call& call, const Party& party, const std::string& cause) {
    setState(call, party, "hold");
    show(call, eventOf(EventKind::eHeld, call, party, cause));
}

void SwitchModel::retrieve(Call& call, const Party& party) {
    setState(call, party, "connected");
    show(call, eventOf(EventKind::eRetrieved, call, party, "normal"));
}

void SwitchModel::divert(Call& call, const Party& from, const Party& to, const std::string& cause) {
    setState(call, from, "null");
    CallEvent event = eventOf(EventKind::eDiverted, call, from, cause);
    event.to = to;
    show(call, std::move(event));
    if (from == own()) {
        call.watched = false;
    }
}

void SwitchModel::drop(Call& call, const Party& party, const Party& releasing, const std::string& cause) {
    setState(call, party, "null");
    CallEvent event = eventOf(EventKind::eConnectionCleared, call, party, cause);
    event.device = releasing;
    show(call, std::move(event));
    if (party == own()) {
        call.watched = false;
    }
}

void SwitchModel::removeSilently(Call& call, const Party& party) {
    setState(call, party, "null");
}

void SwitchModel::connectSilently(Call& call, const Party& party, const std::string& state) {
    setState(call, party, state);
}

Call& SwitchModel::transfer(Call& primary, Call* secondary, const Party& by, const Party& to,
                            const std::string& newCallId) {
    CallEvent event = eventOf(EventKind::eTransferred, primary, by,
                              secondary == nullptr ? "singleStepTransfer" : "transfer");
    event.to = to;
    event.newCallId = newCallId;
    setState(primary, by, "null");
    if (secondary != nullptr) {
        setState(*secondary, by, "null");
    } else {
        event.connections.push_back({to, {}});
    }
    return joinCalls(std::move(event), primary, secondary);
}

Call& SwitchModel::conference(Call& primary, Call& secondary, const Party& by, const Party& added,
                              const std::string& newCallId) {
    CallEvent event = eventOf(EventKind::eConferenced, primary, by, "conference");
    event.to = added;
    event.newCallId = newCallId;
    setState(primary, by, "connected");
    setState(secondary, by, "null");
    return joinCalls(std::move(event), primary, &secondary);
}

Call& SwitchModel::joinCalls(CallEvent event, Call& primary, Call* secondary) {
    Call joined;
    joined.id = event.newCallId;
    joined.calling = primary.calling;
    joined.called = primary.called;
    joined.connections = primary.connections;
    joined.watched = primary.watched || (secondary != nullptr && secondary->watched);
    std::vector<CallEvent::Connection> connections;
    for (const Call::Connection& one : primary.connections) {
        connections.push_back({one.party, primary.id});
    }
    if (secondary != nullptr) {
        event.secondaryCallId = secondary->id;
        for (const Call::Connection& one : secondary->connections) {
            connections.push_back({one.party, secondary->id});
            joined.connections.push_back(one);
        }
        secondary->connections.clear();
        secondary->watched = false;
    }
    primary.connections.clear();
    primary.watched = false;
    event.connections.insert(event.connections.begin(), connections.begin(), connections.end());
    m_calls.push_back(std::move(joined));
    m_story.plain = false;
    show(m_calls.back(), std::move(event));
    m_calls.back().watched = m_calls.back().stateOf(own()) != "null";
    return m_calls.back();
}

void SwitchModel::join() {
    m_story.steps.back().joined = true;
}

Leg& SwitchModel::beginLeg(bool outgoing, const Party& party, const std::string& callId) {
    Leg leg;
    leg.outgoing = outgoing;
    leg.party = party;
    leg.callId = callId;
    leg.began = now();
    m_legs.push_back(std::move(leg));
    return m_legs.back();
}

void SwitchModel::ended(Leg& leg, Leg::End end) const {
    leg.ended = now();
    leg.end = end;
}

Story SwitchModel::takeStory() {
    m_story.legs.assign(m_legs.begin(), m_legs.end());
    return std::move(m_story);
}

CallEvent SwitchModel::eventOf(EventKind kind, const Call& call, const Party& subject,
                               const std::string& cause) const {
    CallEvent event;
    event.kind = kind;
    event.callId = call.id;
    event.subject = subject;
    event.device = subject;
    event.calling = call.calling;
    event.called = call.called;
    event.redirectedBy = call.redirectedBy;
    event.cause = cause;
    return event;
}

void SwitchModel::show(const Call& call, CallEvent event) {
    if (!call.watched) {
        return;
    }
    event.local = call.stateOf(own());
    Step step;
    step.event = std::move(event);
    for (const Call& one : m_calls) {
        if (one.stateOf(own()) != "null") {
            step.calls.push_back(one);
        }
    }
    m_story.steps.push_back(std::move(step));
}

}  // namespace reliability
