#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "host/framework/AlarmClock.h"

/// An alarm clock whose time a test moves by hand. Alarms ring on the thread that calls `advance`, outside the lock.
class ManualAlarmClock final : public host::AlarmClock {
public:
    [[nodiscard]] std::unique_ptr<host::Alarm> after(std::chrono::milliseconds delay,
                                                     std::function<void()> ring) override {
        const std::lock_guard lock(m_mutex);
        auto entry = std::make_shared<Entry>(Entry{m_now + delay, std::move(ring), false});
        m_entries.push_back(entry);
        return std::make_unique<Held>(*this, std::move(entry));
    }

    /// Moves the time and rings what is due, the earliest first.
    void advance(std::chrono::milliseconds step) {
        for (const auto& entry : takeDue(step)) {
            entry->ring();
        }
    }

    /// Alarms that are neither rung nor called off.
    [[nodiscard]] std::size_t outstanding() const {
        const std::lock_guard lock(m_mutex);
        return static_cast<std::size_t>(
            std::count_if(m_entries.begin(), m_entries.end(), [](const auto& entry) { return !entry->off; }));
    }

private:
    struct Entry {
        std::chrono::milliseconds due;
        std::function<void()> ring;
        bool off;
    };

    class Held final : public host::Alarm {
    public:
        Held(ManualAlarmClock& clock, std::shared_ptr<Entry> entry)
            : m_clock(clock), m_entry(std::move(entry)) {}
        ~Held() override {
            const std::lock_guard lock(m_clock.m_mutex);
            m_entry->off = true;
        }

    private:
        ManualAlarmClock& m_clock;
        std::shared_ptr<Entry> m_entry;
    };

    std::vector<std::shared_ptr<Entry>> takeDue(std::chrono::milliseconds step) {
        const std::lock_guard lock(m_mutex);
        m_now += step;
        std::vector<std::shared_ptr<Entry>> due;
        for (const auto& entry : m_entries) {
            if (!entry->off && entry->due <= m_now) {
                entry->off = true;
                due.push_back(entry);
            }
        }
        std::stable_sort(due.begin(), due.end(),
                         [](const auto& a, const auto& b) { return a->due < b->due; });
        std::erase_if(m_entries, [](const auto& entry) { return entry->off; });
        return due;
    }

    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    std::chrono::milliseconds m_now{0};
    std::vector<std::shared_ptr<Entry>> m_entries;
};
