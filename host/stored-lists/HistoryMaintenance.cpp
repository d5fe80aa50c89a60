#include "host/stored-lists/HistoryMaintenance.h"

#include <chrono>

namespace host {
namespace {

constexpr std::chrono::hours kBetweenRetentions{1};

}  // namespace

void HistoryMaintenance::start() {
    if (m_retention.isOn()) {
        m_strand.post([this] { applyRetention(); });
    }
}

void HistoryMaintenance::stop() {
    m_strand.post([this] { m_nextRetention.reset(); });
    m_strand.close();
}

void HistoryMaintenance::applyRetention() {
    m_retention.apply(std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()));
    m_nextRetention = m_timers.schedule(
        kBetweenRetentions, [this, post = m_strand.weakPoster()] { post([this] { applyRetention(); }); });
}

void HistoryMaintenance::phonebookChanged() {
    if (!m_isRenaming.exchange(true)) {
        m_strand.post([this] {
            m_isRenaming = false;
            rename();
        });
    }
}

void HistoryMaintenance::rename() {
    const std::lock_guard lock(m_renameMutex);
    m_names.refresh();
}

}  // namespace host
