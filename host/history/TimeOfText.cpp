#include "host/history/FilterText.h"
#include "host/history/TextCursor.h"

namespace host {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::local_days;
using std::chrono::local_seconds;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_seconds;
using std::chrono::weeks;

std::optional<seconds> unitOf(char letter) {
    switch (letter) {
        case 's': return seconds(1);
        case 'm': return minutes(1);
        case 'h': return hours(1);
        case 'd': return days(1);
        case 'w': return weeks(1);
        default: return std::nullopt;
    }
}

/// "7d"; the greatest number is about 27 years in hours.
std::optional<seconds> periodIn(std::string_view text) {
    TextCursor cursor(text);
    const auto number = cursor.takeNumber(1, 5);
    const auto unit = unitOf(cursor.takeOneOf("mhdw"));
    return number && unit && cursor.atEnd() ? std::optional(*number * *unit) : std::nullopt;
}

std::optional<local_days> takeDate(TextCursor& cursor) {
    const auto year = cursor.takeNumber(4, 4);
    const bool first = cursor.takeOneOf("-") != '\0';
    const auto month = cursor.takeNumber(2, 2);
    const bool second = cursor.takeOneOf("-") != '\0';
    const auto day = cursor.takeNumber(2, 2);
    if (!year || !first || !month || !second || !day || *year < 1970) {
        return std::nullopt;
    }
    const std::chrono::year_month_day date(std::chrono::year(static_cast<int>(*year)),
                                           std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*day)));
    return date.ok() ? std::optional(local_days(date)) : std::nullopt;
}

/// "10:00" or "10:00:30".
std::optional<seconds> takeTimeOfDay(TextCursor& cursor) {
    const auto hour = cursor.takeNumber(2, 2);
    const bool colon = cursor.takeOneOf(":") != '\0';
    const auto minute = cursor.takeNumber(2, 2);
    const auto second =
        cursor.takeOneOf(":") != '\0' ? cursor.takeNumber(2, 2) : std::optional<std::int64_t>(0);
    if (!hour || !colon || !minute || !second || *hour > 23 || *minute > 59 || *second > 59) {
        return std::nullopt;
    }
    return hours(*hour) + minutes(*minute) + seconds(*second);
}

/// "Z", "+01:00", "+0100" or "+01". A blank stands for the "+", which the query of an address has as one.
std::optional<seconds> takeOffset(TextCursor& cursor) {
    const char sign = cursor.takeOneOf("Z+- ");
    if (sign == 'Z') {
        return seconds(0);
    }
    const auto hour = cursor.takeNumber(2, 2);
    const bool colon = cursor.takeOneOf(":") != '\0';
    const auto minute = colon || !cursor.atEnd() ? cursor.takeNumber(2, 2) : std::optional<std::int64_t>(0);
    if (sign == '\0' || !hour || !minute || *hour > 14 || *minute > 59) {
        return std::nullopt;
    }
    const seconds ahead = hours(*hour) + minutes(*minute);
    return sign == '-' ? -ahead : ahead;
}

}  // namespace

std::optional<sys_seconds> timeOfText(std::string_view text, sys_seconds now, const Zone& zone) {
    if (const auto back = periodIn(text)) {
        return now - *back;
    }
    if (text == "today" || text == "yesterday") {
        const auto day = std::chrono::floor<days>(zone.localOf(now));
        return zone.utcOf(text == "today" ? day : day - days(1));
    }
    TextCursor cursor(text);
    const auto date = takeDate(cursor);
    if (!date || cursor.atEnd()) {
        return date ? std::optional(zone.utcOf(*date)) : std::nullopt;
    }
    const bool separated = cursor.takeOneOf("T ") != '\0';
    const auto timeOfDay = takeTimeOfDay(cursor);
    if (!separated || !timeOfDay) {
        return std::nullopt;
    }
    const local_seconds local = *date + *timeOfDay;
    if (cursor.atEnd()) {
        return zone.utcOf(local);
    }
    const auto ahead = takeOffset(cursor);
    return ahead && cursor.atEnd() ? std::optional(sys_seconds(local.time_since_epoch() - *ahead))
                                   : std::nullopt;
}

std::optional<seconds> durationOfText(std::string_view text) {
    seconds sum(0);
    TextCursor cursor(text);
    do {
        const auto number = cursor.takeNumber(1, 9);
        // A number without any unit counts seconds.
        const bool isPlain = cursor.atEnd() && text.find_first_not_of("0123456789") == std::string_view::npos;
        const auto unit = isPlain ? std::optional(seconds(1)) : unitOf(cursor.takeOneOf("smh"));
        if (!number || !unit) {
            return std::nullopt;
        }
        sum += *number * *unit;
    } while (!cursor.atEnd());
    return sum;
}

}  // namespace host
