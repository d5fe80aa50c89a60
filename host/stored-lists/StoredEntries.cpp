#include "host/stored-lists/StoredEntries.h"

#include <algorithm>

#include "host/data/CallBackRows.h"
#include "host/database/RowId.h"
#include "host/journal-events/EventQueue.h"
#include "journal-items/Occurrences.h"

namespace host {
namespace {

/// A call of the same party may be filed each time; more often than this, no call is.
constexpr int kAttempts = 20;

}  // namespace

std::optional<std::vector<std::int64_t>> StoredEntries::find(ListName list,
                                                             const std::set<std::string>& ids) {
    std::vector<std::int64_t> found;
    const HistoryRows::Context context = this->context();
    const bool done = m_sources.database.readAside("finding entries", [&](Database::Session& session) {
        found.clear();
        CallRows rows(session, context);
        for (const std::string& id : ids) {
            if (const auto row = rows.idOf(list, id)) {
                found.push_back(*row);
            }
        }
    });
    return done ? std::optional(std::move(found)) : std::nullopt;
}

template <typename Item>
bool StoredEntries::change(
    std::int64_t id, bool reportsRemoved,
    const std::function<bool(Database::Session&, const HistoryRows::Context&, Item&)>& change) {
    const std::lock_guard lock(m_changes);
    const HistoryRows::Context context = this->context();
    std::string former;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        Item item;
        bool wanted = false;
        if (!m_sources.database.readAside("reading an entry", [&](Database::Session& session) {
                wanted = CallRows(session, context).find(id, item) && change(session, context, item);
            })) {
            return false;
        }
        if (!wanted || m_sources.journal.replaceEntry(item, reportsRemoved)) {
            return true;
        }
        // The journal refuses an entry that it does not have, and one that has changed since it was read.
        if (item.getEntryId() == former) {
            return changeRows(item);
        }
        former = item.getEntryId();
    }
    return false;
}

template <typename Item>
bool StoredEntries::changeRows(const Item& item) {
    const HistoryRows::Context context = this->context();
    bool hasDeleted = false;
    const bool done = m_sources.database.write("changing an entry", [&](Database::Session& session) {
        CallRows rows(session, context);
        if (occurrencesOf(item).empty()) {
            rows.remove(ListTraits<Item>::kList, item.getUniqueId(), item.getEntryId(), {});
        } else {
            rows.write(item);
        }
        hasDeleted = rows.history().removeTraces();
    });
    if (done && m_sources.events != nullptr) {
        m_sources.events->committed();
    }
    if (done && hasDeleted) {
        m_sources.database.truncateLog();
    }
    if (done && m_sources.resync) {
        m_sources.resync();
    }
    return done;
}

std::optional<std::size_t> StoredEntries::remove(ListName list, const std::set<std::string>& ids) {
    return withItemOf(list, [&]<typename Item>() {
        if constexpr (std::is_same_v<Item, CallBackItem>) {
            return removeCallBacks(ids);
        } else {
            return removeEntries<Item>(ids);
        }
    });
}

template <typename Item>
std::optional<std::set<std::string>> StoredEntries::entryIdsOf(const std::vector<std::int64_t>& rows) {
    std::set<std::string> entryIds;
    const HistoryRows::Context context = this->context();
    const bool done = m_sources.database.readAside("reading entries", [&](Database::Session& session) {
        entryIds.clear();
        for (const std::int64_t row : rows) {
            Item item;
            if (CallRows(session, context).find(row, item)) {
                entryIds.insert(item.getEntryId());
            }
        }
    });
    return done ? std::optional(std::move(entryIds)) : std::nullopt;
}

template <typename Item>
std::optional<std::size_t> StoredEntries::removeEntries(const std::set<std::string>& ids) {
    constexpr ListName kList = ListTraits<Item>::kList;
    const auto rows = find(kList, ids);
    const auto loaded = rows ? entryIdsOf<Item>(*rows) : std::nullopt;
    if (!loaded) {
        return std::nullopt;
    }
    // One change of the journal for all that it has loaded.
    const std::set<std::string>& entryIds = *loaded;
    if (entryIds.size() == 1) {
        static_cast<void>(deleteEntry<Item>(m_sources.journal, *entryIds.begin()));
    } else if (!entryIds.empty()) {
        (m_sources.journal.*listOperations<Item>().deleteSet)(entryIds);
    }
    std::set<std::string> remaining;
    for (const std::int64_t row : *rows) {
        if (!change<Item>(row, true, [](auto& /*session*/, auto& /*context*/, Item& item) {
                setOccurrences(item, {});
                return true;
            })) {
            return std::nullopt;
        }
        remaining.insert(uniqueIdOf(row));
    }
    const auto stored = find(kList, remaining);
    return stored && stored->empty() ? std::optional(rows->size()) : std::nullopt;
}

std::optional<std::size_t> StoredEntries::removeCallBacks(const std::set<std::string>& entryIds) {
    const auto stored = [&] {
        std::set<std::string> ids;
        const bool done = m_sources.database.readAside(
            "reading the callbacks",
            [&](Database::Session& session) { ids = CallBackRows(session, m_sources.line).ids(); });
        std::erase_if(ids, [&entryIds](const std::string& id) { return !entryIds.contains(id); });
        return done ? std::optional(ids.size()) : std::nullopt;
    };
    const std::optional<std::size_t> before = stored();
    if (before && *before > 0) {
        if (entryIds.size() == 1) {
            static_cast<void>(m_sources.journal.deleteCallBack(*entryIds.begin()));
        } else {
            m_sources.journal.deleteCallBackList(entryIds);
        }
    }
    return before && stored() == std::size_t{0} ? before : std::nullopt;
}

bool StoredEntries::clear(ListName list) {
    std::int64_t newestCall = 0;
    std::int64_t newestEntry = 0;
    const auto number = [](Database::Session& session, const char* sql) {
        Query query = session.query(sql);
        return query.next() ? query.number() : 0;
    };
    if (!m_sources.database.readAside("reading a list", [&](Database::Session& session) {
            newestCall = number(session, "SELECT coalesce(max(id), 0) FROM call");
            newestEntry = number(session, "SELECT coalesce(max(id), 0) FROM call_item");
        })) {
        return false;
    }
    withItemOf(list, [&]<typename Item>() { (m_sources.journal.*listOperations<Item>().clear)(); });
    // The rows that the journal does not have, or that the database refused to delete. A call that is filed
    // meanwhile stays.
    const bool done = m_sources.database.write("clearing a list", [&](Database::Session& session) {
        if (list == ListName::eCallbacks) {
            return;
        }
        const auto bindTo = [&](Query&& query, std::int64_t newest) {
            query.bind(m_sources.line).bind(static_cast<std::int32_t>(list)).bind(newest).run();
        };
        bindTo(session.query("DELETE FROM call WHERE line = ? AND list = ? AND id <= ?"), newestCall);
        bindTo(session.query("DELETE FROM call_item WHERE line = ? AND list = ? AND id <= ? AND calls = 0"),
               newestEntry);
        PartyRows(session, m_sources.line, m_sources.digits).removeUnused();
    });
    m_sources.database.truncateLog();
    if (done && m_sources.resync) {
        m_sources.resync();
    }
    return done && (list != ListName::eCallbacks || !hasCallBacks());
}

bool StoredEntries::setViewed(const std::set<std::string>& ids, bool viewed) {
    const auto rows = find(ListName::eMissed, ids);
    const auto loaded = rows && viewed ? entryIdsOf<MissedCallItem>(*rows) : std::nullopt;
    bool done = rows.has_value();
    if (loaded) {
        // One change of the journal for all that it has loaded.
        m_sources.journal.setMissedCallListAsViewed(*loaded);
    }
    for (const std::int64_t row : rows.value_or(std::vector<std::int64_t>())) {
        done = done && change<MissedCallItem>(
                           row, false, [&](auto& /*session*/, auto& /*context*/, MissedCallItem& item) {
                               const bool changes = item.getViewed() != viewed;
                               item.setViewed(viewed);
                               return changes;
                           });
    }
    return done && areMarked(*rows, viewed);
}

bool StoredEntries::areMarked(const std::vector<std::int64_t>& rows, bool viewed) {
    bool marked = true;
    const bool done =
        m_sources.database.readAside("reading the viewed marks", [&](Database::Session& session) {
            Query query = session.query("SELECT viewed FROM call_item WHERE id = ?");
            for (const std::int64_t row : rows) {
                marked = marked && (!query.again().bind(row).next() || query.flag() == viewed);
            }
        });
    return done && marked;
}

bool StoredEntries::hasCallBacks() {
    bool any = true;
    const bool done = m_sources.database.readAside("reading the callbacks", [&](Database::Session& session) {
        any = !CallBackRows(session, m_sources.line).ids().empty();
    });
    return !done || any;
}

HistoryRows::Context StoredEntries::context() const {
    return {m_sources.line, m_sources.digits,
            m_sources.phoneAhead ? m_sources.phoneAhead() : std::chrono::seconds(0), m_sources.events};
}

template bool StoredEntries::change<MissedCallItem>(
    std::int64_t, bool,
    const std::function<bool(Database::Session&, const HistoryRows::Context&, MissedCallItem&)>&);
template bool StoredEntries::change<DialledCallItem>(
    std::int64_t, bool,
    const std::function<bool(Database::Session&, const HistoryRows::Context&, DialledCallItem&)>&);
template bool StoredEntries::change<ReceivedCallItem>(
    std::int64_t, bool,
    const std::function<bool(Database::Session&, const HistoryRows::Context&, ReceivedCallItem&)>&);
template bool StoredEntries::change<ForwardedCallItem>(
    std::int64_t, bool,
    const std::function<bool(Database::Session&, const HistoryRows::Context&, ForwardedCallItem&)>&);

}  // namespace host
