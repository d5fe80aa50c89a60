#include "host/data/CallStart.h"

#include <charconv>

namespace host {
namespace {

// The database would accept other texts as a time, "now" among them. A text that is no time is 0.
constexpr const char* kStart = R"sql(
SELECT CASE WHEN ?1 GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]?*'
        THEN coalesce(CAST(strftime('%s', ?1) AS INTEGER), 0) ELSE 0 END
    - CASE WHEN ?2 AND substr(?1, 11) NOT GLOB '*[-+Zz]*' THEN ?3 ELSE 0 END
)sql";

}  // namespace

std::optional<std::int64_t> utcSecondsOf(std::string_view text) noexcept {
    constexpr std::string_view kForm = "0000-00-00T00:00:00Z";
    if (text.size() != kForm.size()) {
        return std::nullopt;
    }
    for (std::size_t at = 0; at < kForm.size(); ++at) {
        const bool isDigit = text[at] >= '0' && text[at] <= '9';
        if (kForm[at] == '0' ? !isDigit : text[at] != kForm[at]) {
            return std::nullopt;
        }
    }
    const auto number = [&](std::size_t at, std::size_t size) {
        int value = 0;
        std::from_chars(text.data() + at, text.data() + at + size, value);
        return value;
    };
    const std::chrono::year_month_day day(std::chrono::year(number(0, 4)),
                                          std::chrono::month(static_cast<unsigned>(number(5, 2))),
                                          std::chrono::day(static_cast<unsigned>(number(8, 2))));
    const int hour = number(11, 2);
    const int minute = number(14, 2);
    const int second = number(17, 2);
    if (!day.ok() || hour > 23 || minute > 59 || second > 59) {
        return std::nullopt;
    }
    const auto time = std::chrono::sys_days(day) + std::chrono::hours(hour) + std::chrono::minutes(minute);
    return std::chrono::seconds(time.time_since_epoch()).count() + second;
}

std::int64_t callStart(DatabaseSession& session, const std::string& text, bool isLocal,
                       std::chrono::seconds ahead) {
    if (const auto seconds = utcSecondsOf(text)) {
        return *seconds;
    }
    Query query = session.query(kStart);
    query.bind(text).bind(isLocal).bind(std::int64_t{ahead.count()});
    return query.next() ? query.number() : 0;
}

}  // namespace host
