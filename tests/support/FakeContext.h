#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "platform/framework/Context.h"

namespace journaltest {

/// A framework in which time passes only when the test says so.
///
/// Keeps the timer contract of `Context`. Any thread may call the operations of `Context`; the thread that
/// advances the time is the line's strand.
class FakeContext final : public Context {
public:
    /// `service` is borrowed; null takes the name away again.
    void addService(const std::string& name, Executable* service);

    /// Lets time pass. Timers that fall due meanwhile expire one after the other, in the order of their times and
    /// with none of the context's locks held: a handler may create, start, stop and delete timers.
    void advance(std::chrono::milliseconds time);
    /// From now on `createTimer` answers -1.
    void refuseTimers();

    /// The ids of the timers that exist, and of those that are running, in the order in which they were made.
    [[nodiscard]] std::vector<int> timers() const;
    [[nodiscard]] std::vector<int> runningTimers() const;
    /// The full time of a timer; -1 ms when there is no such timer.
    [[nodiscard]] std::chrono::milliseconds lengthOf(int id) const;
    /// The names that were looked up, in order.
    [[nodiscard]] std::vector<std::string> lookUps() const;

    [[nodiscard]] Executable* findService(const std::string& name) override;
    [[nodiscard]] int createTimer(Executable& handler, int milliseconds) override;
    bool startTimer(int id) override;
    bool stopTimer(int id) override;
    bool restartTimer(int id) override;
    bool deleteTimer(int id) override;
    [[nodiscard]] bool isTimerRunning(int id) override;

private:
    struct Timer {
        Executable* handler = nullptr;
        std::chrono::milliseconds length{0};
        bool running = false;
        std::chrono::milliseconds due{0};
        long armed =
            0;  // which arming this is: timers due at the same time expire in the order of their arming
    };

    Timer* find(int id);
    void arm(Timer& timer);
    /// Takes the next expiry up to `end` out, or answers false.
    bool takeDue(std::chrono::milliseconds end, Executable*& handler, int& id);

    // Guarded by m_mutex.
    mutable std::mutex m_mutex;
    std::map<std::string, Executable*> m_services;
    std::vector<std::string> m_lookUps;
    std::map<int, Timer> m_timers;
    int m_nextId = 1;
    long m_armings = 0;
    bool m_refuse = false;
    std::chrono::milliseconds m_now{0};
};

}  // namespace journaltest
