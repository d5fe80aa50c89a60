#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "platform/clock/ClockServiceIfc.h"
#include "platform/framework/Executable.h"

namespace host {

/// The machine's clock, registered as "ClockServiceIfc". Its time zone is UTC and its display format is
/// "2026-11-21T05:22:05Z". The journal formats `getDateTime` in the same way, so old and new list keys sort
/// alike in every time zone. User interfaces convert to local time.
///
/// While an event is delivered on the calling thread, the time now is the time of the event
/// (`DeliveryContext`): the journal files calls with the times at which the events arrived.
///
/// Thread-safe; stateless.
class SystemClock final : public Executable, public ClockServiceIfc {
public:
    using Now = std::function<std::chrono::system_clock::time_point()>;

    /// `now` returns the current time; tests replace it. Requires: any thread may call `now`.
    explicit SystemClock(Now now = &std::chrono::system_clock::now);

    [[nodiscard]] DateTime getDateTime() override;
    [[nodiscard]] long getSeconds() override;
    [[nodiscard]] std::string formatTimeDate(long seconds) override;
    /// Reads ISO 8601, "2026-11-21T05:22:05Z", and converts it to UTC. Also accepts "t" or a blank instead of
    /// the "T", a fraction of the second (which it cuts off), and the zones "+01:00", "+0100", "+01" and
    /// none, which means UTC. Reads a leap second (60) as the last second of its minute. Returns false and
    /// leaves `result` unchanged for anything else: a day that the month does not have, hour 24, more than 60
    /// seconds, text after the zone.
    [[nodiscard]] bool splitTimeDate(const std::string& text, DateTime& result) override;

private:
    [[nodiscard]] std::chrono::system_clock::time_point now() const;

    // Constant after construction.
    const Now m_now;
};

}  // namespace host
