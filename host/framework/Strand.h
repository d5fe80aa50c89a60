#pragma once

#include <functional>
#include <memory>

namespace host {

class WorkerPool;

/// Runs pieces of work one at a time and in the order in which they were posted, on whichever thread of the pool is
/// free. A line has one: its events, its timers, and the birth and death of its services run there.
///
/// Threads: any thread may call any operation, except where one says otherwise.
/// Errors: a piece of work that throws costs itself, with a log line; the next one runs.
class Strand {
public:
    using Work = std::function<void()>;

    /// `pool` is borrowed and outlives the strand.
    explicit Strand(WorkerPool& pool);
    /// As `close`; not on the strand itself.
    ~Strand();
    Strand(const Strand&) = delete;
    Strand& operator=(const Strand&) = delete;

    /// Runs `work` later, never inside the call. False when the strand is closed: `work` is then dropped.
    bool post(Work work);

    /// Runs `work` behind everything that was posted before and returns when it is done, with its exception if it threw
    /// one. On the strand itself it runs at once. False when the strand is closed.
    /// Not for threads of the pool: all of them might wait for one another.
    bool runAndWait(const Work& work);

    /// Returns when nothing is posted or running. Not on the strand itself.
    void drain();

    /// Takes nothing more and returns when what was posted before is done. Not on the strand itself. Idempotent.
    void close();

    /// Whether the caller runs on this strand.
    [[nodiscard]] bool isCurrent() const;

    /// A way to post that may be kept and used for longer than the strand lives; it then answers false.
    [[nodiscard]] std::function<bool(Work)> weakPoster() const;

private:
    struct Core;
    const std::shared_ptr<Core> m_core;
};

}  // namespace host
