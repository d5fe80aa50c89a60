#include "host/call-import/ImportSession.h"

#include <random>

namespace host {

ImportSession::ImportSession(StoredEntries& entries, std::chrono::milliseconds patience)
    : m_patience(patience),
      m_import(entries),
      m_thread([this](const std::stop_token& stop) { endAbandoned(stop); }) {}

ImportSession::Response ImportSession::add(const Request& request) {
    const std::lock_guard lock(m_mutex);
    if (!m_open.empty() && request.import != m_open) {
        return {Outcome::eOtherImport};
    }
    const auto counts = m_import.add(request.calls, request.unviewed);
    if (request.isLast || !counts) {
        m_import.finish();
        m_open.clear();
    } else {
        m_import.publish();
        if (m_open.empty()) {
            m_open = std::to_string(std::random_device()());
        }
    }
    ++m_requests;
    m_changed.notify_all();
    return counts ? Response{Outcome::eDone, *counts, m_open} : Response{};
}

void ImportSession::stop() {
    m_thread.request_stop();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void ImportSession::endAbandoned(const std::stop_token& stop) {
    std::unique_lock lock(m_mutex);
    while (m_changed.wait(lock, stop, [this] { return !m_open.empty(); }) && !stop.stop_requested()) {
        const std::uint64_t requests = m_requests;
        const bool goesOn =
            m_changed.wait_for(lock, stop, m_patience, [&] { return m_requests != requests; });
        if (!goesOn && !stop.stop_requested()) {
            m_import.finish();
            m_open.clear();
        }
    }
}

}  // namespace host
