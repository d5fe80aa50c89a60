#pragma once

#include <cstdint>
#include <string>

#include "host/calls/LiveCallStoreIfc.h"

namespace host {

/// The SQL of the table `live_call`, and the conversion of its columns.
struct LiveCallRows {
    static constexpr const char* kWrite = R"sql(
INSERT OR REPLACE INTO live_call (line, device, call_id, first_event, role, outgoing, conference, conference_id,
    marked_missed, pick_up, transferred, elsewhere, reason, calling_number, calling_name, called_number, called_name,
    redirecting_number, redirecting_name, partner_number, partner_name, others, established, last_event, seen,
    ended, end_approximate)
VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)
)sql";
    static constexpr const char* kRead = R"sql(
SELECT device, call_id, first_event, role, outgoing, conference, conference_id, marked_missed,
    pick_up, transferred, elsewhere, reason, calling_number, calling_name, called_number, called_name,
    redirecting_number, redirecting_name, partner_number, partner_name, others, established, last_event, seen, ended, end_approximate
FROM live_call WHERE line = ? ORDER BY first_event
)sql";
    static constexpr const char* kRemove =
        "DELETE FROM live_call WHERE line = ? AND device = ? AND call_id = ? AND first_event = ?";
    /// An ended call that is filed later, when no event that ends it is being delivered.
    static constexpr const char* kRemoveEnded =
        "DELETE FROM live_call WHERE line = ? AND call_id = ? AND ended IS NOT NULL";

    /// Times are microseconds since 1970.
    [[nodiscard]] static std::int64_t numberOf(PhoneCall::Time time) {
        return std::chrono::duration_cast<std::chrono::microseconds>(time.time_since_epoch()).count();
    }
    [[nodiscard]] static PhoneCall::Time timeOf(std::int64_t number) {
        return PhoneCall::Time(std::chrono::microseconds(number));
    }
};

}  // namespace host
