#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "host/database/KeptChanges.h"

namespace host {

/// Gathers the changes that wait for a commit at the same moment into groups, each of which is one commit.
///
/// Sequence of a thread with a change:
///  1. If no other thread leads, it leads. Else it waits until its change is committed, or until it leads.
///  2. The leader takes the lock of the commits, which may take some time.
///  3. It takes the changes that wait by then as its group, its own first, and commits them.
///  4. It wakes their threads, and the first thread that still waits: this one leads next.
///
/// A change that is alone is thus committed on its own thread, without an allocation. Changes of one line are
/// committed in their order and never in one group, so that each sees what the one before it has left.
///
/// Thread-safe.
class CommitQueue {
public:
    /// The most changes of a group. More would delay the first of them too much.
    static constexpr std::size_t kMost = 256;

    /// A change, from the call of `commit` until it returns.
    class Waiting {
    public:
        explicit Waiting(const std::shared_ptr<DatabaseChange>& change) : m_change(change) {}

        [[nodiscard]] const std::shared_ptr<DatabaseChange>& change() const noexcept { return m_change; }
        /// The outcome; `eRefused` until it is set.
        ChangeOutcome outcome = ChangeOutcome::eRefused;

    private:
        friend class CommitQueue;

        enum class State { eWaits, eLeads, eIsDone };

        [[nodiscard]] State wait();
        void wake(State state) noexcept;

        const std::shared_ptr<DatabaseChange>& m_change;
        // Guarded by the queue's lock.
        Waiting* m_next = nullptr;

        // A lock of its own: the threads of a group that are woken at the same moment do not wait for each
        // other.
        std::mutex m_mutex;
        // Guarded by m_mutex.
        State m_state = State::eWaits;
        std::condition_variable m_wake;
    };
    using Group = std::span<Waiting* const>;

    /// `commits` is held while a group is committed; it is borrowed. `commit` sets the outcome of each
    /// change of the group, and must not throw.
    CommitQueue(std::mutex& commits, std::function<void(Group)> commit);

    /// Returns when the change is committed, on this thread or on another one.
    void commit(Waiting& waiting);
    /// The number of changes that no thread commits yet.
    [[nodiscard]] std::size_t size() const;

private:
    [[nodiscard]] bool isTaken(const void* line) const noexcept;
    [[nodiscard]] bool append(Waiting& waiting) noexcept;
    void takeGroup() noexcept;
    void finishGroup(const Waiting& leader) noexcept;

    // Constant after construction.
    std::mutex& m_commits;
    const std::function<void(Group)> m_commit;

    mutable std::mutex m_mutex;
    // Guarded by m_mutex, which is taken after m_commits.
    std::size_t m_size = 0;
    Waiting* m_first = nullptr;
    Waiting* m_last = nullptr;
    bool m_hasLeader = false;

    /// Used by the leader only.
    std::vector<Waiting*> m_group;
};

}  // namespace host
