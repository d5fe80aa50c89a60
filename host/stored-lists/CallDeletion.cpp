#include "host/stored-lists/CallDeletion.h"

#include <type_traits>
#include <utility>
#include <vector>

#include "host/history/CallSelection.h"
#include "host/stored-lists/PartyErasure.h"
#include "journal-items/Occurrences.h"

namespace host {
namespace {

constexpr std::int64_t kBatch = 1000;
constexpr int kAttempts = 20;

struct Affected {
    ListName list = ListName::eMissed;
    std::int64_t item = 0;
};

std::string countOf(const std::string& condition) {
    return "SELECT count(*) FROM call WHERE " + condition;
}

}  // namespace

std::optional<std::size_t> CallDeletion::remove(const CallFilter& filter) {
    const StoredEntries::Sources& sources = m_entries.sources();
    const CallSelection selection(sources.line, filter, sources.digits);
    const auto removed =
        remove({selection.condition(), [&selection](Query& query) { selection.bind(query); }}, true);
    CallFilter onlyNumber;
    onlyNumber.number = filter.number;
    if (removed && !filter.number.empty() && filter == onlyNumber &&
        !PartyErasure(m_entries).erase(filter.number)) {
        return std::nullopt;
    }
    if (sources.resync) {
        sources.resync();
    }
    return removed;
}

std::optional<std::size_t> CallDeletion::remove(std::int64_t id) {
    const std::string& line = m_entries.sources().line;
    return remove({"call.line = ? AND call.id = ?", [&](Query& query) { query.bind(line).bind(id); }}, true);
}

std::optional<std::size_t> CallDeletion::removeOlderThan(std::chrono::sys_seconds time) {
    const std::string& line = m_entries.sources().line;
    const std::int64_t limit = time.time_since_epoch().count();
    return remove({"call.line = ? AND call.list IN (0, 1, 2, 3) AND call.start > 0 AND call.start < ?",
                   [&](Query& query) { query.bind(line).bind(limit); }},
                  false);
}

std::optional<std::size_t> CallDeletion::remove(const Condition& selected, bool reportsRemoved) {
    const std::optional<std::int64_t> newest = number("SELECT coalesce(max(id), 0) FROM call", [](Query&) {});
    // A call that is filed during the deletion stays.
    const Condition condition{selected.text + " AND call.id <= ?", [&](Query& query) {
                                  selected.bind(query);
                                  query.bind(*newest);
                              }};
    const std::optional<std::int64_t> before = newest ? count(condition) : std::nullopt;
    std::optional<std::int64_t> remaining = before;
    // Another change may give an entry one of the calls again that was not listed before.
    for (int attempt = 0; remaining && *remaining > 0 && attempt < kAttempts; ++attempt) {
        if (!changeEntries(condition, reportsRemoved) || !removeRows(condition)) {
            return std::nullopt;
        }
        remaining = count(condition);
    }
    return remaining == std::int64_t{0} ? std::optional(static_cast<std::size_t>(*before)) : std::nullopt;
}

std::optional<std::int64_t> CallDeletion::count(const Condition& condition) {
    return number(countOf(condition.text), condition.bind);
}

std::optional<std::int64_t> CallDeletion::number(const std::string& sql,
                                                 const std::function<void(Query&)>& bind) {
    std::int64_t number = 0;
    const bool done =
        m_entries.sources().database.readAside("counting calls", [&](Database::Session& session) {
            Query query = session.query(sql.c_str());
            bind(query);
            number = query.next() ? query.number() : 0;
        });
    return done ? std::optional(number) : std::nullopt;
}

bool CallDeletion::changeEntries(const Condition& condition, bool reportsRemoved) {
    std::vector<Affected> affected;
    if (!m_entries.sources().database.readAside("finding entries", [&](Database::Session& session) {
            affected.clear();
            Query query = session.query(
                ("SELECT DISTINCT list, item FROM call WHERE item IS NOT NULL AND " + condition.text)
                    .c_str());
            condition.bind(query);
            while (query.next()) {
                const auto list = static_cast<ListName>(query.smallNumber());
                affected.push_back({list, query.number()});
            }
        })) {
        return false;
    }
    const auto keepOthers = [&condition]<typename Item>(Database::Session& session,
                                                        const HistoryRows::Context& context, Item& item,
                                                        std::int64_t id) {
        std::vector<std::int64_t> others;
        Query query = session.query(("SELECT call.id FROM call WHERE item = ? AND NOT (" + condition.text +
                                     ") ORDER BY item_order DESC LIMIT ?")
                                        .c_str());
        query.bind(id);
        condition.bind(query);
        query.bind(std::int64_t{Item::kMaxOccurrences});
        while (query.next()) {
            others.push_back(query.number());
        }
        std::list<typename ListTraits<Item>::Info> occurrences;
        HistoryRows(session, context).read(id, others, occurrences);
        const bool changes = !(occurrences == occurrencesOf(item));
        setOccurrences(item, occurrences);
        return changes;
    };
    for (const auto& [list, id] : affected) {
        const bool done = withItemOf(list, [&, id = id]<typename Item>() {
            if constexpr (std::is_same_v<Item, CallBackItem>) {
                return true;
            } else {
                return m_entries.change<Item>(
                    id, reportsRemoved,
                    [&](Database::Session& session, const HistoryRows::Context& context, Item& item) {
                        return keepOthers(session, context, item, id);
                    });
            }
        });
        if (!done) {
            return false;
        }
    }
    return true;
}

std::optional<std::size_t> CallDeletion::removeRows(const Condition& condition) {
    const StoredEntries::Sources& sources = m_entries.sources();
    std::size_t removed = 0;
    std::int64_t inBatch = kBatch;
    while (inBatch == kBatch) {
        const auto lock = m_entries.exclusive();
        if (!sources.database.write("deleting calls", [&](Database::Session& session) {
                // A call that an entry lists now leaves it first.
                Query query = session.query(
                    ("DELETE FROM call WHERE id IN (SELECT call.id FROM call WHERE listed = 0 AND " +
                     condition.text + " LIMIT ?)")
                        .c_str());
                condition.bind(query);
                inBatch = query.bind(kBatch).run();
                if (inBatch < kBatch) {
                    PartyRows(session, sources.line, sources.digits).removeUnused();
                }
            })) {
            return std::nullopt;
        }
        removed += static_cast<std::size_t>(inBatch);
    }
    sources.database.truncateLog();
    return removed;
}

}  // namespace host
