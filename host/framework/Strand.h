#pragma once

#include <functional>
#include <memory>

namespace host {

class WorkerPool;

/// Runs work items one at a time, in the order in which they were posted, on any free thread of the pool, or
/// on one that helps.
/// Each line has one, for its events, its timers, and the creation and destruction of its services.
///
/// Thread-safe, except where an operation states otherwise.
/// Errors: an exception of a work item is logged; the next item runs.
class Strand {
public:
    using Work = std::function<void()>;

    /// Requires: `pool` outlives the strand.
    explicit Strand(WorkerPool& pool);
    /// Closes the strand. Deadlocks on the strand itself.
    ~Strand();
    Strand(const Strand&) = delete;
    Strand& operator=(const Strand&) = delete;

    /// Runs `work` later, never inside the call. Returns false and drops `work` if the strand is closed.
    bool post(Work work);

    /// Runs `work` after everything that was posted before, and waits for it. Throws what `work` throws. On
    /// the strand itself, runs `work` at once. Returns false if the strand is closed. Call from no thread of
    /// the pool: its threads could deadlock.
    bool runAndWait(const Work& work);

    /// Waits until no work is posted or running. Deadlocks on the strand itself.
    void drain();

    /// Refuses further work and waits for the posted work. Deadlocks on the strand itself. Idempotent.
    void close();

    /// True if the calling code runs on this strand.
    [[nodiscard]] bool isCurrent() const;

    /// Returns a function that posts work. It may outlive the strand; it returns false once the strand is
    /// gone.
    [[nodiscard]] std::function<bool(Work)> weakPoster() const;

    /// For a thread that is no thread of the pool and runs the work itself, which saves the wake-up of one.
    struct Helper {
        /// As a `weakPoster`, but wakes no thread of the pool: call `run` soon afterwards.
        std::function<bool(Work)> queue{};
        /// Runs what was posted and queued on the calling thread, unless another thread does so already.
        std::function<void()> run{};
    };
    /// Its functions may outlive the strand.
    [[nodiscard]] Helper helper() const;

private:
    struct Core;
    const std::shared_ptr<Core> m_core;
};

}  // namespace host
