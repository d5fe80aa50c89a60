#include "host/management/AgentHandle.h"

namespace host {

bool AgentHandle::enter() {
    const std::lock_guard lock(m_mutex);
    if (!m_closed) {
        m_inside.push_back(std::this_thread::get_id());
    }
    return !m_closed;
}

void AgentHandle::leave() {
    {
        const std::lock_guard lock(m_mutex);
        m_inside.erase(std::find(m_inside.begin(), m_inside.end(), std::this_thread::get_id()));
    }
    m_left.notify_all();
}

void AgentHandle::close() {
    std::unique_lock lock(m_mutex);
    m_closed = true;
    m_left.wait(lock, [this] {
        return std::all_of(m_inside.begin(), m_inside.end(),
                           [](std::thread::id each) { return each == std::this_thread::get_id(); });
    });
}

}  // namespace host
