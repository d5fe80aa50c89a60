#include "host/data/CallTimes.h"

#include <algorithm>
#include <ratio>

namespace host {
namespace {

using std::chrono::sys_seconds;
using Quarters = std::chrono::duration<std::int64_t, std::ratio<900>>;

constexpr const char* kCounts = R"sql(
SELECT start / 900, sum(list = 0), sum(list = 1), sum(list = 2), sum(list = 3)
FROM call WHERE line = ? AND list IN (0, 1, 2, 3) AND start >= ? GROUP BY start / 900 ORDER BY start / 900
)sql";

}  // namespace

std::vector<QuarterOfCalls> CallTimes::since(sys_seconds from) {
    // A text that is no time is stored as 0. Before 1970 the division would round the other way.
    const std::int64_t first = std::max(from.time_since_epoch().count(), std::int64_t{1});
    Query query = m_session.query(kCounts);
    query.bind(m_line).bind(first);
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
