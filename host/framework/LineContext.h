#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "platform/framework/Context.h"

namespace host {

class TimerSource;
class Strand;

/// The context of one line: its services by name, and the timers of these services.
///
/// The sequence of a timer:
///  1. `startTimer` gives it a new generation and schedules an expiry.
///  2. The timer source reports the expiry on any thread, and posts it with its generation to the line's
///     strand.
///  3. The strand delivers the expiry only if the timer still exists, still runs and still has that
///     generation. Stop, restart and delete change these, so an expiry that was posted before them is
///     discarded.
///
/// Thread-safe. No lock is held while a handler runs, so a handler may use its timers freely.
class LineContext final : public Context {
public:
    /// Requires: both outlive the context.
    LineContext(Strand& strand, TimerSource& timerSource);
    /// Cancels every timer. Call from the strand, or after it is closed.
    ~LineContext() override;

    /// Registers `service` as `name` and replaces a former one. Requires: `service` lives until
    /// `removeService`.
    void registerService(const std::string& name, Executable& service);
    void removeService(const std::string& name);

    /// Deletes all timers of `handler`. Call from the strand, before `handler` is destroyed.
    void deleteTimersOf(const Executable& handler);

    // Context
    [[nodiscard]] Executable* findService(const std::string& name) override;
    [[nodiscard]] int createTimer(Executable& handler, int milliseconds) override;
    bool startTimer(int id) override;
    bool stopTimer(int id) override;
    bool restartTimer(int id) override;
    bool deleteTimer(int id) override;
    [[nodiscard]] bool isTimerRunning(int id) override;

private:
    class Timers;

    // Has its own lock. Shared with posted expiries.
    const std::shared_ptr<Timers> m_timers;

    std::mutex m_servicesMutex;
    // Guarded by m_servicesMutex.
    std::map<std::string, Executable*> m_services;
};

}  // namespace host
