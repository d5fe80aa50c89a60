#include "host/switch/SimulatedCall.h"

#include <utility>

namespace host {

SimulatedCall::SimulatedCall(std::string callId, Party caller, Party called, Party redirectedFrom,
                             std::string redirectWord)
    : m_callId(std::move(callId)),
      m_ends{End{std::move(caller), "null"}, End{std::move(called), "null"}},
      m_firstCalled(redirectedFrom.number.empty() ? m_ends[1].party : redirectedFrom),
      m_redirectedFrom(std::move(redirectedFrom)),
      m_redirectWord(std::move(redirectWord)) {}

SimulatedCall::Occurrences SimulatedCall::originate(bool byHand) {
    Occurrences heard;
    End& caller = end(Side::eCaller);
    if (byHand) {
        caller.state = "initiated";
        heard.push_back(occurrence(WireEvent::eServiceInitiated, caller.party, "makeCall"));
    }
    caller.state = "connected";
    heard.push_back(occurrence(WireEvent::eOriginated, caller.party, "newCall"));
    return heard;
}

SimulatedCall::Occurrences SimulatedCall::ring() {
    end(Side::eCalled).state = "alerting";
    return {occurrence(WireEvent::eDelivered, end(Side::eCalled).party,
                       m_redirectWord.empty() ? "newCall" : m_redirectWord)};
}

SimulatedCall::Occurrences SimulatedCall::answer() {
    end(Side::eCalled).state = "connected";
    return {occurrence(WireEvent::eEstablished, end(Side::eCalled).party, "newCall")};
}

SimulatedCall::Occurrences SimulatedCall::hold(Side by) {
    end(by).state = "hold";
    return {occurrence(WireEvent::eHeld, end(by).party, "normal")};
}

SimulatedCall::Occurrences SimulatedCall::retrieve(Side by) {
    end(by).state = "connected";
    return {occurrence(WireEvent::eRetrieved, end(by).party, "normal")};
}

SimulatedCall::Occurrences SimulatedCall::hangUp(Side first, const std::string& cause) {
    const Party releasing = end(first).party;
    Occurrences heard;
    for (const Side side : {first, other(first)}) {
        if (end(side).state != "null") {
            heard.push_back(clear(side, releasing, cause));
        }
    }
    return heard;
}

SimulatedCall::Occurrences SimulatedCall::busy() {
    Occurrences heard = {occurrence(WireEvent::eFailed, end(Side::eCalled).party, "busy")};
    heard.push_back(clear(Side::eCaller, end(Side::eCaller).party, "normalClearing"));
    return heard;
}

SimulatedCall::Occurrences SimulatedCall::divert(const Party& to, const std::string& word) {
    const Party diverting = end(Side::eCalled).party;
    CallOccurrence diverted = occurrence(WireEvent::eDiverted, diverting, word);
    diverted.newDestination = to;
    // The diverting phone hears of it even when it never rang.
    diverted.listeners = {{end(Side::eCaller).party.number, end(Side::eCaller).state},
                          {diverting.number, "null"}};

    end(Side::eCalled) = End{to, "null"};
    m_redirectedFrom = diverting;
    m_redirectWord = word;
    Occurrences heard = {std::move(diverted)};
    Occurrences after = word == "callPickup" ? answer() : ring();
    if (word == "callPickup") {
        after.front().cause = word;
    }
    heard.push_back(std::move(after.front()));
    return heard;
}

SimulatedCall::Occurrences SimulatedCall::answerElsewhere() {
    return {clear(Side::eCalled, end(Side::eCalled).party, "multipleAlerting")};
}

SimulatedCall::Side SimulatedCall::other(Side side) noexcept {
    return side == Side::eCaller ? Side::eCalled : Side::eCaller;
}

CallOccurrence SimulatedCall::occurrence(WireEvent event, const Party& subject,
                                         const std::string& cause) const {
    CallOccurrence heard;
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

CallOccurrence SimulatedCall::clear(Side side, const Party& releasing, const std::string& cause) {
    CallOccurrence heard = occurrence(WireEvent::eConnectionCleared, end(side).party, cause);
    heard.device = releasing;
    for (CallOccurrence::Listener& listener : heard.listeners) {
        if (listener.device == end(side).party.number) {
            listener.localConnection = "null";
        }
    }
    end(side).state = "null";
    return heard;
}

}  // namespace host
