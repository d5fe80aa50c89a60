#pragma once

#include <memory>

namespace host {

class WorkerThreads;

/// The threads on which the work of all lines runs. A line needs no thread of its own: it has a `Strand` on
/// this pool, and thousands of strands may share it.
///
/// A pool may grow: it starts another thread when all of its threads are busy, so that work that waits (for
/// the switch, for example) does not delay the rest. It never ends a thread before its own end.
///
/// Thread-safe, except that one owner creates and destroys it. Lifetime: outlives every strand and every
/// expiry clock on it. The destructor ends the threads and discards work that has not begun, so drain the
/// strands first.
class WorkerPool {
public:
    /// Has as many threads as the machine has processors, but at least two: a handler may wait for the
    /// switch.
    WorkerPool();
    explicit WorkerPool(unsigned threads);
    /// Starts with `threads` threads and never has more than `most`. Requires: `threads` is at least 2.
    WorkerPool(unsigned threads, unsigned most);
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    /// For strands and timer sources only.
    [[nodiscard]] WorkerThreads& threads() noexcept { return *m_threads; }

private:
    const std::unique_ptr<WorkerThreads> m_threads;
};

}  // namespace host
