#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace host {

/// One call that an alarm clock owes. Destroying it calls the call off, unless that has begun already.
class Alarm {
public:
    Alarm() = default;
    Alarm(const Alarm&) = delete;
    Alarm& operator=(const Alarm&) = delete;
    virtual ~Alarm() = default;
};

/// Calls back once after a time. The seam between the timers and the passing of real time: tests put a clock in its
/// place that they move by hand.
///
/// Threads: any thread may ask. `ring` is called on a thread of the clock's own choice, never inside `after`, must not
/// throw, and may still be called shortly after its alarm was destroyed: whoever cares keeps a generation.
class AlarmClock {
public:
    AlarmClock() = default;
    AlarmClock(const AlarmClock&) = delete;
    AlarmClock& operator=(const AlarmClock&) = delete;
    virtual ~AlarmClock() = default;

    /// `delay` is 0 or more. The alarm may outlive the clock; it never rings then.
    [[nodiscard]] virtual std::unique_ptr<Alarm> after(std::chrono::milliseconds delay,
                                                       std::function<void()> ring) = 0;
};

}  // namespace host
