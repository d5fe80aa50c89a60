#include "host/management/AgentHandle.h"

namespace host {

bool AgentHandle::beginCall() {
    const std::lock_guard lock(m_mutex);
    if (!m_closed) {
        m_activeCalls.push_back(std::this_thread::get_id());
    }
    return !m_closed;
}

void AgentHandle::endCall() {
    {
        const std::lock_guard lock(m_mutex);
        m_activeCalls.erase(
            std::find(m_activeCalls.begin(), m_activeCalls.end(), std::this_thread::get_id()));
    }
    m_callEnded.notify_all();
}

void AgentHandle::close() {
    std::unique_lock lock(m_mutex);
    m_closed = true;
    m_callEnded.wait(lock, [this] {
        return std::all_of(m_activeCalls.begin(), m_activeCalls.end(),
                           [](std::thread::id each) { return each == std::this_thread::get_id(); });
    });
}

}  // namespace host
