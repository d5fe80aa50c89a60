#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/framework/Context.h"
#include "platform/framework/Executable.h"

namespace journaltest {

/// A framework in which time passes only when the test says so.
///
/// Keeps the timer contract of `Context`. Any thread may call the operations of `Context`; the thread that
/// advances the time is the line's strand.
class FakeContext final : public Context {
public:
    using milliseconds = std::chrono::milliseconds;

    /// `service` is borrowed; null takes the name away again.
    void addService(const std::string& name, Executable* service) {
        const std::lock_guard lock(m_mutex);
        m_services[name] = service;
    }
    /// Lets time pass. Timers that fall due meanwhile expire one after the other, in the order of their times
    /// and with none of the context's locks held: a handler may create, start, stop and delete timers.
    void advance(milliseconds time) {
        const milliseconds end = m_now + time;
        while (const auto due = takeDue(end)) {
            due->handler->timerEvent(due->id);
        }
    }
    /// From now on `createTimer` returns -1.
    void refuseTimers() { m_refuse = true; }

    /// The ids of the timers that exist, and of those that are running, in the order in which they were made.
    [[nodiscard]] std::vector<int> timers() const { return idsOf(false); }
    [[nodiscard]] std::vector<int> runningTimers() const { return idsOf(true); }
    /// The full time of a timer that exists.
    [[nodiscard]] milliseconds lengthOf(int id) const { return m_timers.at(id).length; }
    /// The names that were looked up, in order.
    [[nodiscard]] const std::vector<std::string>& lookUps() const { return m_lookUps; }

    [[nodiscard]] Executable* findService(const std::string& name) override {
        const std::lock_guard lock(m_mutex);
        m_lookUps.push_back(name);
        return m_services[name];
    }
    [[nodiscard]] int createTimer(Executable& handler, int length) override {
        const std::lock_guard lock(m_mutex);
        if (m_refuse) {
            return -1;
        }
        ++m_lastId;
        m_timers[m_lastId] = {m_lastId, &handler, milliseconds(length), {}};
        return m_lastId;
    }
    bool startTimer(int id) override {
        return with(id, [this](Timer& timer) { timer.due = timer.due.value_or(m_now + timer.length); });
    }
    bool stopTimer(int id) override {
        return with(id, [](Timer& timer) { timer.due.reset(); });
    }
    bool restartTimer(int id) override {
        return with(id, [this](Timer& timer) { timer.due = m_now + timer.length; });
    }
    bool deleteTimer(int id) override {
        const std::lock_guard lock(m_mutex);
        return m_timers.erase(id) > 0;
    }
    [[nodiscard]] bool isTimerRunning(int id) override {
        bool running = false;
        return with(id, [&running](const Timer& timer) { running = timer.due.has_value(); }) && running;
    }

private:
    struct Timer {
        int id = -1;
        Executable* handler = nullptr;
        milliseconds length{0};
        std::optional<milliseconds> due;  // while it runs
    };

    template <typename Change>
    bool with(int id, Change change) {
        const std::lock_guard lock(m_mutex);
        const auto found = m_timers.find(id);
        if (found != m_timers.end()) {
            change(found->second);
        }
        return found != m_timers.end();
    }
    [[nodiscard]] std::vector<int> idsOf(bool runningOnly) const {
        const std::lock_guard lock(m_mutex);
        std::vector<int> ids;
        for (const auto& [id, timer] : m_timers) {
            if (!runningOnly || timer.due) {
                ids.push_back(id);
            }
        }
        return ids;
    }
    /// Disarms the next timer that is due up to `end`, and lets the time pass until then, or until `end`.
    std::optional<Timer> takeDue(milliseconds end) {
        const std::lock_guard lock(m_mutex);
        Timer* next = nullptr;
        for (auto& [id, timer] : m_timers) {
            if (timer.due && *timer.due <= end && (!next || *timer.due < *next->due)) {
                next = &timer;
            }
        }
        m_now = next ? *next->due : end;
        if (!next) {
            return std::nullopt;
        }
        next->due.reset();
        return *next;
    }

    // Guarded by m_mutex. The thread that advances the time, which alone changes it, reads it without.
    mutable std::mutex m_mutex;
    std::map<std::string, Executable*> m_services;
    std::vector<std::string> m_lookUps;
    std::map<int, Timer> m_timers;
    int m_lastId = 0;
    bool m_refuse = false;
    milliseconds m_now{0};
};

}  // namespace journaltest
