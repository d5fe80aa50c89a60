#include "tests/support/FakeContext.h"

#include <utility>

#include "platform/framework/Executable.h"

namespace journaltest {

void FakeContext::addService(const std::string& name, Executable* service) {
    const std::lock_guard lock(m_mutex);
    m_services[name] = service;
}

void FakeContext::advance(std::chrono::milliseconds time) {
    std::chrono::milliseconds end{0};
    {
        const std::lock_guard lock(m_mutex);
        end = m_now + time;
    }
    Executable* handler = nullptr;
    int id = -1;
    while (takeDue(end, handler, id)) {
        handler->timerEvent(id);
    }
}

bool FakeContext::takeDue(std::chrono::milliseconds end, Executable*& handler, int& id) {
    const std::lock_guard lock(m_mutex);
    Timer* next = nullptr;
    for (auto& [timerId, timer] : m_timers) {
        const bool due = timer.running && timer.due <= end;
        if (due && (!next || std::pair(timer.due, timer.armed) < std::pair(next->due, next->armed))) {
            next = &timer;
            id = timerId;
        }
    }
    if (!next) {
        m_now = end;
        return false;
    }
    m_now = next->due;
    next->running = false;
    handler = next->handler;
    return true;
}

void FakeContext::refuseTimers() {
    const std::lock_guard lock(m_mutex);
    m_refuse = true;
}

std::vector<int> FakeContext::timers() const {
    const std::lock_guard lock(m_mutex);
    std::vector<int> ids;
    for (const auto& entry : m_timers) {
        ids.push_back(entry.first);
    }
    return ids;
}

std::vector<int> FakeContext::runningTimers() const {
    const std::lock_guard lock(m_mutex);
    std::vector<int> ids;
    for (const auto& [id, timer] : m_timers) {
        if (timer.running) {
            ids.push_back(id);
        }
    }
    return ids;
}

std::chrono::milliseconds FakeContext::lengthOf(int id) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_timers.find(id);
    return found == m_timers.end() ? std::chrono::milliseconds(-1) : found->second.length;
}

std::vector<std::string> FakeContext::lookUps() const {
    const std::lock_guard lock(m_mutex);
    return m_lookUps;
}

Executable* FakeContext::findService(const std::string& name) {
    const std::lock_guard lock(m_mutex);
    m_lookUps.push_back(name);
    const auto found = m_services.find(name);
    return found == m_services.end() ? nullptr : found->second;
}

int FakeContext::createTimer(Executable& handler, int milliseconds) {
    const std::lock_guard lock(m_mutex);
    if (m_refuse) {
        return -1;
    }
    const int id = m_nextId++;
    Timer& timer = m_timers[id];
    timer.handler = &handler;
    timer.length = std::chrono::milliseconds(milliseconds);
    return id;
}

FakeContext::Timer* FakeContext::find(int id) {
    const auto found = m_timers.find(id);
    return found == m_timers.end() ? nullptr : &found->second;
}

void FakeContext::arm(Timer& timer) {
    timer.running = true;
    timer.due = m_now + timer.length;
    timer.armed = ++m_armings;
}

bool FakeContext::startTimer(int id) {
    const std::lock_guard lock(m_mutex);
    Timer* const timer = find(id);
    if (timer && !timer->running) {
        arm(*timer);
    }
    return timer != nullptr;
}

bool FakeContext::stopTimer(int id) {
    const std::lock_guard lock(m_mutex);
    Timer* const timer = find(id);
    if (timer) {
        timer->running = false;
    }
    return timer != nullptr;
}

bool FakeContext::restartTimer(int id) {
    const std::lock_guard lock(m_mutex);
    Timer* const timer = find(id);
    if (timer) {
        arm(*timer);
    }
    return timer != nullptr;
}

bool FakeContext::deleteTimer(int id) {
    const std::lock_guard lock(m_mutex);
    return m_timers.erase(id) > 0;
}

bool FakeContext::isTimerRunning(int id) {
    const std::lock_guard lock(m_mutex);
    const Timer* const timer = find(id);
    return timer && timer->running;
}

}  // namespace journaltest
