#pragma once

#include <string>

/// The phone's clock. Registered as "ClockServiceIfc". Any thread may call, at any time; no operation blocks.
class ClockServiceIfc {
public:
    /// A date and a time of day; months and days count from 1.
    struct DateTime {
        int year = 0;
        int month = 0;
        int day = 0;
        int hour = 0;
        int minute = 0;
        int second = 0;
    };

    ClockServiceIfc() = default;
    ClockServiceIfc(const ClockServiceIfc&) = delete;
    ClockServiceIfc& operator=(const ClockServiceIfc&) = delete;
    virtual ~ClockServiceIfc() = default;

    /// The current date and time of day, in the zone in which the journal keeps its times (UTC in the
    /// reference host).
    [[nodiscard]] virtual DateTime getDateTime() = 0;
    /// Seconds since 1970-01-01T00:00:00Z.
    [[nodiscard]] virtual long getSeconds() = 0;
    /// `seconds` since 1970 in the clock's display format. The lists are sorted by this text, so it begins
    /// with year, month and day in fixed widths.
    [[nodiscard]] virtual std::string formatTimeDate(long seconds) = 0;
    /// Splits a time text of the clock or of the switch; false if the text is none.
    [[nodiscard]] virtual bool splitTimeDate(const std::string& text, DateTime& result) = 0;
};
