#include "host/served-lines/LineRows.h"

#include "host/database/Database.h"

namespace host {
namespace {

constexpr std::int64_t kCallsAtOnce = 1000;

/// In an order that leaves no reference to a row that is gone.
constexpr const char* kPurge[] = {
    "DELETE FROM call_item WHERE line = ?",
    "DELETE FROM callback WHERE line = ?",
    "DELETE FROM party WHERE line = ?",
    "DELETE FROM party_note WHERE line = ?",
    "DELETE FROM contact_number WHERE line = ?",
    "DELETE FROM contact WHERE line = ?",
    "DELETE FROM contact_number_rules WHERE line = ?",
    "DELETE FROM setting WHERE line = ?",
    "DELETE FROM management_value WHERE line = ?",
    "DELETE FROM live_call WHERE line = ?",
    "DELETE FROM webhook_event WHERE line = ?",
    "DELETE FROM access_token WHERE line = ?",
    "DELETE FROM line WHERE device = ?",
};

constexpr const char* kEntriesOfLines = R"sql(
SELECT line, list, count(*) FROM call_item GROUP BY line, list
UNION ALL SELECT line, 4, count(*) FROM callback GROUP BY line
)sql";

constexpr const char* kEntries = R"sql(
SELECT '', list, count(*) FROM call_item GROUP BY list
UNION ALL SELECT '', 4, count(*) FROM callback
)sql";

}  // namespace

std::optional<std::vector<LineRow>> LineRows::read() const {
    std::vector<LineRow> rows;
    const bool done = m_database.read("reading the lines", [&rows](DatabaseSession& session) {
        Query query = session.query("SELECT device, name, switch, removed FROM line ORDER BY device");
        while (query.next()) {
            LineRow row;
            row.device = query.text();
            row.name = query.text();
            row.switchName = query.text();
            row.isRemoved = query.flag();
            rows.push_back(std::move(row));
        }
    });
    return done ? std::optional(std::move(rows)) : std::nullopt;
}

bool LineRows::store(const LineRow& row) {
    return m_database.write("storing a line", [&row](DatabaseSession& session) {
        session.query("INSERT OR REPLACE INTO line (device, name, switch, removed) VALUES (?, ?, ?, ?)")
            .bind(row.device)
            .bind(row.name)
            .bind(row.switchName)
            .bind(row.isRemoved)
            .run();
    });
}

bool LineRows::purge(const std::string& device) {
    int removed = 1;
    while (removed > 0) {
        const bool done = m_database.write("deleting the calls of a line", [&](DatabaseSession& session) {
            removed =
                session.query("DELETE FROM call WHERE id IN (SELECT id FROM call WHERE line = ? LIMIT ?)")
                    .bind(device)
                    .bind(kCallsAtOnce)
                    .run();
        });
        if (!done) {
            return false;
        }
    }
    return m_database.write("deleting a line", [&](DatabaseSession& session) {
        for (const char* each : kPurge) {
            session.query(each).bind(device).run();
        }
    });
}

std::optional<std::map<std::string, std::size_t>> LineRows::unviewed() const {
    std::map<std::string, std::size_t> counts;
    const bool done = m_database.readAside("counting the missed calls", [&](DatabaseSession& session) {
        Query query =
            session.query("SELECT line, count(*) FROM call_item WHERE list = 0 AND viewed = 0 GROUP BY line");
        while (query.next()) {
            std::string line = query.text();
            counts[std::move(line)] = static_cast<std::size_t>(query.number());
        }
    });
    return done ? std::optional(std::move(counts)) : std::nullopt;
}

std::optional<std::map<std::string, Metrics::LineGauges>> LineRows::entries(bool isByLine) const {
    std::map<std::string, Metrics::LineGauges> gauges;
    const bool done = m_database.readAside("counting the entries", [&](DatabaseSession& session) {
        Query query = session.query(isByLine ? kEntriesOfLines : kEntries);
        while (query.next()) {
            Metrics::LineGauges& values = gauges[query.text()];
            const auto list = static_cast<ListName>(query.smallNumber());
            values.entries[list] = static_cast<std::size_t>(query.number());
        }
    });
    return done ? std::optional(std::move(gauges)) : std::nullopt;
}

}  // namespace host
