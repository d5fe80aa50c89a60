#pragma once

#include <atomic>
#include <string>

#include "platform/clock/ClockServiceIfc.h"
#include "platform/framework/Executable.h"

namespace journaltest {

/// A clock that stands still until the test moves it; register it as "ClockServiceIfc". Its zone is UTC and its
/// display format "YYYY-MM-DDThh:mm:ssZ". Any thread may call.
class FakeClock final : public Executable, public ClockServiceIfc {
public:
    /// 2026-11-21T05:22:05Z.
    static constexpr long kStart = 1795238525;

    /// Seconds since 1970.
    void set(long seconds) noexcept { m_seconds = seconds; }
    void advance(long seconds) noexcept { m_seconds += seconds; }

    [[nodiscard]] DateTime getDateTime() override;
    [[nodiscard]] long getSeconds() override { return m_seconds; }
    [[nodiscard]] std::string formatTimeDate(long seconds) override;
    /// Understands the display format, with or without the "Z".
    [[nodiscard]] bool splitTimeDate(const std::string& text, DateTime& result) override;

private:
    std::atomic<long> m_seconds{kStart};
};

}  // namespace journaltest
