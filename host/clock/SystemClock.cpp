#include "host/clock/SystemClock.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <string_view>
#include <utility>

#include "host/calls/DeliveryContext.h"

namespace host {
namespace {

using DateTime = ClockServiceIfc::DateTime;
using std::chrono::days;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;

// The range of a year of four digits, in seconds since 1970.
constexpr long kYear0 = -62167219200;
constexpr long kEndOfYear9999 = 253402300799;

DateTime split(sys_seconds time) {
    const auto day = std::chrono::floor<days>(time);
    const std::chrono::year_month_day date(day);
    const auto ofDay = static_cast<int>((time - day).count());
    return {.year = static_cast<int>(date.year()),
            .month = static_cast<int>(static_cast<unsigned>(date.month())),
            .day = static_cast<int>(static_cast<unsigned>(date.day())),
            .hour = ofDay / 3600,
            .minute = ofDay / 60 % 60,
            .second = ofDay % 60};
}

/// Consumes a text from its front.
class Scanner {
public:
    explicit Scanner(std::string_view text) : m_rest(text) {}

    /// Reads exactly `digits` decimal digits.
    std::optional<int> number(std::size_t digits) {
        int value = 0;
        if (countDigits() < digits) {
            return std::nullopt;
        }
        std::from_chars(m_rest.data(), m_rest.data() + digits, value);
        m_rest.remove_prefix(digits);
        return value;
    }
    /// Reads one of the characters. Returns 0 if none of them is next.
    char oneOf(std::string_view characters) {
        if (m_rest.empty() || characters.find(m_rest.front()) == std::string_view::npos) {
            return '\0';
        }
        const char taken = m_rest.front();
        m_rest.remove_prefix(1);
        return taken;
    }
    bool digits() {
        const std::size_t count = countDigits();
        m_rest.remove_prefix(count);
        return count > 0;
    }
    [[nodiscard]] bool atEnd() const { return m_rest.empty(); }

private:
    [[nodiscard]] std::size_t countDigits() const {
        const std::size_t end = m_rest.find_first_not_of("0123456789");
        return end == std::string_view::npos ? m_rest.size() : end;
    }

    std::string_view m_rest;
};

std::optional<sys_days> date(Scanner& text) {
    const auto year = text.number(4);
    const bool first = text.oneOf("-") != '\0';
    const auto month = text.number(2);
    const bool second = text.oneOf("-") != '\0';
    const auto day = text.number(2);
    if (!year || !first || !month || !second || !day) {
        return std::nullopt;
    }
    const std::chrono::year_month_day read{std::chrono::year(*year),
                                           std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*day))};
    return read.ok() ? std::optional(sys_days(read)) : std::nullopt;
}

std::optional<seconds> timeOfDay(Scanner& text) {
    const auto hour = text.number(2);
    const bool first = text.oneOf(":") != '\0';
    const auto minute = text.number(2);
    const bool second = text.oneOf(":") != '\0';
    const auto ofMinute = text.number(2);
    if (!hour || !first || !minute || !second || !ofMinute || *hour > 23 || *minute > 59 || *ofMinute > 60) {
        return std::nullopt;
    }
    if (text.oneOf(".,") != '\0' && !text.digits()) {
        return std::nullopt;
    }
    return hours(*hour) + minutes(*minute) + seconds(*ofMinute == 60 ? 59 : *ofMinute);
}

/// Reads the offset of the zone, positive if it is ahead of UTC.
std::optional<minutes> zone(Scanner& text) {
    if (text.atEnd() || text.oneOf("Zz") != '\0') {
        return minutes(0);
    }
    const char sign = text.oneOf("+-");
    const auto hour = text.number(2);
    if (sign == '\0' || !hour || *hour > 23) {
        return std::nullopt;
    }
    int minute = 0;
    const bool colon = text.oneOf(":") != '\0';
    if (colon || !text.atEnd()) {
        const auto read = text.number(2);
        if (!read || *read > 59) {
            return std::nullopt;
        }
        minute = *read;
    }
    const minutes ahead = hours(*hour) + minutes(minute);
    return sign == '-' ? -ahead : ahead;
}

}  // namespace

SystemClock::SystemClock(Now now) : m_now(std::move(now)) {}

std::chrono::system_clock::time_point SystemClock::now() const {
    const DeliveryContext* const delivery = DeliveryContext::current();
    return delivery != nullptr && delivery->time ? *delivery->time : m_now();
}

ClockServiceIfc::DateTime SystemClock::getDateTime() {
    return split(std::chrono::floor<seconds>(now()));
}

long SystemClock::getSeconds() {
    return std::chrono::floor<seconds>(now()).time_since_epoch().count();
}

std::string SystemClock::formatTimeDate(long secondsSince1970) {
    const DateTime time = split(sys_seconds(seconds(std::clamp(secondsSince1970, kYear0, kEndOfYear9999))));
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02dZ", time.year, time.month, time.day,
                  time.hour, time.minute, time.second);
    return text.data();
}

bool SystemClock::splitTimeDate(const std::string& text, DateTime& result) {
    Scanner scanner(text);
    const auto day = date(scanner);
    const bool separated = scanner.oneOf("Tt ") != '\0';
    const auto ofDay = timeOfDay(scanner);
    const auto ahead = zone(scanner);
    if (!day || !separated || !ofDay || !ahead || !scanner.atEnd()) {
        return false;
    }
    result = split(*day + *ofDay - *ahead);
    return true;
}

}  // namespace host
