#include "host/switch/calls/SwitchConference.h"

#include <algorithm>
#include <utility>

namespace host {

SwitchConference::SwitchConference(std::string callId, std::vector<SwitchParty> members)
    : m_callId(std::move(callId)), m_members(std::move(members)) {}

SwitchEvents SwitchConference::leave(const SwitchParty& who) {
    const auto member = std::find_if(m_members.begin(), m_members.end(),
                                     [&who](const SwitchParty& one) { return isSameDevice(one, who); });
    if (member == m_members.end()) {
        return {};
    }
    const SwitchParty leaving = *member;
    SwitchEvents events = {clear(leaving, leaving)};
    if (m_members.size() == 1) {
        events.push_back(clear(SwitchParty(m_members.front()), leaving));
    }
    return events;
}

SwitchEvents SwitchConference::hangUp(const SwitchParty& first) {
    SwitchEvents events = leave(first);
    while (!m_members.empty()) {
        events.push_back(clear(SwitchParty(m_members.front()), first));
    }
    return events;
}

LiveCall SwitchConference::live() const {
    LiveCall call{.callId = m_callId, .calling = {}, .called = {}, .connections = {}};
    for (const SwitchParty& member : m_members) {
        call.connections.push_back({member, "connected"});
    }
    return call;
}

SwitchEvent SwitchConference::clear(const SwitchParty& leaving, const SwitchParty& releasing) {
    SwitchEvent event;
    event.type = WireEvent::eConnectionCleared;
    event.callId = m_callId;
    event.subject = leaving;
    event.device = releasing;
    event.cause = "normalClearing";
    for (const SwitchParty& member : m_members) {
        event.listeners.push_back({member.number, isSameDevice(member, leaving) ? "null" : "connected"});
    }
    m_members.erase(
        std::remove_if(m_members.begin(), m_members.end(),
                       [&leaving](const SwitchParty& member) { return isSameDevice(member, leaving); }),
        m_members.end());
    return event;
}

}  // namespace host
