#include "host/stored-lists/StoredLists.h"

#include <algorithm>
#include <limits>

#include "host/data/CallBackRows.h"
#include "host/data/CallRows.h"
#include "host/presentation/ItemJson.h"
#include "host/presentation/ItemSearch.h"
#include "host/search/SearchText.h"

namespace host {
namespace {

using Json = StoredLists::Json;

constexpr std::int64_t kShownCalls = CallItemWithPicture::kMaxOccurrences;

// The entries that a search finds: by the item's name, by the names and numbers of its newest calls, or by a
// contact that has one of these numbers. The text and the number of the search are ?3 and ?4. A page without
// entries is one row without an id.
constexpr const char* kMatching = R"sql(
WITH matching AS (
    SELECT id, viewed, row_number() OVER (ORDER BY sort_key > ?8, sort_key DESC, entry_id DESC, id DESC) AS place
    FROM call_item WHERE line = ?1 AND list = ?2 AND (?3 = ''
        OR instr(search_text(first_name || ' ' || surname, ''), ?3)
        OR EXISTS (SELECT 1 FROM call JOIN party ON party.id = call.party
            WHERE call.id IN (SELECT id FROM call WHERE item = call_item.id ORDER BY item_order DESC LIMIT ?5)
                AND (instr(party.search, ?3)
                    OR (?4 <> '' AND instr(party.search || search_text('', call.connected_number), ?4))
                    OR EXISTS (SELECT 1 FROM contact_number JOIN contact ON contact.id = contact_number.contact
                        WHERE contact_number.line IN (?1, '') AND contact_number.number = party.lookup
                            AND instr(contact.search, ?3)))))
)
SELECT id, (SELECT count(*) FROM matching), (SELECT coalesce(sum(?2 = 0 AND viewed = 0), 0) FROM matching)
FROM (SELECT 1) LEFT JOIN matching ON place > ?6 ORDER BY place LIMIT ?7
)sql";

constexpr const char* kCounts = R"sql(
SELECT list, count(*) FROM call_item WHERE line = ?1 GROUP BY list
UNION ALL SELECT 4, count(*) FROM callback WHERE line = ?1
)sql";

// An entry that is dated in the future changes its place when its time has come.
constexpr const char* kFuture =
    "SELECT 1 FROM call_item WHERE line = ?1 AND list = ?2 AND sort_key > ?3 LIMIT 1";

std::int64_t bounded(std::size_t number) {
    constexpr auto kMost = static_cast<std::size_t>(std::numeric_limits<std::int64_t>::max());
    return static_cast<std::int64_t>(std::min(number, kMost));
}

}  // namespace

std::optional<DatabaseState> StoredLists::state() const {
    DatabaseState state;
    const bool done = m_database.readAside("reading the state of the lists",
                                           [&state](auto& session) { state = session.state(); });
    return done ? std::optional(state) : std::nullopt;
}

std::optional<DatabaseState> StoredLists::stateFor(Database::Session& session, ListName list) const {
    const DatabaseState state = session.state();
    Query future = session.query(kFuture);
    future.bind(m_line).bind(static_cast<std::int32_t>(list)).bind(CallRows::latestSortKey());
    return future.next() ? std::nullopt : std::optional(state);
}

std::optional<StoredLists::Page> StoredLists::page(ListName list, const std::string& search,
                                                   std::size_t offset, std::size_t limit) const {
    if (list == ListName::eCallbacks) {
        return callBackPage(search, offset, limit);
    }
    const SearchText text(search);
    Page page;
    const bool done = m_database.readAside("reading a list", [&](Database::Session& session) {
        page = {};
        page.state = stateFor(session, list);
        EntryReader reader(session, m_entries);
        Query rows = session.query(kMatching);
        rows.bind(m_line).bind(static_cast<std::int32_t>(list)).bind(text.text()).bind(text.number());
        // One row at least, for the counts.
        rows.bind(kShownCalls)
            .bind(bounded(limit == 0 ? 0 : offset))
            .bind(bounded(std::max<std::size_t>(limit, 1)))
            .bind(CallRows::latestSortKey());
        while (rows.next()) {
            const std::int64_t id = rows.number();
            page.total = static_cast<std::size_t>(rows.number());
            page.unviewed = static_cast<std::size_t>(rows.number());
            if (auto entry = limit > 0 ? reader.entry(list, id) : std::nullopt) {
                page.items.push_back(std::move(*entry));
            }
        }
    });
    return done ? std::optional(std::move(page)) : std::nullopt;
}

std::optional<std::string> StoredLists::pageText(ListName list, std::size_t offset, std::size_t limit) const {
    {
        const std::lock_guard lock(m_snapshotMutex);
        ListSnapshot& snapshot = m_snapshots.at(static_cast<std::size_t>(list));
        RowChanges& changes = m_database.rowChanges();
        const std::uint64_t settled = changes.settled();
        bool isShort = false;
        const bool done = m_database.readAside("reading a list", [&](Database::Session& session) {
            isShort = snapshot.update(session, {list, m_entries}, changes, settled);
        });
        if (!done) {
            snapshot.clear();
            return std::nullopt;
        }
        if (isShort) {
            return snapshot.page(list, offset, limit);
        }
    }
    std::optional<Page> read = page(list, {}, offset, limit);
    return read ? std::optional(jsonText({{"list", std::string(wordOf(list))},
                                          {"total", read->total},
                                          {"unviewed", read->unviewed},
                                          {"items", std::move(read->items)}}))
                : std::nullopt;
}

std::optional<StoredLists::Page> StoredLists::callBackPage(const std::string& search, std::size_t offset,
                                                           std::size_t limit) const {
    const SearchText text(search);
    Page page;
    const bool done = m_database.readAside("reading the callbacks", [&](Database::Session& session) {
        page = {};
        page.state = session.state();
        const EntryReader reader(session, m_entries);
        for (const CallBackItem& item : CallBackRows(session, m_line).all()) {
            if (itemMatches(item, text)) {
                const std::size_t at = page.total++;
                if (at >= offset && at - offset < limit) {
                    page.items.push_back(reader.entry(item));
                }
            }
        }
    });
    return done ? std::optional(std::move(page)) : std::nullopt;
}

std::optional<StoredLists::Json> StoredLists::entry(ListName list, const std::string& id) const {
    std::optional<Json> found;
    const bool done = m_database.readAside("reading an entry", [&](Database::Session& session) {
        found = EntryReader(session, m_entries).entryOf(list, id);
    });
    return done ? std::move(found) : std::nullopt;
}

std::optional<std::vector<StoredLists::Json>> StoredLists::entries(
    const std::vector<std::pair<ListName, std::string>>& ids) const {
    std::vector<Json> found;
    const bool done = m_database.readAsideSoon("reading entries", [&](Database::Session& session) {
        found.clear();
        EntryReader reader(session, m_entries);
        for (const auto& [list, id] : ids) {
            found.push_back(reader.entryOf(list, id));
        }
    });
    return done ? std::optional(std::move(found)) : std::nullopt;
}

std::optional<std::map<ListName, std::size_t>> StoredLists::counts() const {
    std::map<ListName, std::size_t> counts;
    const bool done = m_database.readAside("counting entries", [&](Database::Session& session) {
        forEachList([&]<typename Item>() { counts[ListTraits<Item>::kList] = 0; });
        Query rows = session.query(kCounts);
        rows.bind(m_line);
        while (rows.next()) {
            const auto list = static_cast<ListName>(rows.smallNumber());
            counts[list] = static_cast<std::size_t>(rows.number());
        }
    });
    return done ? std::optional(std::move(counts)) : std::nullopt;
}

std::optional<std::size_t> StoredLists::callCount() const {
    std::size_t count = 0;
    const bool done = m_database.readAside("counting calls", [&](Database::Session& session) {
        Query query = session.query("SELECT count(*) FROM call WHERE line = ?");
        query.bind(m_line);
        count = query.next() ? static_cast<std::size_t>(query.number()) : 0;
    });
    return done ? std::optional(count) : std::nullopt;
}

}  // namespace host
