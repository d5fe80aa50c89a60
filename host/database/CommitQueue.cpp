#include "host/database/CommitQueue.h"

#include <algorithm>
#include <utility>

namespace host {

CommitQueue::Waiting::State CommitQueue::Waiting::wait() {
    std::unique_lock lock(m_mutex);
    m_wake.wait(lock, [this] { return m_state != State::eWaits; });
    return m_state;
}

/// Notifies under the lock: then the thread may destroy the object.
void CommitQueue::Waiting::wake(State state) noexcept {
    const std::lock_guard lock(m_mutex);
    m_state = state;
    m_wake.notify_one();
}

CommitQueue::CommitQueue(std::mutex& commits, std::function<void(Group)> commit)
    : m_commits(commits), m_commit(std::move(commit)) {
    m_group.reserve(kMost);
}

void CommitQueue::commit(Waiting& waiting) {
    if (!append(waiting) && waiting.wait() == Waiting::State::eIsDone) {
        return;
    }
    {
        const std::lock_guard commits(m_commits);
        takeGroup();
        m_commit(m_group);
    }
    finishGroup(waiting);
}

std::size_t CommitQueue::size() const {
    const std::lock_guard lock(m_mutex);
    return m_size;
}

/// Returns true if its thread leads.
bool CommitQueue::append(Waiting& waiting) noexcept {
    const std::lock_guard lock(m_mutex);
    (m_last == nullptr ? m_first : m_last->m_next) = &waiting;
    m_last = &waiting;
    ++m_size;
    return !std::exchange(m_hasLeader, true);
}

bool CommitQueue::isTaken(const void* line) const noexcept {
    return line != nullptr && std::any_of(m_group.begin(), m_group.end(), [line](const Waiting* each) {
               return each->m_change->line == line;
           });
}

/// Leaves the changes of a line after its first one, in their order.
void CommitQueue::takeGroup() noexcept {
    const std::lock_guard lock(m_mutex);
    Waiting* left = nullptr;
    for (Waiting** next = &m_first; *next != nullptr;) {
        Waiting* const each = *next;
        if (m_group.size() < kMost && !isTaken(each->m_change->line)) {
            m_group.push_back(each);
            *next = each->m_next;
        } else {
            left = each;
            next = &each->m_next;
        }
    }
    m_last = left;
    m_size -= m_group.size();
}

void CommitQueue::finishGroup(const Waiting& leader) noexcept {
    for (Waiting* const each : m_group) {
        if (each != &leader) {
            each->wake(Waiting::State::eIsDone);
        }
    }
    m_group.clear();
    const std::lock_guard lock(m_mutex);
    m_hasLeader = m_first != nullptr;
    if (m_hasLeader) {
        m_first->wake(Waiting::State::eLeads);
    }
}

}  // namespace host
