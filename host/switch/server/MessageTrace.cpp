#include "host/switch/server/MessageTrace.h"

#include <algorithm>
#include <utility>

namespace host {

void MessageTrace::add(SwitchLogEntry entry) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_entries.size() == kKept) {
            m_entries.pop_front();
        }
        m_entries.push_back(std::move(entry));
    }
    m_added.notify_all();
}

std::vector<SwitchLogEntry> MessageTrace::entries() const {
    const std::lock_guard lock(m_mutex);
    return {m_entries.begin(), m_entries.end()};
}

std::size_t MessageTrace::count(SwitchLogEntry::Direction direction, const std::string& name) const {
    const std::lock_guard lock(m_mutex);
    return countLocked(direction, name);
}

bool MessageTrace::await(SwitchLogEntry::Direction direction, const std::string& name, std::size_t number,
                         std::chrono::milliseconds limit) const {
    std::unique_lock lock(m_mutex);
    return m_added.wait_for(lock, limit, [&] { return countLocked(direction, name) >= number; });
}

std::size_t MessageTrace::countLocked(SwitchLogEntry::Direction direction, const std::string& name) const {
    return static_cast<std::size_t>(std::count_if(
        m_entries.begin(), m_entries.end(),
        [&](const SwitchLogEntry& entry) { return entry.direction == direction && entry.name == name; }));
}

}  // namespace host
