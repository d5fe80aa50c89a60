#pragma once

#include <memory>

namespace host {

/// The few threads on which the work of all lines runs. A line needs no thread of its own: it has a `Strand` on this
/// pool, and thousands of strands may share it.
///
/// A pool may be allowed to grow: it then gets another thread whenever all that it has are at work, so that work which
/// waits (for the switch, say) does not hold up the rest. Threads that came stay.
///
/// Threads: made and destroyed by the owner of the lines; everything that uses the pool may do so from any thread.
/// Lifetime: outlives every strand and every alarm clock that stands on it. The destructor ends the threads; work
/// that has not begun by then is thrown away, so strands are drained first.
class WorkerPool {
public:
    /// What the pool is made of; only the sources of this room see inside.
    struct Threads;

    /// As many threads as the machine has processors, two at least: a handler may wait for an answer of the switch.
    WorkerPool();
    explicit WorkerPool(unsigned threads);
    /// Begins with `threads`, two at least, and never has more than `most`.
    WorkerPool(unsigned threads, unsigned most);
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    [[nodiscard]] Threads& threads() noexcept { return *m_threads; }

private:
    const std::unique_ptr<Threads> m_threads;
};

}  // namespace host
