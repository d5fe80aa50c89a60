#pragma once

#include <atomic>
#include <chrono>
#include <string>

#include "host/clock/SystemClock.h"

namespace journaltest {

/// The host's clock, but it stands still until the test moves it; register it as "ClockServiceIfc". Any thread may call.
class FakeClock final : public Executable, public ClockServiceIfc {
public:
    /// 2026-11-21T05:22:05Z.
    static constexpr long kStart = 1795238525;

    /// Seconds since 1970.
    void set(long seconds) noexcept { m_seconds = seconds; }
    void advance(long seconds) noexcept { m_seconds += seconds; }

    [[nodiscard]] DateTime getDateTime() override { return m_clock.getDateTime(); }
    [[nodiscard]] long getSeconds() override { return m_seconds; }
    [[nodiscard]] std::string formatTimeDate(long seconds) override {
        return m_clock.formatTimeDate(seconds);
    }
    [[nodiscard]] bool splitTimeDate(const std::string& text, DateTime& result) override {
        return m_clock.splitTimeDate(text, result);
    }

private:
    std::atomic<long> m_seconds{kStart};
    host::SystemClock m_clock{
        [this] { return std::chrono::system_clock::time_point(std::chrono::seconds(m_seconds)); }};
};

}  // namespace journaltest
