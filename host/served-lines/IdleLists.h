#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

#include "host/framework/Strand.h"
#include "host/framework/TimerSource.h"

namespace host {

/// Lets the lines that the switch has sent no event for some time free the memory of their lists: it looks at
/// them once a minute, on a strand of its own.
///
/// One owner starts and stops it.
class IdleLists {
public:
    static constexpr std::chrono::minutes kIdle{5};
    static constexpr std::chrono::minutes kBetween{1};

    /// `unload` is called with the time after which a line is idle. The rest is borrowed and outlives the
    /// object.
    IdleLists(WorkerPool& pool, TimerSource& timers,
              std::function<void(std::chrono::milliseconds idle)> unload)
        : m_timers(timers), m_unload(std::move(unload)), m_strand(pool) {}
    ~IdleLists() { stop(); }
    IdleLists(const IdleLists&) = delete;
    IdleLists& operator=(const IdleLists&) = delete;

    void start();
    /// Waits for the running work. Idempotent.
    void stop();

private:
    void lookLater();

    TimerSource& m_timers;
    const std::function<void(std::chrono::milliseconds)> m_unload;

    // Strand only.
    std::unique_ptr<ScheduledExpiry> m_next;

    Strand m_strand;
};

}  // namespace host
