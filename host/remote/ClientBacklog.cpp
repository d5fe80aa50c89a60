#include "host/remote/ClientBacklog.h"

#include <utility>

namespace host {

ClientBacklog::Added ClientBacklog::addNotification(std::string frame) {
    const std::size_t bytes = frame.size();
    return add({.frame = std::move(frame), .counted = bytes});
}

ClientBacklog::Added ClientBacklog::addResponse(std::string frame) {
    return add({.frame = std::move(frame), .counted = 0});
}

ClientBacklog::Added ClientBacklog::add(Waiting waiting) {
    const std::lock_guard lock(m_mutex);
    if (m_closed) {
        return Added::eClosed;
    }
    // A frame of any length is queued if no other waits.
    if (m_bytes > 0 && m_bytes + waiting.counted > m_maxBytes) {
        m_closed = true;
        m_waiting.clear();
        return Added::eOverflow;
    }
    m_bytes += waiting.counted;
    m_waiting.push_back(std::move(waiting));
    return std::exchange(m_writing, true) ? Added::eQueued : Added::eWakeUp;
}

std::optional<std::string> ClientBacklog::take() {
    const std::lock_guard lock(m_mutex);
    m_writing = !m_waiting.empty();
    if (!m_writing) {
        return std::nullopt;
    }
    Waiting next = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_bytes -= next.counted;
    return std::move(next.frame);
}

void ClientBacklog::close() {
    const std::lock_guard lock(m_mutex);
    m_closed = true;
    m_waiting.clear();
}

}  // namespace host
