#include "host/stored-lists/UnviewedCount.h"

namespace host {
namespace {

constexpr const char* kAll = "SELECT id FROM call_item WHERE line = ? AND list = 0 AND viewed = 0";
constexpr const char* kOne = "SELECT 1 FROM call_item WHERE id = ? AND line = ? AND list = 0 AND viewed = 0";

}  // namespace

std::optional<std::size_t> UnviewedCount::now() {
    const std::lock_guard lock(m_mutex);
    m_database.makeDeferred();
    RowChanges& noted = changes();
    const std::uint64_t settled = noted.settled();
    if (m_known) {
        if (const auto rows = noted.since(*m_known); rows && rows->empty()) {
            return m_entries.size();
        }
    }
    const bool done = m_database.readAside("counting unviewed entries",
                                           [&](Database::Session& session) { update(session, noted); });
    m_known = done ? std::optional(settled) : std::nullopt;
    return done ? std::optional(m_entries.size()) : std::nullopt;
}

// All remote clients get the count, one after the other.
RowChanges& UnviewedCount::changes() {
    constexpr std::chrono::milliseconds kBetweenNotes{2};
    const Clock::time_point now = Clock::now();
    if (m_changes == nullptr || now - m_foreignNoted >= kBetweenNotes) {
        m_changes = &m_database.rowChanges();
        m_foreignNoted = now;
    }
    return *m_changes;
}

void UnviewedCount::update(Database::Session& session, const RowChanges& changes) {
    // The first read begins the state that is read: what is noted later is not in it.
    static_cast<void>(isUnviewed(session, 0));
    if (const auto rows = m_known ? changes.since(*m_known) : std::nullopt) {
        readSome(session, *rows);
    } else {
        readAll(session);
    }
}

bool UnviewedCount::isUnviewed(Database::Session& session, std::int64_t entry) const {
    return session.query(kOne).bind(entry).bind(m_line).next();
}

void UnviewedCount::readAll(Database::Session& session) {
    m_entries.clear();
    Query all = session.query(kAll);
    all.bind(m_line);
    while (all.next()) {
        m_entries.insert(all.number());
    }
}

void UnviewedCount::readSome(Database::Session& session, const std::vector<RowChanges::Row>& rows) {
    for (const RowChanges::Row& row : rows) {
        if (row.table == RowChanges::Table::eItem) {
            if (isUnviewed(session, row.id)) {
                m_entries.insert(row.id);
            } else {
                m_entries.erase(row.id);
            }
        }
    }
}

}  // namespace host
