#include "host/data/ApproximateEnds.h"

namespace host {
namespace {

constexpr const char* kRemoveDeleted = R"sql(
DELETE FROM approximate_end WHERE line = ? AND NOT EXISTS (
    SELECT 1 FROM occurrence WHERE occurrence.line = approximate_end.line
        AND occurrence.number = approximate_end.number AND occurrence.time_and_date = approximate_end.time)
)sql";

}  // namespace

void ApproximateEnds::load(Database& database) {
    Ends ends;
    const auto read = [&](Database::Session& session) {
        ends.clear();
        Query rows = session.query("SELECT number, time FROM approximate_end WHERE line = ?");
        rows.bind(m_line);
        while (rows.next()) {
            std::string number = rows.text();
            ends.emplace(std::move(number), rows.text());
        }
    };
    static_cast<void>(database.read("reading the approximate ends", read));
    if (!ends.empty()) {
        static_cast<void>(database.write("removing approximate ends", [&](Database::Session& session) {
            session.query(kRemoveDeleted).bind(m_line).run();
            read(session);
        }));
    }
    const std::lock_guard lock(m_mutex);
    m_ends = std::move(ends);
}

void ApproximateEnds::write(Database::Session& session, const CallInfo& occurrence) const {
    session.query("INSERT OR IGNORE INTO approximate_end (line, number, time) VALUES (?, ?, ?)")
        .bind(m_line)
        .bind(occurrence.getNumber())
        .bind(occurrence.getTimeAndDate())
        .run();
}

void ApproximateEnds::add(const CallInfo& occurrence) {
    const std::lock_guard lock(m_mutex);
    m_ends.emplace(occurrence.getNumber(), occurrence.getTimeAndDate());
}

bool ApproximateEnds::contains(const std::string& number, const std::string& time) const {
    const std::lock_guard lock(m_mutex);
    return m_ends.contains({number, time});
}

}  // namespace host
