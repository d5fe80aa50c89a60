#pragma once

#include "host/framework/TimerSource.h"

namespace host {

class WorkerPool;

/// The timer source of the running program. Uses steady time and calls on threads of the pool. Thread-safe.
class AsioTimerSource final : public TimerSource {
public:
    /// Requires: `pool` outlives the source and everything that it scheduled.
    explicit AsioTimerSource(WorkerPool& pool) : m_pool(pool) {}

    [[nodiscard]] std::unique_ptr<ScheduledExpiry> schedule(std::chrono::milliseconds delay,
                                                            std::function<void()> onExpiry) override;

private:
    WorkerPool& m_pool;
};

}  // namespace host
