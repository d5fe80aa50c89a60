#pragma once

#include <cstdint>

/// Mix-in of an occurrence with the format of its time. A plain value without synchronisation.
class TimeFormat {
public:
    TimeFormat() = default;
    TimeFormat(const TimeFormat&) = default;
    TimeFormat(TimeFormat&&) noexcept = default;
    TimeFormat& operator=(const TimeFormat&) = default;
    TimeFormat& operator=(TimeFormat&&) noexcept = default;
    virtual ~TimeFormat() = default;

    /// The switch's own number for the format of an entry's time; 0 for a time that the journal's clock gave.
    [[nodiscard]] std::int32_t getTimeFormat() const noexcept { return m_timeFormat; }
    void setTimeFormat(std::int32_t format) noexcept { m_timeFormat = format; }

    bool operator==(const TimeFormat&) const = default;

private:
    std::int32_t m_timeFormat = 0;
};
