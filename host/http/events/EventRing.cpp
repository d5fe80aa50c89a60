#include "host/http/events/EventRing.h"

#include <charconv>

namespace host {

void EventRing::append(const std::string& event, const std::string& data) {
    m_events.push_back("id: " + idAt(end() + 1) + "\nevent: " + event + "\ndata: " + data + "\n\n");
    m_bytes += m_events.back().size();
    while (m_events.size() > m_limits.events || (m_bytes > m_limits.bytes && m_events.size() > 1)) {
        m_bytes -= m_events.front().size();
        m_events.pop_front();
        ++m_first;
    }
}

void EventRing::forget() {
    m_first = end() + 1;
    m_events.clear();
    m_bytes = 0;
}

std::string EventRing::idAt(std::uint64_t position) const {
    return m_mark + "-" + std::to_string(position);
}

std::optional<std::uint64_t> EventRing::positionOf(const std::string& id) const {
    const std::string prefix = m_mark + "-";
    if (id.compare(0, prefix.size(), prefix) != 0) {
        return std::nullopt;
    }
    std::uint64_t position = 0;
    const char* const last = id.data() + id.size();
    const auto result = std::from_chars(id.data() + prefix.size(), last, position);
    if (result.ec != std::errc{} || result.ptr != last || position < m_first || position > end()) {
        return std::nullopt;
    }
    return position;
}

std::optional<EventRing::Batch> EventRing::from(std::uint64_t position, std::size_t maxBytes) const {
    if (position < m_first) {
        return std::nullopt;
    }
    Batch batch;
    batch.next = position;
    while (batch.next < end()) {
        const std::string& event = m_events[static_cast<std::size_t>(batch.next - m_first)];
        if (!batch.text.empty() && batch.text.size() + event.size() > maxBytes) {
            break;
        }
        batch.text += event;
        ++batch.next;
    }
    return batch;
}

}  // namespace host
