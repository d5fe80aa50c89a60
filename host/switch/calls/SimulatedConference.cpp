#include "host/switch/calls/SimulatedConference.h"

#include <algorithm>
#include <utility>

namespace host {

SimulatedConference::SimulatedConference(std::string callId, std::vector<Party> members)
    : m_callId(std::move(callId)), m_members(std::move(members)) {}

CallOccurrences SimulatedConference::leave(const Party& who) {
    const auto member = std::find_if(m_members.begin(), m_members.end(),
                                     [&who](const Party& one) { return isSameDevice(one, who); });
    if (member == m_members.end()) {
        return {};
    }
    const Party leaving = *member;
    CallOccurrences heard = {clear(leaving, leaving)};
    if (m_members.size() == 1) {
        heard.push_back(clear(Party(m_members.front()), leaving));
    }
    return heard;
}

CallOccurrences SimulatedConference::hangUp(const Party& first) {
    CallOccurrences heard = leave(first);
    while (!m_members.empty()) {
        heard.push_back(clear(Party(m_members.front()), first));
    }
    return heard;
}

SimulatedEvent SimulatedConference::clear(const Party& leaving, const Party& releasing) {
    SimulatedEvent heard;
    heard.event = WireEvent::eConnectionCleared;
    heard.callId = m_callId;
    heard.subject = leaving;
    heard.device = releasing;
    heard.cause = "normalClearing";
    for (const Party& member : m_members) {
        heard.listeners.push_back({member.number, isSameDevice(member, leaving) ? "null" : "connected"});
    }
    m_members.erase(std::remove_if(m_members.begin(), m_members.end(),
                                   [&leaving](const Party& member) { return isSameDevice(member, leaving); }),
                    m_members.end());
    return heard;
}

}  // namespace host
