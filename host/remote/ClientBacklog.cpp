#include "host/remote/ClientBacklog.h"

#include <utility>

namespace host {

ClientBacklog::Added ClientBacklog::addNotification(Frame frame) {
    const std::size_t bytes = frame->size();
    return add({.frame = std::move(frame), .counted = bytes});
}

ClientBacklog::Added ClientBacklog::addResponse(Frame frame) {
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

bool ClientBacklog::take(Batch& batch) {
    batch.frames.clear();
    batch.hasResponse = false;
    const std::lock_guard lock(m_mutex);
    m_writing = !m_waiting.empty();
    std::size_t bytes = 0;
    while (!m_waiting.empty() && !batch.hasResponse && batch.frames.size() < kBatchFrames) {
        Waiting& next = m_waiting.front();
        bytes += next.frame->size();
        if (!batch.frames.empty() && bytes > kBatchBytes) {
            break;
        }
        batch.hasResponse = next.counted == 0;
        m_bytes -= next.counted;
        batch.frames.push_back(std::move(next.frame));
        m_waiting.pop_front();
    }
    return m_writing;
}

void ClientBacklog::close() {
    const std::lock_guard lock(m_mutex);
    m_closed = true;
    m_waiting.clear();
}

}  // namespace host
