#include "host/history/CallKeySearch.h"

#include <algorithm>
#include <limits>

namespace host {
namespace {

/// Up to this number of parties, one stream for each is faster than a scan of the calls.
constexpr std::size_t kFewParties = 1000;
/// The calls that a scan tests before it gives up.
constexpr std::size_t kLongestScan = 20'000;
/// Up to this number of calls of unviewed entries, they are sorted.
constexpr std::int64_t kFewUnviewed = 5000;

constexpr CallKey kFirst = CallKey::before(std::numeric_limits<std::int64_t>::min());
constexpr CallKey kLast = CallKey::before(std::numeric_limits<std::int64_t>::max());

CallKey lowerEnd(const CallQuery& query) {
    CallKey key =
        query.filter.since ? CallKey::before(query.filter.since->time_since_epoch().count()) : kFirst;
    const auto cursor = query.oldestFirst ? keyOfCursor(query.cursor) : std::nullopt;
    return cursor ? std::max(key, *cursor) : key;
}

CallKey upperEnd(const CallQuery& query) {
    CallKey key =
        query.filter.until ? CallKey::before(query.filter.until->time_since_epoch().count()) : kLast;
    const auto cursor = query.oldestFirst ? std::nullopt : keyOfCursor(query.cursor);
    return cursor ? std::min(key, *cursor) : key;
}

CallKey keyFrom(Query& row) {
    CallKey key;
    key.start = row.number();
    key.id = row.number();
    return key;
}

}  // namespace

CallKeySearch::CallKeySearch(Database::Session& session, const std::string& line, const CallQuery& query,
                             DigitAnalysisServiceIfc* digits)
    : m_session(session),
      m_line(line),
      m_filter(query.filter),
      m_oldestFirst(query.oldestFirst),
      m_wanted(query.limit + 1),
      m_parties(CallSelection::ofParties(line, query.filter, digits)),
      m_kind(CallSelection::ofKind(query.filter)),
      m_lower(lowerEnd(query)),
      m_upper(upperEnd(query)) {}

std::vector<CallKey> CallKeySearch::find() {
    if (!m_parties.condition().empty()) {
        return ofParties(parties());
    }
    return m_filter.viewed == false && hasFewUnviewed() ? ofUnviewedEntries() : merge(streamsOfLists());
}

std::vector<CallKeySearch::Stream> CallKeySearch::streamsOfLists() const {
    const auto stream = [](ListName list) { return Stream{Index::eList, static_cast<std::int64_t>(list)}; };
    if (m_filter.list) {
        return {stream(*m_filter.list)};
    }
    if (m_filter.viewed == false) {
        return {stream(ListName::eMissed)};
    }
    if (m_filter.outgoing) {
        return *m_filter.outgoing ? std::vector{stream(ListName::eDialled)}
                                  : std::vector{stream(ListName::eMissed), stream(ListName::eReceived),
                                                stream(ListName::eForwarded)};
    }
    return {stream(ListName::eMissed), stream(ListName::eDialled), stream(ListName::eReceived),
            stream(ListName::eForwarded)};
}

std::vector<std::int64_t> CallKeySearch::parties() {
    Query rows = m_session.query(("SELECT party.id FROM party WHERE " + m_parties.condition()).c_str());
    m_parties.bind(rows);
    std::vector<std::int64_t> ids;
    while (rows.next()) {
        ids.push_back(rows.number());
    }
    std::sort(ids.begin(), ids.end());
    return ids;
}

CallKeySearch::Keys CallKeySearch::ofParties(const std::vector<std::int64_t>& parties) {
    Keys keys;
    if (parties.size() > kFewParties && scan(parties, keys)) {
        return keys;
    }
    std::vector<Stream> streams;
    streams.reserve(parties.size());
    for (const std::int64_t party : parties) {
        streams.push_back({Index::eParty, party});
    }
    return merge(streams);
}

bool CallKeySearch::scan(const std::vector<std::int64_t>& parties, Keys& keys) {
    const std::string kind = m_kind.condition().empty() ? "1" : m_kind.condition();
    const std::vector<Stream> lists = streamsOfLists();
    std::string sql;
    for (std::size_t list = 0; list < lists.size(); ++list) {
        sql += (list == 0 ? "SELECT call.start, call.id, call.party, "
                          : " UNION ALL SELECT call.start, call.id, call.party, ") +
               kind + " FROM call INDEXED BY call_of_list WHERE call.line = ? AND call.list = ?" + range();
    }
    Query rows = m_session.query((sql + order()).c_str());
    for (const Stream& list : lists) {
        m_kind.bind(rows);
        rows.bind(m_line).bind(list.of);
        bindRange(rows);
    }
    for (std::size_t tested = 0; rows.next(); ++tested) {
        if (tested == kLongestScan) {
            return false;
        }
        const CallKey key = keyFrom(rows);
        if (std::binary_search(parties.begin(), parties.end(), rows.number()) && rows.flag()) {
            keys.push_back(key);
            if (keys.size() == m_wanted) {
                break;
            }
        }
    }
    return true;
}

bool CallKeySearch::hasFewUnviewed() {
    Query query = m_session.query(
        "SELECT coalesce(sum(calls), 0) FROM call_item WHERE line = ? AND list = 0 AND viewed = 0");
    return query.bind(m_line).next() && query.number() <= kFewUnviewed;
}

CallKeySearch::Keys CallKeySearch::ofUnviewedEntries() {
    const std::string kind = m_kind.condition().empty() ? "" : " AND " + m_kind.condition();
    Query rows = m_session.query(("SELECT call.start, call.id FROM call_item CROSS JOIN call "
                                  "ON call.item = call_item.id "
                                  "WHERE call_item.line = ? AND call_item.list = 0 AND call_item.viewed = 0" +
                                  kind + range() + order() + " LIMIT ?")
                                     .c_str());
    rows.bind(m_line);
    m_kind.bind(rows);
    bindRange(rows);
    rows.bind(static_cast<std::int64_t>(m_wanted));
    Keys keys;
    while (rows.next()) {
        keys.push_back(keyFrom(rows));
    }
    return keys;
}

CallKeySearch::Keys CallKeySearch::merge(const std::vector<Stream>& streams) {
    if (streams.size() == 1) {
        return read(streams.front(), m_wanted);
    }
    std::vector<std::pair<CallKey, Stream>> firsts;
    for (const Stream& stream : streams) {
        if (const Keys first = read(stream, 1); !first.empty()) {
            firsts.emplace_back(first.front(), stream);
        }
    }
    const auto earlier = [this](const CallKey& a, const CallKey& b) { return precedes(a, b); };
    std::sort(firsts.begin(), firsts.end(),
              [&earlier](const auto& a, const auto& b) { return earlier(a.first, b.first); });
    Keys keys;
    for (const auto& [first, stream] : firsts) {
        if (keys.size() == m_wanted) {
            if (!precedes(first, keys.back())) {
                break;
            }
            (m_oldestFirst ? m_upper : m_lower) = keys.back();
        }
        const Keys more = read(stream, m_wanted);
        keys.insert(keys.end(), more.begin(), more.end());
        std::sort(keys.begin(), keys.end(), earlier);
        keys.resize(std::min(keys.size(), m_wanted));
    }
    return keys;
}

CallKeySearch::Keys CallKeySearch::read(const Stream& stream, std::size_t limit) {
    std::string sql = "SELECT call.start, call.id FROM call INDEXED BY ";
    switch (stream.index) {
        case Index::eList: sql += "call_of_list WHERE call.line = ? AND call.list = ?"; break;
        case Index::eParty: sql += "call_party WHERE call.party = ?"; break;
    }
    if (!m_kind.condition().empty()) {
        sql += " AND " + m_kind.condition();
    }
    Query rows = m_session.query((sql + range() + order() + " LIMIT ?").c_str());
    if (stream.index == Index::eList) {
        rows.bind(m_line);
    }
    rows.bind(stream.of);
    m_kind.bind(rows);
    bindRange(rows);
    rows.bind(static_cast<std::int64_t>(limit));
    Keys keys;
    while (rows.next()) {
        keys.push_back(keyFrom(rows));
    }
    return keys;
}

const char* CallKeySearch::range() noexcept {
    // The first two comparisons are the range of the index, the others its exact ends.
    return " AND call.start >= ? AND call.start <= ?"
           " AND (call.start, call.id) > (?, ?) AND (call.start, call.id) < (?, ?)";
}

const char* CallKeySearch::order() const noexcept {
    return m_oldestFirst ? " ORDER BY 1, 2" : " ORDER BY 1 DESC, 2 DESC";
}

void CallKeySearch::bindRange(Query& query) const {
    query.bind(m_lower.start).bind(m_upper.start);
    query.bind(m_lower.start).bind(m_lower.id).bind(m_upper.start).bind(m_upper.id);
}

}  // namespace host
