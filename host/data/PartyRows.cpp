#include "host/data/PartyRows.h"

#include <utility>
#include <vector>

#include "platform/digits/DigitAnalysisServiceIfc.h"

namespace host {
namespace {

constexpr const char* kFind = "SELECT id FROM party WHERE line = ? AND number = ? AND name = ?";

constexpr const char* kInsert = R"sql(
INSERT INTO party (line, number, name, lookup, search) VALUES (?1, ?2, ?3, ?4, search_text(?3, ?2))
)sql";

constexpr const char* kRemoveUnused = R"sql(
DELETE FROM party WHERE line = ?
    AND NOT EXISTS (SELECT 1 FROM call WHERE call.party = party.id)
    AND NOT EXISTS (SELECT 1 FROM call WHERE call.connected = party.id AND connected <> party)
    AND NOT EXISTS (SELECT 1 FROM call WHERE call.redirecting = party.id)
)sql";

constexpr const char* kRemoveOneUnused = R"sql(
DELETE FROM party WHERE line = ? AND id = ?
    AND NOT EXISTS (SELECT 1 FROM call WHERE call.party = party.id)
    AND NOT EXISTS (SELECT 1 FROM call WHERE call.connected = party.id AND connected <> party)
    AND NOT EXISTS (SELECT 1 FROM call WHERE call.redirecting = party.id)
)sql";

}  // namespace

std::int64_t PartyRows::idOf(const std::string& number, const std::string& name) {
    Query find = m_session.query(kFind);
    if (find.bind(m_line).bind(number).bind(name).next()) {
        return find.number();
    }
    m_session.query(kInsert).bind(m_line).bind(number).bind(name).bind(lookupOf(number)).run();
    return m_session.lastInsertedId();
}

void PartyRows::removeUnused() {
    m_session.query(kRemoveUnused).bind(m_line).run();
}

void PartyRows::removeUnused(const std::set<std::int64_t>& parties) {
    Query remove = m_session.query(kRemoveOneUnused);
    for (const std::int64_t party : parties) {
        remove.again().bind(m_line).bind(party).run();
    }
}

void PartyRows::reindex() {
    std::vector<std::pair<std::int64_t, std::string>> parties;
    {
        Query query = m_session.query("SELECT id, number FROM party WHERE line = ?");
        query.bind(m_line);
        while (query.next()) {
            const std::int64_t id = query.number();
            parties.emplace_back(id, query.text());
        }
    }
    Query update = m_session.query("UPDATE party SET lookup = ? WHERE id = ?");
    for (auto& [id, number] : parties) {
        update.again().bind(lookupOf(std::move(number))).bind(id).run();
    }
}

std::string PartyRows::lookupOf(std::string number) const {
    if (m_digits != nullptr) {
        m_digits->normalise(number);
    }
    return number;
}

}  // namespace host
