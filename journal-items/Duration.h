#pragma once

#include <string>

/// Mix-in of an occurrence with the duration of the call. A plain value without synchronisation.
class Duration {
public:
    Duration() = default;
    Duration(const Duration&) = default;
    Duration(Duration&&) noexcept = default;
    Duration& operator=(const Duration&) = default;
    Duration& operator=(Duration&&) noexcept = default;
    virtual ~Duration() = default;

    /// Minutes and seconds, "01:01"; minutes are not capped ("100:00"). Empty if unknown.
    [[nodiscard]] const std::string& getDuration() const noexcept { return m_duration; }
    void setDuration(const std::string& duration) { m_duration = duration; }

    bool operator==(const Duration&) const = default;

private:
    std::string m_duration;
};
