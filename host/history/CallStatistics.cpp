#include "host/history/CallStatistics.h"

#include <algorithm>
#include <limits>
#include <map>

#include "host/database/Database.h"
#include "host/history/CallGroupKey.h"
#include "host/history/CallReader.h"
#include "host/history/CallSelection.h"

namespace host {
namespace {

using std::chrono::seconds;
using std::chrono::sys_seconds;

// A number with several names is one party, with the least id of them; one that no rules have equals
// no other. All calls without a number are those of the person 0.
constexpr const char* kParties = R"sql(
WITH own AS MATERIALIZED (
    SELECT id, lookup,
        iif(number = '', 0, min(id) OVER (PARTITION BY coalesce(nullif(lookup, ''), id))) AS person
    FROM party WHERE line = ?)
)sql";

constexpr const char* kCounts = R"sql(, count(*), sum(call.list = 2), sum(call.list = 0 AND call.reason <> 6),
    sum(call.list = 0 AND call.reason = 6), sum(call.list = 1), sum(call.list = 3),
    sum(call.duration), max(call.duration)
FROM own CROSS JOIN call INDEXED BY call_party ON call.party = own.id WHERE call.start >= ? AND call.start < ?
)sql";

// The misses and the dialled calls of each party in the order of time; a miss has the time to the next
// dialled one.
constexpr const char* kFiled = R"sql(
, filed AS (
    SELECT call.list, call.start, own.person
    FROM own CROSS JOIN call INDEXED BY call_party ON call.party = own.id
    WHERE own.lookup <> '' AND call.start >= ? AND (call.list = 1
        OR (call.list = 0 AND call.reason <> 6 AND call.start < ?
)sql";
constexpr const char* kTimed = R"sql()))
, timed AS (
    SELECT list, start, person, min(CASE WHEN list = 1 THEN start END)
        OVER (PARTITION BY person ORDER BY start DESC ROWS UNBOUNDED PRECEDING) - start AS delay FROM filed)
)sql";

// The number and the name of the newest call of a person.
constexpr const char* kNewestParty = R"sql(
SELECT party.number, party.name, party.lookup FROM party
WHERE party.id IN (SELECT ?1 UNION ALL
    SELECT same.id FROM party AS this JOIN party AS same ON same.line = this.line AND same.lookup = this.lookup
    WHERE this.id = ?1 AND this.lookup <> '')
ORDER BY (SELECT max(start) FROM call INDEXED BY call_party WHERE call.party = party.id) DESC LIMIT 1
)sql";

/// Of an even number of values, the mean of the two in the middle. Changes the order of the values.
std::optional<seconds> medianOf(std::vector<seconds>& values) {
    if (values.empty()) {
        return std::nullopt;
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return values.size() % 2 == 1 ? *middle : (*std::max_element(values.begin(), middle) + *middle) / 2;
}

/// Computes one result. Use it inside one `Database::read`.
class Computation {
public:
    Computation(Database::Session& session, const std::string& line, const StatisticsQuery& query,
                DigitAnalysisServiceIfc* digits, sys_seconds now)
        : m_session(session),
          m_line(line),
          m_query(query),
          m_key(query, now),
          m_kind(CallSelection::ofKind(query.filter)),
          m_parties(CallSelection::ofParties(line, query.filter, digits)) {}

    StatisticsResult result() {
        readCounts();
        if (m_query.by == CallGrouping::eList) {
            addEmptyLists();
            return std::move(m_result);
        }
        readMedians();
        if (!m_query.by || *m_query.by == CallGrouping::eParty) {
            keepTopParties();
        }
        return std::move(m_result);
    }

private:
    void readCounts() {
        Query rows = m_session.query((kParties + ("SELECT " + m_key.expression() + " AS key") + kCounts +
                                      conditions() + " GROUP BY key")
                                         .c_str());
        rows.bind(m_line);
        m_key.bind(rows);
        bindTimes(rows);
        bindConditions(rows);
        while (rows.next()) {
            CallGroup& group = m_result.groups.emplace_back();
            group.key = rows.number();
            CallCounts& counts = group.counts;
            for (std::int64_t* const count :
                 {&counts.calls, &counts.received, &counts.missed, &counts.completedElsewhere,
                  &counts.dialled, &counts.forwarded}) {
                *count = rows.number();
            }
            counts.talkTime = seconds(rows.number());
            counts.longest = seconds(rows.number());
            m_result.totals += counts;
        }
    }

    void readMedians() {
        if (m_result.totals.missed == 0) {
            return;
        }
        Query rows =
            m_session.query((std::string(kParties) + kFiled + conditions() + kTimed + "SELECT " +
                             m_key.expression() + ", delay FROM timed WHERE list = 0 AND delay IS NOT NULL")
                                .c_str());
        rows.bind(m_line);
        bindTimes(rows);
        bindConditions(rows);
        m_key.bind(rows);
        std::vector<seconds> all;
        std::map<std::int64_t, std::vector<seconds>> ofGroups;
        while (rows.next()) {
            std::vector<seconds>& ofGroup = ofGroups[rows.number()];
            ofGroup.push_back(all.emplace_back(rows.number()));
        }
        m_result.totals.callBackTime = medianOf(all);
        for (CallGroup& group : m_result.groups) {
            group.counts.callBackTime = medianOf(ofGroups[group.key]);
        }
    }

    void addEmptyLists() {
        std::vector<CallGroup> found;
        found.swap(m_result.groups);
        for (const ListName list :
             {ListName::eMissed, ListName::eDialled, ListName::eReceived, ListName::eForwarded}) {
            CallGroup& group = m_result.groups.emplace_back();
            group.key = static_cast<std::int64_t>(list);
            const auto known = std::find_if(found.begin(), found.end(), [&group](const CallGroup& each) {
                return each.key == group.key;
            });
            if (known != found.end()) {
                group = std::move(*known);
            }
        }
    }

    void keepTopParties() {
        std::vector<CallGroup> groups;
        groups.swap(m_result.groups);
        std::stable_sort(groups.begin(), groups.end(), [](const CallGroup& a, const CallGroup& b) {
            return a.counts.calls > b.counts.calls;
        });
        CallReader reader(m_session, m_line);
        for (CallGroup& group : groups) {
            if (m_result.groups.size() == m_query.parties) {
                return;
            }
            Query party = m_session.query(kNewestParty);
            if (party.bind(group.key).next()) {
                group.number = party.text();
                group.displayName = party.text();
                if (const std::string contact = reader.contactName(party.text()); !contact.empty()) {
                    group.displayName = contact;
                }
            }
            m_result.groups.push_back(std::move(group));
        }
    }

    /// The conditions of a call besides its time.
    [[nodiscard]] std::string conditions() const {
        std::string text;
        if (!m_kind.condition().empty()) {
            text += " AND " + m_kind.condition();
        }
        if (!m_parties.condition().empty()) {
            text += " AND own.id IN (SELECT party.id FROM party WHERE " + m_parties.condition() + ')';
        }
        return text;
    }
    void bindConditions(Query& query) const {
        m_kind.bind(query);
        m_parties.bind(query);
    }
    void bindTimes(Query& query) const {
        const auto numberOf = [](const std::optional<sys_seconds>& time, std::int64_t fallback) {
            return time ? std::int64_t{time->time_since_epoch().count()} : fallback;
        };
        query.bind(numberOf(m_query.filter.since, std::numeric_limits<std::int64_t>::min()));
        query.bind(numberOf(m_query.filter.until, std::numeric_limits<std::int64_t>::max()));
    }

    Database::Session& m_session;
    const std::string& m_line;
    const StatisticsQuery& m_query;
    const CallGroupKey m_key;
    const CallSelection m_kind;
    const CallSelection m_parties;
    StatisticsResult m_result;
};

}  // namespace

CallCounts& CallCounts::operator+=(const CallCounts& other) {
    calls += other.calls;
    received += other.received;
    missed += other.missed;
    completedElsewhere += other.completedElsewhere;
    dialled += other.dialled;
    forwarded += other.forwarded;
    talkTime += other.talkTime;
    longest = std::max(longest, other.longest);
    return *this;
}

std::optional<StatisticsResult> CallStatistics::of(const StatisticsQuery& query, sys_seconds now) const {
    StatisticsResult result;
    const bool done = m_database.readAside("counting calls", [&](Database::Session& session) {
        result = Computation(session, m_line, query, m_digits, now).result();
    });
    return done ? std::optional(std::move(result)) : std::nullopt;
}

}  // namespace host
