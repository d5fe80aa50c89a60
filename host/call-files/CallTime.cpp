#include "host/call-files/CallTime.h"

#include <time.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace host {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::local_seconds;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_seconds;

/// Reads a text from its beginning on.
class Scanner {
public:
    explicit Scanner(std::string_view text) : m_text(text) {}

    [[nodiscard]] bool atEnd() const { return m_text.empty(); }
    [[nodiscard]] char next() const { return m_text.empty() ? '\0' : m_text.front(); }

    /// Skips one character if it is one of `characters`.
    bool skip(std::string_view characters) {
        const bool skipped = !m_text.empty() && characters.find(m_text.front()) != std::string_view::npos;
        m_text.remove_prefix(skipped ? 1 : 0);
        return skipped;
    }

    void skipAll(std::string_view characters) {
        while (skip(characters)) {}
    }

    /// A number of `least` to `most` digits; std::nullopt, with the text unchanged, if there is none.
    std::optional<std::int64_t> number(std::size_t least, std::size_t most) {
        const std::size_t digits = std::min(m_text.find_first_not_of("0123456789"), m_text.size());
        if (digits < least || digits > most) {
            return std::nullopt;
        }
        std::int64_t value = 0;
        std::from_chars(m_text.data(), m_text.data() + digits, value);
        m_text.remove_prefix(digits);
        return value;
    }

private:
    std::string_view m_text;
};

void skipFraction(Scanner& scanner) {
    if (scanner.skip(".,")) {
        scanner.skipAll("0123456789");
    }
}

std::optional<sys_seconds> since1970(std::string_view text) {
    Scanner scanner(text);
    if (const auto count = scanner.number(9, 10)) {
        skipFraction(scanner);
        return scanner.atEnd() ? std::optional(sys_seconds(seconds(*count))) : std::nullopt;
    }
    const auto count = scanner.number(12, 13);
    return count && scanner.atEnd()
               ? std::optional(sys_seconds(std::chrono::floor<seconds>(milliseconds(*count))))
               : std::nullopt;
}

std::optional<days> dateIn(Scanner& scanner) {
    const auto dayOf = [](std::int64_t year, std::int64_t month, std::int64_t day) -> std::optional<days> {
        const std::chrono::year_month_day date{std::chrono::year(static_cast<int>(year)),
                                               std::chrono::month(static_cast<unsigned>(month)),
                                               std::chrono::day(static_cast<unsigned>(day))};
        return date.ok() ? std::optional(std::chrono::sys_days(date).time_since_epoch()) : std::nullopt;
    };
    if (const auto year = scanner.number(4, 4)) {
        const char separator = scanner.next();
        const bool separated = scanner.skip("-/");
        const auto month = scanner.number(1, 2);
        const auto day =
            separated && month && scanner.skip({&separator, 1}) ? scanner.number(1, 2) : std::nullopt;
        return day ? dayOf(*year, *month, *day) : std::nullopt;
    }
    const auto day = scanner.number(1, 2);
    const auto month = day && scanner.skip(".") ? scanner.number(1, 2) : std::nullopt;
    const auto year = month && scanner.skip(".") ? scanner.number(4, 4) : std::nullopt;
    return year ? dayOf(*year, *month, *day) : std::nullopt;
}

std::optional<seconds> timeOfDayIn(Scanner& scanner) {
    const auto hour = scanner.number(1, 2);
    const auto minute = hour && scanner.skip(":") ? scanner.number(2, 2) : std::nullopt;
    const auto second = minute && scanner.skip(":") ? scanner.number(2, 2) : std::optional<std::int64_t>(0);
    skipFraction(scanner);
    if (!minute || !second || *hour > 23 || *minute > 59 || *second > 60) {
        return std::nullopt;
    }
    return hours(*hour) + minutes(*minute) + seconds(*second);
}

/// The offset of a zone from UTC at the end of the text: "Z", "+01:00", "-0330".
std::optional<seconds> offsetIn(Scanner& scanner) {
    if (scanner.skip("Zz")) {
        return seconds(0);
    }
    const bool west = scanner.next() == '-';
    if (!scanner.skip("+-")) {
        return std::nullopt;
    }
    if (const auto both = scanner.number(4, 4)) {
        return (west ? -1 : 1) * (hours(*both / 100) + minutes(*both % 100));
    }
    const auto hour = scanner.number(2, 2);
    const auto minute = scanner.skip(":") ? scanner.number(2, 2) : std::optional<std::int64_t>(0);
    return hour && minute ? std::optional<seconds>((west ? -1 : 1) * (hours(*hour) + minutes(*minute)))
                          : std::nullopt;
}

std::optional<sys_seconds> inZone(seconds local, const TimeReading& reading) {
    return reading.toUtc ? std::optional(reading.toUtc(local_seconds(local))) : std::nullopt;
}

std::optional<sys_seconds> inOwnFormat(const std::string& text, const TimeReading& reading) {
    struct tm parts {};
    const char* const end = ::strptime(text.c_str(), reading.format.c_str(), &parts);
    if (end == nullptr || *end != '\0') {
        return std::nullopt;
    }
    const bool zoned = reading.format.find("%z") != std::string::npos;
    const long offset = parts.tm_gmtoff;
    const seconds local(::timegm(&parts));
    return zoned ? std::optional(sys_seconds(local - seconds(offset))) : inZone(local, reading);
}

std::optional<sys_seconds> anyTime(std::string_view text, const TimeReading& reading) {
    if (const auto time = since1970(text)) {
        return time;
    }
    Scanner scanner(text);
    const auto date = dateIn(scanner);
    scanner.skipAll("T ");
    const auto time = date ? timeOfDayIn(scanner) : std::nullopt;
    if (!time) {
        return std::nullopt;
    }
    scanner.skipAll(" ");
    if (scanner.atEnd()) {
        return inZone(*date + *time, reading);
    }
    const auto offset = offsetIn(scanner);
    return offset && scanner.atEnd() ? std::optional(sys_seconds(*date + *time - *offset)) : std::nullopt;
}

}  // namespace

std::optional<sys_seconds> timeOf(std::string_view text, const TimeReading& reading) {
    const auto time =
        reading.format.empty() ? anyTime(text, reading) : inOwnFormat(std::string(text), reading);
    constexpr std::chrono::sys_days kEnd = std::chrono::year(10000) / 1 / 1;
    return time && *time >= sys_seconds() && *time < kEnd ? time : std::nullopt;
}

std::optional<seconds> durationOf(std::string_view text) {
    constexpr std::size_t kMaxDigits = 9;
    constexpr std::int64_t kMaxDuration = 999'999'999;
    Scanner scanner(text);
    const auto first = scanner.number(1, kMaxDigits);
    if (!first) {
        return std::nullopt;
    }
    std::int64_t total = *first;
    for (int parts = 1; parts < 3 && scanner.skip(":"); ++parts) {
        const auto part = scanner.number(2, 2);
        if (!part || *part > 59) {
            return std::nullopt;
        }
        total = total * 60 + *part;
    }
    skipFraction(scanner);
    return scanner.atEnd() && total <= kMaxDuration ? std::optional(seconds(total)) : std::nullopt;
}

std::string durationText(seconds duration) {
    const auto count = duration.count();
    char text[64];
    if (count < 3600) {
        std::snprintf(text, sizeof text, "%d:%02d", static_cast<int>(count / 60),
                      static_cast<int>(count % 60));
    } else {
        std::snprintf(text, sizeof text, "%lld:%02d:%02d", static_cast<long long>(count / 3600),
                      static_cast<int>(count / 60 % 60), static_cast<int>(count % 60));
    }
    return text;
}

}  // namespace host
