#include "host/sip/SipCalls.h"

#include <algorithm>

#include "host/sip/CallEnd.h"
#include "host/sip/SipAddress.h"

namespace host {

namespace {

using State = SipCallState::State;

SipPhoneEvent eventOf(const SipCallState& call) {
    return {.type = {},
            .account = {},
            .outgoing = call.outgoing,
            .peerUri = call.peerUri,
            .peerName = call.peerName,
            .id = call.id,
            .param = {}};
}

}  // namespace

SwitchEvents SipCalls::process(const SipPhoneEvent& event) {
    SwitchEvents events;
    // An outgoing call has no id before the other side responds; `dialled` introduces it.
    if (event.id.empty() || event.type.substr(0, 5) != "CALL_") {
        return events;
    }
    const Key key{event.id, event.outgoing};
    if (event.type == "CALL_INCOMING" || event.type == "CALL_RINGING" || event.type == "CALL_PROGRESS") {
        ring(key, callOf(event, {}, events), events);
    } else if (event.type == "CALL_ESTABLISHED") {
        establish(key, callOf(event, {}, events), events);
    } else if (event.type == "CALL_CLOSED") {
        if (event.outgoing) {
            // It may be the first message with the id: a refusal without ringing.
            static_cast<void>(callOf(event, {}, events));
        }
        close(key, event.param, events);
    }
    return events;
}

SwitchEvents SipCalls::dialled(const std::string& sipId, const std::string& uri) {
    SwitchEvents events;
    SipPhoneEvent event;
    event.outgoing = true;
    event.peerUri = uri;
    event.id = sipId;
    static_cast<void>(callOf(event, "makeCall", events));
    return events;
}

SwitchEvents SipCalls::introduce(const SipCallState& call) {
    SwitchEvents events;
    const Key key{call.id, call.outgoing};
    Call& known = callOf(eventOf(call), {}, events);
    if (call.state != State::eDialling) {
        ring(key, known, events);
    }
    if (call.state == State::eTalking) {
        establish(key, known, events);
    }
    return events;
}

void SipCalls::doubtAll() {
    for (auto& [key, call] : m_calls) {
        call.doubtful = true;
    }
}

bool SipCalls::dropDoubtful() {
    return std::erase_if(m_calls, [](const auto& each) { return each.second.doubtful; }) > 0;
}

SwitchEvents SipCalls::endAll() {
    SwitchEvents events;
    while (!m_calls.empty()) {
        const Key key = m_calls.begin()->first;
        close(key, {}, events);
    }
    return events;
}

std::optional<SipCalls::Found> SipCalls::find(const std::string& cstaId) const {
    for (const auto& [key, call] : m_calls) {
        if (call.call.id() == cstaId) {
            return foundAs(key, call);
        }
    }
    return std::nullopt;
}

SipCalls::Found SipCalls::foundAs(const Key& key, const Call& call) {
    return {.sipId = key.first,
            .outgoing = key.second,
            .isRinging = !key.second && call.state == State::eRinging};
}

std::optional<SipCalls::Found> SipCalls::heldFor(const Found& accepted) const {
    std::optional<Found> held;
    for (const auto& [key, call] : m_calls) {
        const Found each = foundAs(key, call);
        if (key == Key{accepted.sipId, accepted.outgoing}) {
            continue;
        }
        if (call.state == State::eTalking && !call.held) {
            return each;
        }
        if (call.state == State::eTalking || (each.isRinging && !held)) {
            held = each;
        }
    }
    return held;
}

std::vector<LiveCall> SipCalls::live() const {
    std::vector<LiveCall> calls;
    for (const auto& [key, call] : m_calls) {
        calls.push_back(call.call.live());
    }
    return calls;
}

SipCalls::Side SipCalls::ownSide(const Key& key) noexcept {
    return key.second ? Side::eCaller : Side::eCalled;
}

SipCalls::Call& SipCalls::callOf(const SipPhoneEvent& event, const std::string& initiated,
                                 SwitchEvents& events) {
    const Key key{event.id, event.outgoing};
    const auto found = m_calls.find(key);
    if (found != m_calls.end()) {
        found->second.doubtful = false;
        return found->second;
    }
    const SwitchParty peer = named(partyOf(event.peerUri, event.peerName));
    const std::string id = cstaCallId(event.id, event.outgoing);
    SwitchCall call =
        event.outgoing ? SwitchCall(id, m_own, peer, {}, {}) : SwitchCall(id, peer, m_own, {}, {});
    append(events, call.originate(initiated));
    return m_calls.emplace(key, Call{.call = std::move(call)}).first->second;
}

/// The telephone has no name for a call that it places. A caller has given one.
SwitchParty SipCalls::named(SwitchParty peer) {
    if (peer.name.empty()) {
        const auto known = m_names.find(peer.number);
        peer.name = known == m_names.end() ? std::string() : known->second;
    } else {
        if (m_names.size() >= kMostNames) {
            m_names.clear();
        }
        m_names[peer.number] = peer.name;
    }
    return peer;
}

void SipCalls::ring(const Key& /*key*/, Call& call, SwitchEvents& events) const {
    if (call.state == State::eDialling) {
        call.state = State::eRinging;
        append(events, {call.call.ring()});
    }
}

void SipCalls::establish(const Key& key, Call& call, SwitchEvents& events) {
    if (call.state == State::eTalking) {
        return;
    }
    if (!key.second) {
        ring(key, call, events);
        holdOthers(key, events);
    }
    call.state = State::eTalking;
    append(events, {call.call.answerCall()});
}

void SipCalls::close(const Key& key, const std::string& reason, SwitchEvents& events) {
    const auto found = m_calls.find(key);
    if (found == m_calls.end()) {
        return;
    }
    Call call = std::move(found->second);
    m_calls.erase(found);
    const CallEnd end = readCallEnd(reason);
    const bool talked = call.state == State::eTalking;
    if (end.by == CallEnd::By::eFailure && key.second && !talked) {
        append(events, call.call.fail(end.cause));
    } else {
        const bool byPeer = end.by == CallEnd::By::ePeer;
        append(events, call.call.hangUp(byPeer ? SwitchCall::other(ownSide(key)) : ownSide(key),
                                        talked ? "normalClearing" : end.cause));
    }
    if (talked && !call.held) {
        retrieveLast(events);
    }
}

void SipCalls::holdOthers(const Key& key, SwitchEvents& events) {
    for (auto& [other, call] : m_calls) {
        if (other != key && call.state == State::eTalking && !call.held) {
            call.held = true;
            append(events, {call.call.hold(ownSide(other), "normal")});
        }
    }
}

/// With several held calls it is not known which one the telephone takes back.
void SipCalls::retrieveLast(SwitchEvents& events) {
    const auto isHeld = [](const auto& each) { return each.second.held; };
    if (std::count_if(m_calls.begin(), m_calls.end(), isHeld) == 1) {
        const auto held = std::find_if(m_calls.begin(), m_calls.end(), isHeld);
        held->second.held = false;
        append(events, {held->second.call.retrieve(ownSide(held->first))});
    }
}

void SipCalls::append(SwitchEvents& events, SwitchEvents added) const {
    for (SwitchEvent& event : added) {
        // A call to oneself has the own device twice.
        const auto own = std::find_if(event.listeners.begin(), event.listeners.end(),
                                      [this](const auto& each) { return each.device == m_own.number; });
        if (own != event.listeners.end()) {
            event.listeners = {*own};
            events.push_back(std::move(event));
        }
    }
}

}  // namespace host
