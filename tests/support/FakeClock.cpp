#include "tests/support/FakeClock.h"

#include <array>
#include <cstdio>
#include <ctime>

namespace journaltest {
namespace {

ClockServiceIfc::DateTime split(long seconds) {
    const std::time_t time = seconds;
    std::tm parts{};
    gmtime_r(&time, &parts);
    return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec};
}

}  // namespace

ClockServiceIfc::DateTime FakeClock::getDateTime() {
    return split(m_seconds);
}

std::string FakeClock::formatTimeDate(long seconds) {
    const DateTime time = split(seconds);
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02dZ", time.year, time.month, time.day,
                  time.hour, time.minute, time.second);
    return text.data();
}

bool FakeClock::splitTimeDate(const std::string& text, DateTime& result) {
    DateTime read;
    int used = 0;
    const int fields = std::sscanf(text.c_str(), "%4d-%2d-%2dT%2d:%2d:%2d%n", &read.year, &read.month,
                                   &read.day, &read.hour, &read.minute, &read.second, &used);
    const std::string rest = fields == 6 ? text.substr(static_cast<std::size_t>(used)) : "?";
    if (!rest.empty() && rest != "Z") {
        return false;
    }
    result = read;
    return true;
}

}  // namespace journaltest
