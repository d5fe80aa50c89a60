#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace host {

/// A pending callback of a timer source. Its destructor cancels the callback, unless it has begun already.
class ScheduledExpiry {
public:
    ScheduledExpiry() = default;
    ScheduledExpiry(const ScheduledExpiry&) = delete;
    ScheduledExpiry& operator=(const ScheduledExpiry&) = delete;
    virtual ~ScheduledExpiry() = default;
};

/// Calls back once after a delay. The interface between timers and real time: tests replace it with a source
/// whose time they advance by hand.
///
/// Thread-safe. The source calls `onExpiry` on a thread of its own choice and never inside `schedule`. It may
/// still call `onExpiry` shortly after the `ScheduledExpiry` was destroyed; a caller that must not see this
/// compares a generation number.
class TimerSource {
public:
    TimerSource() = default;
    TimerSource(const TimerSource&) = delete;
    TimerSource& operator=(const TimerSource&) = delete;
    virtual ~TimerSource() = default;

    /// Requires: `delay` is not negative; `onExpiry` does not throw. The result may outlive the source; it
    /// then never expires.
    [[nodiscard]] virtual std::unique_ptr<ScheduledExpiry> schedule(std::chrono::milliseconds delay,
                                                                    std::function<void()> onExpiry) = 0;
};

}  // namespace host
