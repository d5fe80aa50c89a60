#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/history/CallFilter.h"
#include "host/history/Zone.h"

namespace host {

/// A grouping of calls. eHour is the hour of the day, eWeekday the day of the week.
enum class CallGrouping { eDay, eHour, eWeekday, eParty, eList };

/// The counts of some calls. A plain value.
struct CallCounts {
    /// The sum of the five that follow.
    std::int64_t calls = 0;
    /// Calls that came in and were answered here.
    std::int64_t received = 0;
    /// Calls that came in and were not answered, without those of the next count.
    std::int64_t missed = 0;
    /// Calls that were answered at another phone.
    std::int64_t completedElsewhere = 0;
    std::int64_t dialled = 0;
    std::int64_t forwarded = 0;
    std::chrono::seconds talkTime{0};
    std::chrono::seconds longest{0};
    /// The median of the times from a missed call to the first call that was dialled to its party after it;
    /// std::nullopt if no caller was called back, and in counts by list.
    std::optional<std::chrono::seconds> callBackTime;

    CallCounts& operator+=(const CallCounts& other);
};

/// The counts of one day, hour, day of the week, party or list. A plain value.
struct CallGroup {
    /// The number of days since 1970, the hour from 0 to 23, the day of the week from 1 (Monday) to 7, an
    /// id of the party, or the `ListName`.
    std::int64_t key = 0;
    CallCounts counts;
    // Set for parties only: the number as it was last filed, the name that is shown for it; empty for the
    // calls without a number.
    std::string number{};
    std::string displayName{};
};

struct StatisticsQuery {
    CallFilter filter;
    std::optional<CallGrouping> by;
    Zone zone;
    /// The greatest number of parties.
    std::size_t parties = 10;
};

struct StatisticsResult {
    CallCounts totals;
    /// In the order of their keys; every list, with calls or without. Parties, which a query without grouping
    /// has too: those with most calls, these first. All calls without a number are one party.
    std::vector<CallGroup> groups;
};

}  // namespace host
