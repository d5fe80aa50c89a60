#include "host/switch/calls/SwitchCall.h"

#include <utility>

#include "host/csta-wire/DeviceText.h"

namespace host {

SwitchCall::SwitchCall(std::string callId, SwitchParty caller, SwitchParty called, SwitchParty redirectedFrom,
                       std::string redirectWord)
    : m_callId(std::move(callId)),
      m_ends{End{std::move(caller), "null"}, End{std::move(called), "null"}},
      m_firstCalled(redirectedFrom.number.empty() ? m_ends[1].party : redirectedFrom),
      m_redirectedFrom(std::move(redirectedFrom)),
      m_redirectWord(std::move(redirectWord)) {}

SwitchCall SwitchCall::transferred(std::string callId, const End& caller, const End& called) {
    SwitchCall call(std::move(callId), caller.party, called.party, {}, {});
    call.m_ends = {caller, called};
    call.m_transferred = true;
    return call;
}

SwitchEvents SwitchCall::originate(const std::string& initiated) {
    SwitchEvents events;
    End& caller = end(Side::eCaller);
    if (!initiated.empty()) {
        caller.state = "initiated";
        events.push_back(makeEvent(WireEvent::eServiceInitiated, caller.party, initiated));
    }
    caller.state = "connected";
    events.push_back(makeEvent(WireEvent::eOriginated, caller.party, "newCall"));
    return events;
}

SwitchEvent SwitchCall::ring() {
    end(Side::eCalled).state = "alerting";
    const std::string usual = m_transferred ? "singleStepTransfer" : "newCall";
    return setUp(WireEvent::eDelivered, m_redirectWord.empty() ? usual : m_redirectWord);
}

SwitchEvent SwitchCall::answerCall() {
    end(Side::eCalled).state = "connected";
    m_established = true;
    return setUp(WireEvent::eEstablished, "newCall");
}

SwitchEvent SwitchCall::hold(Side by, const std::string& cause) {
    end(by).state = "hold";
    return makeEvent(WireEvent::eHeld, end(by).party, cause);
}

SwitchEvent SwitchCall::retrieve(Side by) {
    end(by).state = "connected";
    return makeEvent(WireEvent::eRetrieved, end(by).party, "normal");
}

SwitchEvent SwitchCall::leave(Side by) {
    return clear(by, end(by).party, "normalClearing");
}

SwitchEvents SwitchCall::hangUp(Side first, const std::string& cause) {
    const SwitchParty releasing = party(first);
    SwitchEvents events;
    for (const Side side : {first, other(first)}) {
        if (end(side).state != "null") {
            events.push_back(clear(side, releasing, cause));
        }
    }
    return events;
}

SwitchEvents SwitchCall::fail(const std::string& cause) {
    SwitchEvents events = {setUp(WireEvent::eFailed, cause)};
    events.push_back(clear(Side::eCaller, end(Side::eCaller).party, "normalClearing"));
    return events;
}

SwitchEvents SwitchCall::divert(const SwitchParty& to, const std::string& word) {
    const SwitchParty diverting = end(Side::eCalled).party;
    SwitchEvent diverted = makeEvent(WireEvent::eDiverted, diverting, word);
    diverted.newDestination = to;
    // The diverting phone receives the event even if it never rang.
    diverted.listeners = {{diverting.number, "null"}};
    if (!m_transferred) {
        diverted.listeners.insert(diverted.listeners.begin(),
                                  {end(Side::eCaller).party.number, end(Side::eCaller).state});
    }

    end(Side::eCalled) = End{to, "null"};
    if (m_firstForwardedTo.number.empty() && word != "callPickup") {
        m_firstForwardedTo = to;
    }
    m_redirectedFrom = diverting;
    m_redirectWord = word;
    SwitchEvents events = {std::move(diverted)};
    events.push_back(word == "callPickup" ? answerCall() : ring());
    events.back().cause = word;
    return events;
}

SwitchEvent SwitchCall::answerElsewhere() {
    return clear(Side::eCalled, end(Side::eCalled).party, "multipleAlerting");
}

SwitchEvent SwitchCall::markMissed() const {
    SwitchEvent event = makeInformation(Side::eCalled);
    event.privateText = "MissedCall";
    return event;
}

SwitchEvent SwitchCall::setName(Side learner, const std::string& name) {
    SwitchParty& party = end(other(learner)).party;
    party.name = name;
    if (isSameDevice(m_firstCalled, party)) {
        m_firstCalled.name = name;
    }
    return makeInformation(learner);
}

std::optional<SwitchCall::Side> SwitchCall::sideOf(std::string_view device) const {
    const std::string number = comparableNumber(device);
    for (const Side side : {Side::eCaller, Side::eCalled}) {
        if (end(side).state != "null" && comparableNumber(end(side).party.number) == number) {
            return side;
        }
    }
    return std::nullopt;
}

LiveCall SwitchCall::live() const {
    LiveCall call{
        .callId = m_callId, .calling = party(Side::eCaller), .called = m_firstCalled, .connections = {}};
    for (const End& one : m_ends) {
        call.connections.push_back({one.party, one.state});
    }
    return call;
}

SwitchCall::Side SwitchCall::other(Side side) noexcept {
    return side == Side::eCaller ? Side::eCalled : Side::eCaller;
}

SwitchEvent SwitchCall::makeEvent(WireEvent type, const SwitchParty& subject,
                                  const std::string& cause) const {
    SwitchEvent event;
    event.type = type;
    event.callId = m_callId;
    event.subject = subject;
    event.device = subject;
    event.calling = end(Side::eCaller).party;
    event.called = m_firstCalled;
    event.redirectedFrom = m_redirectedFrom;
    event.cause = cause;
    for (const End& listener : m_ends) {
        if (listener.state != "null") {
            event.listeners.push_back({listener.party.number, listener.state});
        }
    }
    return event;
}

SwitchEvent SwitchCall::setUp(WireEvent type, const std::string& cause) const {
    SwitchEvent event = makeEvent(type, end(Side::eCalled).party, cause);
    if (m_transferred) {
        event.listeners.erase(event.listeners.begin());
    }
    return event;
}

SwitchEvent SwitchCall::makeInformation(Side informed) const {
    SwitchEvent event;
    event.type = WireEvent::eCallInformation;
    event.callId = m_callId;
    event.subject = end(informed).party;
    event.device = event.subject;
    event.calling = end(other(informed)).party;
    event.listeners = {{event.subject.number, end(informed).state}};
    return event;
}

SwitchEvent SwitchCall::clear(Side side, const SwitchParty& releasing, const std::string& cause) {
    SwitchEvent event = makeEvent(WireEvent::eConnectionCleared, end(side).party, cause);
    event.device = releasing;
    for (SwitchEvent::Listener& listener : event.listeners) {
        if (listener.device == end(side).party.number) {
            listener.localConnection = "null";
        }
    }
    end(side).state = "null";
    return event;
}

}  // namespace host
