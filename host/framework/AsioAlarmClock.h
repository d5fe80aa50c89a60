#pragma once

#include "host/framework/AlarmClock.h"

namespace host {

class WorkerPool;

/// The alarm clock of the running program. Uses steady time and rings on threads of the pool. Thread-safe.
class AsioAlarmClock final : public AlarmClock {
public:
    /// Requires: `pool` outlives the clock and its alarms.
    explicit AsioAlarmClock(WorkerPool& pool) : m_pool(pool) {}

    [[nodiscard]] std::unique_ptr<Alarm> after(std::chrono::milliseconds delay,
                                               std::function<void()> ring) override;

private:
    WorkerPool& m_pool;
};

}  // namespace host
