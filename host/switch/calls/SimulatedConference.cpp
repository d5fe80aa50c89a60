#include "host/switch/calls/SimulatedConference.h"

#include <algorithm>
#include <utility>

namespace host {

SimulatedConference::SimulatedConference(std::string callId, std::vector<SimulatedParty> members)
    : m_callId(std::move(callId)), m_members(std::move(members)) {}

SimulatedEvents SimulatedConference::leave(const SimulatedParty& who) {
    const auto member = std::find_if(m_members.begin(), m_members.end(),
                                     [&who](const SimulatedParty& one) { return isSameDevice(one, who); });
    if (member == m_members.end()) {
        return {};
    }
    const SimulatedParty leaving = *member;
    SimulatedEvents events = {clear(leaving, leaving)};
    if (m_members.size() == 1) {
        events.push_back(clear(SimulatedParty(m_members.front()), leaving));
    }
    return events;
}

SimulatedEvents SimulatedConference::hangUp(const SimulatedParty& first) {
    SimulatedEvents events = leave(first);
    while (!m_members.empty()) {
        events.push_back(clear(SimulatedParty(m_members.front()), first));
    }
    return events;
}

LiveCall SimulatedConference::live() const {
    LiveCall call{.callId = m_callId, .calling = {}, .called = {}, .connections = {}};
    for (const SimulatedParty& member : m_members) {
        call.connections.push_back({member, "connected"});
    }
    return call;
}

SimulatedEvent SimulatedConference::clear(const SimulatedParty& leaving, const SimulatedParty& releasing) {
    SimulatedEvent event;
    event.type = WireEvent::eConnectionCleared;
    event.callId = m_callId;
    event.subject = leaving;
    event.device = releasing;
    event.cause = "normalClearing";
    for (const SimulatedParty& member : m_members) {
        event.listeners.push_back({member.number, isSameDevice(member, leaving) ? "null" : "connected"});
    }
    m_members.erase(
        std::remove_if(m_members.begin(), m_members.end(),
                       [&leaving](const SimulatedParty& member) { return isSameDevice(member, leaving); }),
        m_members.end());
    return event;
}

}  // namespace host
