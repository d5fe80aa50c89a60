#pragma once

#include <string>

class Executable;

/// The framework as a service sees it: other services by name, and timers.
///
/// Threads: every operation may be called from any thread. Expiries are delivered as `timerEvent(id)` on the
/// strand of the service's line, never inside a call of the service into this class and never two at a time.
/// Lifetime: a context outlives every service that it was given to.
///
/// The timer contract:
///  1. `createTimer` makes a timer that is not armed and returns its id, which is never used again, or -1.
///  2. `startTimer` arms it for one expiry. A running timer is unchanged.
///  3. `restartTimer` arms it for its full time from now, whether or not it is running.
///  4. `stopTimer` disarms it; the timer may be started again. `deleteTimer` disarms and deletes it.
///  5. Once `startTimer`, `stopTimer`, `restartTimer` or `deleteTimer` has returned on the line's strand, an
///     expiry that was due before is not delivered any more.
///  6. Every operation with an unknown id (-1 included) has no effect and returns false.
class Context {
public:
    Context() = default;
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    virtual ~Context() = default;

    /// The service registered under `name` ("ClockServiceIfc", ...), or null. Borrowed, alive as long as the
    /// context.
    [[nodiscard]] virtual Executable* findService(const std::string& name) = 0;

    /// `handler` is borrowed and deletes its timers before it is destroyed. Requires: `milliseconds` is 0 or
    /// more.
    [[nodiscard]] virtual int createTimer(Executable& handler, int milliseconds) = 0;
    virtual bool startTimer(int id) = 0;
    virtual bool stopTimer(int id) = 0;
    virtual bool restartTimer(int id) = 0;
    virtual bool deleteTimer(int id) = 0;
    [[nodiscard]] virtual bool isTimerRunning(int id) = 0;
};
