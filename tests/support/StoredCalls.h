#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

#include "host/data/PartyRows.h"
#include "host/database/Database.h"
#include "journal-items/ListTraits.h"

namespace journaltest {

/// A call of the line "2001" as a test stores it.
struct StoredCall {
    ListName list = ListName::eMissed;
    std::int64_t start = 0;
    std::string number{};
    std::string name{};
    std::int64_t duration = 0;
    std::int32_t reason = 0;
    /// With an entry of its own that was not viewed yet.
    bool unviewed = false;
};

/// Writes the rows of a call; returns its id.
inline std::int64_t store(host::Database& database, const StoredCall& call) {
    constexpr const char* kInsertItem = R"sql(
        INSERT INTO call_item (line, list, sort_key, entry_id, first_name, surname, picture_clip, viewed, group_by)
        VALUES ('2001', 0, '', '', '', '', '', 0, ''))sql";
    constexpr const char* kInsert = R"sql(
        INSERT INTO call (item, list, start, duration, reason, party, line, item_order, listed, call_id, part,
            end_approximate, connected_number, text_c, text_d, time_and_date, log_target, presentation_a,
            presentation_b, presentation_c, presentation_d, duration_text, time_format,
            redirecting_number_presentation, redirecting_name_presentation, transfer_number_type,
            redirecting_reason, completed_elsewhere, group_text, line_key, substitute_number,
            feature_access_code, forwarded_to_number, forwarding_target, forwarding_reason)
        VALUES (?, ?, ?, ?, ?, ?, '2001', 0, 0, '', 0, 0, '', '', '', '', 0, 0, 0, 0, 0, '', 0, 0, 0, 0, 0, 0,
            '', '', '', 0, '', 0, 0))sql";
    std::int64_t id = 0;
    const std::string line = "2001";
    if (!database.write("storing a call", [&](host::Database::Session& session) {
            const std::int64_t party = host::PartyRows(session, line, nullptr).idOf(call.number, call.name);
            std::optional<std::int64_t> item;
            if (call.unviewed) {
                session.query(kInsertItem).run();
                item = session.lastInsertedId();
            }
            host::Query query = session.query(kInsert);
            query.bind(item).bind(static_cast<std::int32_t>(call.list)).bind(call.start).bind(call.duration);
            query.bind(call.reason).bind(party).run();
            id = session.lastInsertedId();
        })) {
        throw std::runtime_error("the call was not stored");
    }
    return id;
}

}  // namespace journaltest
