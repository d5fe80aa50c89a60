#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace host {

/// A pending callback of an alarm clock. Its destructor cancels the callback, unless it has begun already.
class Alarm {
public:
    Alarm() = default;
    Alarm(const Alarm&) = delete;
    Alarm& operator=(const Alarm&) = delete;
    virtual ~Alarm() = default;
};

/// Calls back once after a delay. The interface between timers and real time: tests replace it with a clock
/// that they advance by hand.
///
/// Thread-safe. The clock calls `ring` on a thread of its own choice and never inside `after`. It may still
/// call `ring` shortly after the alarm was destroyed; a caller that must not see this compares a generation
/// number.
class AlarmClock {
public:
    AlarmClock() = default;
    AlarmClock(const AlarmClock&) = delete;
    AlarmClock& operator=(const AlarmClock&) = delete;
    virtual ~AlarmClock() = default;

    /// Requires: `delay` is not negative; `ring` does not throw. The alarm may outlive the clock; it then
    /// never rings.
    [[nodiscard]] virtual std::unique_ptr<Alarm> after(std::chrono::milliseconds delay,
                                                       std::function<void()> ring) = 0;
};

}  // namespace host
