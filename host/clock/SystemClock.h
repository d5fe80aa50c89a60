#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "platform/clock/ClockServiceIfc.h"
#include "platform/framework/Executable.h"

namespace host {

/// The machine's clock, registered as "ClockServiceIfc". Its zone is UTC and its display format
/// "2026-11-21T05:22:05Z", the same text that the journal makes of `getDateTime`, so that old and new list keys sort
/// alike wherever the host stands; who shows a time to people turns it into theirs.
///
/// Any thread may call; without state of its own.
class SystemClock final : public Executable, public ClockServiceIfc {
public:
    using Now = std::function<std::chrono::system_clock::time_point()>;

    /// `now` tells the time; a test brings its own. It must be callable from any thread.
    explicit SystemClock(Now now = &std::chrono::system_clock::now);

    [[nodiscard]] DateTime getDateTime() override;
    [[nodiscard]] long getSeconds() override;
    [[nodiscard]] std::string formatTimeDate(long seconds) override;
    /// Reads ISO 8601: "2026-11-21T05:22:05Z", with "t" or a blank for the "T", a fraction of the second (it is cut
    /// off), and a zone "Z", "+01:00", "+0100", "+01" or none, which means UTC. `result` is in UTC. False, with
    /// `result` unchanged, for everything else: a day that the month does not have, an hour 24, seconds beyond 60,
    /// anything behind the zone. A leap second (60) counts as the last second of its minute.
    [[nodiscard]] bool splitTimeDate(const std::string& text, DateTime& result) override;

private:
    // Constant after construction.
    const Now m_now;
};

}  // namespace host
