#include "host/csta/EventsBeforeMonitorStart.h"

#include <utility>

namespace host {

void EventsBeforeMonitorStart::keep(std::string crossRefId, WireDocument event, Clock::time_point now) {
    dropExpired(now);
    if (m_events.size() == kMaxEvents) {
        m_events.pop_front();
    }
    m_events.push_back({std::move(crossRefId), std::move(event), now});
}

std::vector<WireDocument> EventsBeforeMonitorStart::take(std::string_view crossRefId, Clock::time_point now) {
    dropExpired(now);
    std::vector<WireDocument> taken;
    std::deque<BufferedEvent> others;
    for (BufferedEvent& early : m_events) {
        if (early.crossRefId == crossRefId) {
            taken.push_back(std::move(early.event));
        } else {
            others.push_back(std::move(early));
        }
    }
    m_events = std::move(others);
    return taken;
}

void EventsBeforeMonitorStart::dropExpired(Clock::time_point now) {
    while (!m_events.empty() && now - m_events.front().since > kMaxAge) {
        m_events.pop_front();
    }
}

}  // namespace host
