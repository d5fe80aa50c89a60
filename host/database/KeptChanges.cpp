#include "host/database/KeptChanges.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "host/database/DatabaseFailure.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

constexpr int kManyFailures = 5;
constexpr std::chrono::seconds kLong{5};

}  // namespace

void DatabaseChange::finish(bool stored) const noexcept {
    if (done) {
        if (const auto failure = DatabaseFailure::of([&] { done(stored); })) {
            logAppUni("Database", __FILE_NAME__, 2, __LINE__, "what follows %s failed: %s", what.c_str(),
                      failure->text.c_str());
        }
    }
}

bool KeptChanges::add(std::shared_ptr<DatabaseChange> change) {
    const std::lock_guard lock(m_mutex);
    return append(change);
}

std::optional<bool> KeptChanges::addBehindOthers(const std::shared_ptr<DatabaseChange>& change) {
    const std::lock_guard lock(m_mutex);
    return m_changes.empty() ? std::nullopt : std::optional(append(change));
}

/// Requires: m_mutex is held.
bool KeptChanges::append(const std::shared_ptr<DatabaseChange>& change) {
    if (m_changes.size() >= kMostChanges || change->bytes > kMostBytes - m_bytes) {
        return false;
    }
    if (change->keep) {
        change->keep();
    }
    m_changes.push_back({.change = change});
    m_bytes += change->bytes;
    return true;
}

std::size_t KeptChanges::size() const {
    const std::lock_guard lock(m_mutex);
    return m_changes.size();
}

std::size_t KeptChanges::calls() const {
    const std::lock_guard lock(m_mutex);
    return std::accumulate(m_changes.begin(), m_changes.end(), std::size_t{0},
                           [](std::size_t sum, const Kept& each) { return sum + each.change->calls; });
}

std::uint64_t KeptChanges::lost() const {
    const std::lock_guard lock(m_mutex);
    return m_lost;
}

std::uint64_t KeptChanges::lostCalls() const {
    const std::lock_guard lock(m_mutex);
    return m_lostCalls;
}

void KeptChanges::countLost(const DatabaseChange& change) {
    const std::lock_guard lock(m_mutex);
    ++m_lost;
    m_lostCalls += change.calls;
}

std::deque<KeptChanges::Kept> KeptChanges::first(std::size_t count) const {
    const std::lock_guard lock(m_mutex);
    const auto number = static_cast<std::ptrdiff_t>(std::min(count, m_changes.size()));
    return {m_changes.begin(), m_changes.begin() + number};
}

bool KeptChanges::noteFailure(bool mayBeOfChange) {
    const std::lock_guard lock(m_mutex);
    if (m_changes.empty()) {
        return false;
    }
    if (!mayBeOfChange) {
        m_changes.front().failures = 0;
        return false;
    }
    Kept& first = m_changes.front();
    const auto now = std::chrono::steady_clock::now();
    if (first.failures++ == 0) {
        first.firstFailure = now;
    }
    return isHopeless(first);
}

bool KeptChanges::isHopelessAndAlone() const {
    const std::lock_guard lock(m_mutex);
    return m_changes.size() == 1 && isHopeless(m_changes.front());
}

bool KeptChanges::isHopeless(const Kept& kept) {
    return kept.failures >= kManyFailures && std::chrono::steady_clock::now() - kept.firstFailure >= kLong;
}

void KeptChanges::remove(std::size_t index, bool isLost) {
    const std::lock_guard lock(m_mutex);
    const auto at = m_changes.begin() + static_cast<std::ptrdiff_t>(index);
    m_bytes -= at->change->bytes;
    if (isLost) {
        ++m_lost;
        m_lostCalls += at->change->calls;
    }
    m_changes.erase(at);
}

}  // namespace host
