#include "host/call-import/ImportSession.h"

#include <random>

namespace host {

ImportSession::ImportSession(StoredEntries& entries, std::chrono::milliseconds patience)
    : m_patience(patience), m_import(entries) {}

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
    if (m_watching) {
        m_changed.notify_all();
    } else if (!m_open.empty()) {
        watch();
    }
    return counts ? Response{Outcome::eDone, *counts, m_open} : Response{};
}

void ImportSession::stop() {
    m_watcher.request_stop();
    if (m_watcher.joinable()) {
        m_watcher.join();
    }
}

/// Call with the lock. The former thread, if any, needs it no more.
void ImportSession::watch() {
    m_watching = true;
    m_watcher = std::jthread([this](const std::stop_token& stop) { endAbandoned(stop); });
}

void ImportSession::endAbandoned(const std::stop_token& stop) {
    std::unique_lock lock(m_mutex);
    while (!m_open.empty() && !stop.stop_requested()) {
        const std::uint64_t requests = m_requests;
        const bool goesOn =
            m_changed.wait_for(lock, stop, m_patience, [&] { return m_requests != requests; });
        if (!goesOn && !stop.stop_requested()) {
            m_import.finish();
            m_open.clear();
        }
    }
    m_watching = false;
}

}  // namespace host
