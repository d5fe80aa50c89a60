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

std::optional<ClientBacklog::Batch> ClientBacklog::take() {
    const std::lock_guard lock(m_mutex);
    m_writing = !m_waiting.empty();
    if (!m_writing) {
        return std::nullopt;
    }
    Batch batch;
    while (!m_waiting.empty() && !batch.hasResponse) {
        Waiting& next = m_waiting.front();
        if (!batch.bytes.empty() && batch.bytes.size() + next.frame.size() > kBatchBytes) {
            break;
        }
        batch.hasResponse = next.counted == 0;
        m_bytes -= next.counted;
        if (batch.bytes.empty()) {
            batch.bytes = std::move(next.frame);
        } else {
            batch.bytes += next.frame;
        }
        m_waiting.pop_front();
    }
    return batch;
}

void ClientBacklog::close() {
    const std::lock_guard lock(m_mutex);
    m_closed = true;
    m_waiting.clear();
}

}  // namespace host
