#include "host/history/CallGroupKey.h"

#include <algorithm>

#include "host/database/Query.h"

namespace host {
namespace {

using std::chrono::sys_seconds;

std::int64_t numberOf(sys_seconds time) {
    return time.time_since_epoch().count();
}

}  // namespace

CallGroupKey::CallGroupKey(const StatisticsQuery& query, sys_seconds now) {
    const CallGrouping by = query.by.value_or(CallGrouping::eParty);
    if (by == CallGrouping::eParty || by == CallGrouping::eList) {
        m_expression = by == CallGrouping::eParty ? "person" : "list";
        return;
    }
    const sys_seconds since = std::max(query.filter.since.value_or(sys_seconds()), sys_seconds());
    const auto offsets = query.zone.offsets(since, query.filter.until.value_or(now));
    // The newest first: most calls are new.
    std::string ahead;
    for (auto each = offsets.rbegin(); std::next(each) != offsets.rend(); ++each) {
        ahead += " WHEN start >= ? THEN ?";
        m_values.push_back(numberOf(each->from));
        m_values.push_back(each->ahead.count());
    }
    m_values.push_back(offsets.front().ahead.count());
    const std::string local = ahead.empty() ? "(start + ?)" : "(start + CASE" + ahead + " ELSE ? END)";
    switch (by) {
        case CallGrouping::eDay: m_expression = local + " / 86400"; break;
        case CallGrouping::eHour: m_expression = local + " % 86400 / 3600"; break;
        // The first of January 1970 was a Thursday.
        default: m_expression = '(' + local + " / 86400 + 3) % 7 + 1"; break;
    }
}

void CallGroupKey::bind(Query& query) const {
    for (const std::int64_t value : m_values) {
        query.bind(value);
    }
}

}  // namespace host
