#pragma once

#include "host/framework/AlarmClock.h"

namespace host {

class WorkerPool;

/// The alarm clock of the running program: steady time, ringing on the pool's threads.
class AsioAlarmClock final : public AlarmClock {
public:
    /// `pool` is borrowed and outlives the clock and its alarms.
    explicit AsioAlarmClock(WorkerPool& pool) : m_pool(pool) {}

    [[nodiscard]] std::unique_ptr<Alarm> after(std::chrono::milliseconds delay,
                                               std::function<void()> ring) override;

private:
    WorkerPool& m_pool;
};

}  // namespace host
