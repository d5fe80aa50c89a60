#include "host/switch/calls/SimulatedCall.h"

#include <utility>

namespace host {

SimulatedCall::SimulatedCall(std::string callId, Party caller, Party called, Party redirectedFrom,
                             std::string redirectWord)
    : m_callId(std::move(callId)),
      m_ends{End{std::move(caller), "null"}, End{std::move(called), "null"}},
      m_firstCalled(redirectedFrom.number.empty() ? m_ends[1].party : redirectedFrom),
      m_redirectedFrom(std::move(redirectedFrom)),
      m_redirectWord(std::move(redirectWord)) {}

SimulatedCall SimulatedCall::transferred(std::string callId, const End& caller, const End& called) {
    SimulatedCall call(std::move(callId), caller.party, called.party, {}, {});
    call.m_ends = {caller, called};
    call.m_transferred = true;
    return call;
}

CallOccurrences SimulatedCall::originate(const std::string& initiated) {
    CallOccurrences heard;
    End& caller = end(Side::eCaller);
    if (!initiated.empty()) {
        caller.state = "initiated";
        heard.push_back(occurrence(WireEvent::eServiceInitiated, caller.party, initiated));
    }
    caller.state = "connected";
    heard.push_back(occurrence(WireEvent::eOriginated, caller.party, "newCall"));
    return heard;
}

SimulatedEvent SimulatedCall::ring() {
    end(Side::eCalled).state = "alerting";
    const std::string usual = m_transferred ? "singleStepTransfer" : "newCall";
    return setUp(WireEvent::eDelivered, m_redirectWord.empty() ? usual : m_redirectWord);
}

SimulatedEvent SimulatedCall::answer() {
    end(Side::eCalled).state = "connected";
    return setUp(WireEvent::eEstablished, "newCall");
}

SimulatedEvent SimulatedCall::hold(Side by, const std::string& cause) {
    end(by).state = "hold";
    return occurrence(WireEvent::eHeld, end(by).party, cause);
}

SimulatedEvent SimulatedCall::retrieve(Side by) {
    end(by).state = "connected";
    return occurrence(WireEvent::eRetrieved, end(by).party, "normal");
}

SimulatedEvent SimulatedCall::leave(Side by) {
    return clear(by, end(by).party, "normalClearing");
}

CallOccurrences SimulatedCall::hangUp(Side first, const std::string& cause) {
    const Party releasing = party(first);
    CallOccurrences heard;
    for (const Side side : {first, other(first)}) {
        if (end(side).state != "null") {
            heard.push_back(clear(side, releasing, cause));
        }
    }
    return heard;
}

CallOccurrences SimulatedCall::busy() {
    CallOccurrences heard = {setUp(WireEvent::eFailed, "busy")};
    heard.push_back(clear(Side::eCaller, end(Side::eCaller).party, "normalClearing"));
    return heard;
}

CallOccurrences SimulatedCall::divert(const Party& to, const std::string& word) {
    const Party diverting = end(Side::eCalled).party;
    SimulatedEvent diverted = occurrence(WireEvent::eDiverted, diverting, word);
    diverted.newDestination = to;
    // The diverting phone hears of it even when it never rang.
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
    CallOccurrences heard = {std::move(diverted)};
    heard.push_back(word == "callPickup" ? answer() : ring());
    heard.back().cause = word;
    return heard;
}

SimulatedEvent SimulatedCall::answerElsewhere() {
    return clear(Side::eCalled, end(Side::eCalled).party, "multipleAlerting");
}

SimulatedEvent SimulatedCall::markMissed() const {
    SimulatedEvent heard = information(Side::eCalled);
    heard.privateText = "MissedCall";
    return heard;
}

SimulatedEvent SimulatedCall::tellName(Side learner, const std::string& name) {
    Party& party = end(other(learner)).party;
    party.name = name;
    if (isSameDevice(m_firstCalled, party)) {
        m_firstCalled.name = name;
    }
    return information(learner);
}

SimulatedCall::Side SimulatedCall::other(Side side) noexcept {
    return side == Side::eCaller ? Side::eCalled : Side::eCaller;
}

SimulatedEvent SimulatedCall::occurrence(WireEvent event, const Party& subject,
                                         const std::string& cause) const {
    SimulatedEvent heard;
    heard.event = event;
    heard.callId = m_callId;
    heard.subject = subject;
    heard.device = subject;
    heard.calling = end(Side::eCaller).party;
    heard.called = m_firstCalled;
    heard.redirectedFrom = m_redirectedFrom;
    heard.cause = cause;
    for (const End& listener : m_ends) {
        if (listener.state != "null") {
            heard.listeners.push_back({listener.party.number, listener.state});
        }
    }
    return heard;
}

SimulatedEvent SimulatedCall::setUp(WireEvent event, const std::string& cause) const {
    SimulatedEvent heard = occurrence(event, end(Side::eCalled).party, cause);
    if (m_transferred) {
        heard.listeners.erase(heard.listeners.begin());
    }
    return heard;
}

SimulatedEvent SimulatedCall::information(Side told) const {
    SimulatedEvent heard;
    heard.event = WireEvent::eCallInformation;
    heard.callId = m_callId;
    heard.subject = end(told).party;
    heard.device = heard.subject;
    heard.calling = end(other(told)).party;
    heard.listeners = {{heard.subject.number, end(told).state}};
    return heard;
}

SimulatedEvent SimulatedCall::clear(Side side, const Party& releasing, const std::string& cause) {
    SimulatedEvent heard = occurrence(WireEvent::eConnectionCleared, end(side).party, cause);
    heard.device = releasing;
    for (SimulatedEvent::Listener& listener : heard.listeners) {
        if (listener.device == end(side).party.number) {
            listener.localConnection = "null";
        }
    }
    end(side).state = "null";
    return heard;
}

}  // namespace host
