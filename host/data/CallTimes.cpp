#include "host/data/CallTimes.h"

#include <algorithm>
#include <ratio>

#include "platform/csta/CallLogEntryEvent.h"

namespace host {
namespace {

using std::chrono::seconds;
using std::chrono::sys_seconds;
using Quarters = std::chrono::duration<std::int64_t, std::ratio<900>>;

// The database would accept other texts as a time, "now" among them. Texts of days before the first one,
// in any zone, are skipped before the costly computation.
constexpr const char* kCounts = R"sql(
WITH call AS MATERIALIZED (
    SELECT call_item.list,
        CAST(strftime('%s', occurrence.time_and_date) AS INTEGER)
            - CASE WHEN occurrence.time_format = ?
                        AND substr(occurrence.time_and_date, 11) NOT GLOB '*[-+Zz]*'
                   THEN ? ELSE 0 END AS began
    FROM call_item JOIN occurrence ON occurrence.item = call_item.id
    WHERE call_item.line = ? AND occurrence.time_and_date >= strftime('%Y-%m-%d', ?, 'unixepoch', '-1 day')
        AND occurrence.time_and_date GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]?*'
)
SELECT began / 900, sum(list = 0), sum(list = 1), sum(list = 2), sum(list = 3)
FROM call WHERE began >= ? GROUP BY began / 900 ORDER BY began / 900
)sql";

}  // namespace

std::vector<QuarterOfCalls> CallTimes::since(sys_seconds from, seconds phoneAhead) {
    // Before 1970 the division would round the other way.
    const std::int64_t first = std::max(from, sys_seconds()).time_since_epoch().count();
    Query query = m_session.query(kCounts);
    query.bind(std::int32_t{CallLogEntryEvent::eTimeLocal}).bind(std::int64_t{phoneAhead.count()});
    query.bind(m_line).bind(first).bind(first);
    std::vector<QuarterOfCalls> quarters;
    while (query.next()) {
        QuarterOfCalls& quarter = quarters.emplace_back();
        quarter.begin = sys_seconds(Quarters(query.number()));
        for (std::int64_t& count : quarter.calls) {
            count = query.number();
        }
    }
    return quarters;
}

}  // namespace host
