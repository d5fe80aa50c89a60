#include "host/data/CallPlace.h"

#include <algorithm>
#include <optional>

namespace host {
namespace {

// The row of an occurrence that no entry lists: its call has left its entry, or is one of the older calls of
// the entry. Compares the text of the time, since the begin of one in local time depends on the zone.
// Without the name of the index SQLite reads all calls of the list.
constexpr const char* kFindById = R"sql(
SELECT call.id, start, part, listed = 0 AND list = ? AND number = ? AND time_and_date = ?
FROM call INDEXED BY call_identity JOIN party ON party.id = call.party
WHERE call_id <> '' AND call.line = ? AND call_id = ?
)sql";
constexpr const char* kFindOfItem = R"sql(
SELECT call.id FROM call JOIN party ON party.id = call.party
WHERE item = ? AND call_id = '' AND number = ? AND time_and_date = ? AND listed = 0
)sql";

/// `std::nullopt` if no call has the call id.
std::optional<CallPlace> placeById(Database::Session& session, const std::string& line, const CallInfo& info,
                                   ListName list, std::int64_t start) {
    Query rows = session.query(kFindById);
    rows.bind(static_cast<std::int32_t>(list)).bind(info.getNumber()).bind(info.getTimeAndDate());
    rows.bind(line).bind(info.getCallId());
    std::optional<CallPlace> place;
    while (rows.next()) {
        place = place.value_or(CallPlace());
        const std::int64_t id = rows.number();
        const bool hasStart = rows.number() == start;
        const std::int64_t part = rows.number();
        if (rows.flag() && place->id == 0) {
            place->id = id;
        }
        if (hasStart) {
            place->part = std::max(place->part, part + 1);
        }
    }
    return place;
}

}  // namespace

CallPlace callPlace(Database::Session& session, const std::string& line, const CallInfo& info, ListName list,
                    std::int64_t item, std::int64_t start) {
    if (info.getCallId().empty()) {
        Query rows = session.query(kFindOfItem);
        rows.bind(item).bind(info.getNumber()).bind(info.getTimeAndDate());
        return {.id = rows.next() ? rows.number() : 0};
    }
    std::optional<CallPlace> place = placeById(session, line, info, list, start);
    if (place) {
        // An eviction that waits may leave the call without an entry.
        session.makeDeferred();
        place = placeById(session, line, info, list, start);
    }
    return place.value_or(CallPlace());
}

}  // namespace host
