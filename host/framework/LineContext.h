#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "platform/framework/Context.h"

namespace host {

class AlarmClock;
class Strand;

/// The context of one line: its services by name, and the timers of those services.
///
/// The road of a timer:
///  1. `startTimer` gives it a new generation and asks the alarm clock for a call.
///  2. The alarm rings on some thread and posts the expiry, with its generation, to the line's strand.
///  3. On the strand the expiry is delivered only if the timer is still there, still running and still of that
///     generation. Stop, restart and delete change these, so what was posted before them is stale and vanishes.
///
/// Threads: any thread may call. No lock is held while a handler runs, so a handler may use its timers freely.
class LineContext final : public Context {
public:
    /// Both are borrowed and outlive the context.
    LineContext(Strand& strand, AlarmClock& alarms);
    /// Every timer is silent from now on; on the strand, or when that is closed.
    ~LineContext() override;

    /// Makes `service` known under `name`, in place of one that had it before. Borrowed until `removeService`.
    void registerService(const std::string& name, Executable& service);
    void removeService(const std::string& name);

    /// Deletes what timers `handler` left behind; before it is destroyed, on the strand.
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

    // Has its own lock; shared with expiries that are under way.
    const std::shared_ptr<Timers> m_timers;

    std::mutex m_servicesMutex;
    // Guarded by m_servicesMutex.
    std::map<std::string, Executable*> m_services;
};

}  // namespace host
