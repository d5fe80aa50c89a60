#pragma once

#include <atomic>
#include <ctime>
#include <iomanip>
#include <sstream>
#include <string>

#include "platform/clock/ClockServiceIfc.h"
#include "platform/framework/Executable.h"

namespace journaltest {

/// A clock in UTC that stands still until the test moves it; register it as "ClockServiceIfc". Thread-safe.
class FakeClock final : public Executable, public ClockServiceIfc {
public:
    /// 2026-11-21T05:22:05Z.
    static constexpr long kStart = 1795238525;

    /// Seconds since 1970.
    void set(long seconds) noexcept { m_seconds = seconds; }
    void advance(long seconds) noexcept { m_seconds += seconds; }

    [[nodiscard]] DateTime getDateTime() override { return fieldsOf(m_seconds); }
    [[nodiscard]] long getSeconds() override { return m_seconds; }
    [[nodiscard]] std::string formatTimeDate(long seconds) override {
        const std::tm time = tmOf(seconds);
        char text[sizeof "2026-11-21T05:22:05Z"] = "";
        static_cast<void>(std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &time));
        return text;
    }
    /// Date and time of ISO 8601, with "T" or a space between them, and "Z", "+hh:mm" or no zone.
    [[nodiscard]] bool splitTimeDate(const std::string& text, DateTime& result) override {
        std::tm time{};
        std::tm ahead{};
        std::string zone;
        std::istringstream stream(text);
        const bool isIso = text.find('T') != std::string::npos;
        stream >> std::get_time(&time, isIso ? "%Y-%m-%dT%H:%M:%S" : "%Y-%m-%d %H:%M:%S");
        if (stream.fail()) {
            return false;
        }
        stream.clear();
        std::getline(stream, zone);
        std::istringstream offset(zone);
        offset >> std::get_time(&ahead, "+%H:%M");
        if (offset.fail() && !zone.empty() && zone != "Z") {
            return false;
        }
        result = fieldsOf(timegm(&time) - ahead.tm_hour * 3600L - ahead.tm_min * 60L);
        return true;
    }

private:
    static std::tm tmOf(long seconds) {
        const std::time_t time = seconds;
        std::tm fields{};
        gmtime_r(&time, &fields);
        return fields;
    }
    static DateTime fieldsOf(long seconds) {
        const std::tm time = tmOf(seconds);
        return {time.tm_year + 1900, time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec};
    }

    std::atomic<long> m_seconds{kStart};
};

}  // namespace journaltest
