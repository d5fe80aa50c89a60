#include "host/database/CommitQueue.h"

#include <algorithm>
#include <utility>

namespace host {

CommitQueue::CommitQueue(std::mutex& commits, std::function<void(Group)> commit)
    : m_commits(commits), m_commit(std::move(commit)) {
    m_group.reserve(kMost);
}

void CommitQueue::commit(Waiting& waiting) {
    {
        std::unique_lock lock(m_mutex);
        append(waiting);
        if (m_hasLeader) {
            waiting.m_wake.wait(lock, [&] { return waiting.m_isDone || waiting.m_leads; });
            if (waiting.m_isDone) {
                return;
            }
        }
        m_hasLeader = true;
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

/// Requires: m_mutex is held.
void CommitQueue::append(Waiting& waiting) noexcept {
    (m_last == nullptr ? m_first : m_last->m_next) = &waiting;
    m_last = &waiting;
    ++m_size;
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
    // The threads are woken under the lock: they destroy what they wait for.
    const std::lock_guard lock(m_mutex);
    for (Waiting* const each : m_group) {
        each->m_isDone = true;
        if (each != &leader) {
            each->m_wake.notify_one();
        }
    }
    m_group.clear();
    m_hasLeader = m_first != nullptr;
    if (m_hasLeader) {
        m_first->m_leads = true;
        m_first->m_wake.notify_one();
    }
}

}  // namespace host
