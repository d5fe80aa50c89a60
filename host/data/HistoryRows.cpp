#include "host/data/HistoryRows.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <type_traits>
#include <utility>

#include "host/data/CallPlace.h"
#include "host/data/CallStart.h"
#include "host/data/OccurrenceColumns.h"
#include "host/journal-events/EventQueue.h"
#include "platform/csta/CallLogEntryEvent.h"

namespace host {
namespace {

// The columns of an occurrence in one order: `bindFields` binds what `readFields` reads, but for the call id
// and the parties.
constexpr const char* kInsert = R"sql(
INSERT INTO call (item, item_order, listed, party, redirecting, duration, reason, call_id, part, start, line, list,
    established, ended, end_approximate, connected,
    connected_number, text_c, text_d, time_and_date,
    log_target, presentation_a, presentation_b, presentation_c, presentation_d,
    duration_text, time_format,
    redirecting_number_presentation, redirecting_name_presentation, transfer_number_type, redirecting_reason,
    completed_elsewhere, group_text, line_key, substitute_number, feature_access_code,
    forwarded_to_number, forwarding_target, forwarding_reason)
VALUES (?, ?, 1, ?, ?, ?, ?, ?, ?, ?, ?, ?,  ?, ?, ?, ?,  ?, ?, ?, ?,  ?, ?, ?, ?, ?,  ?, ?,  ?, ?, ?, ?,
    ?, ?, ?, ?, ?,  ?, ?, ?)
)sql";

// Keeps the identity, the party as it was filed, and what the link knows of the call.
constexpr const char* kUpdate = R"sql(
UPDATE call SET item = ?, item_order = ?, listed = 1, redirecting = ?, duration = ?, reason = coalesce(nullif(?, 0), reason),
    connected_number = ?, text_c = ?, text_d = ?, time_and_date = ?,
    log_target = ?, presentation_a = ?, presentation_b = ?, presentation_c = ?, presentation_d = ?,
    duration_text = ?, time_format = ?,
    redirecting_number_presentation = ?, redirecting_name_presentation = ?, transfer_number_type = ?,
    redirecting_reason = ?,
    completed_elsewhere = ?, group_text = ?, line_key = ?, substitute_number = ?, feature_access_code = ?,
    forwarded_to_number = ?, forwarding_target = ?, forwarding_reason = ?
WHERE id = ?
)sql";

// The columns of a call and of its occurrence, in the order of `readFields`.
constexpr const char* kSelect = R"sql(
SELECT call.id, item_order, call_id, party.number, connected_number, text_c, text_d, time_and_date,
    log_target, presentation_a, presentation_b, presentation_c, presentation_d, duration_text, time_format,
    coalesce(redirected.number, ''), coalesce(redirected.name, ''),
    redirecting_number_presentation, redirecting_name_presentation, transfer_number_type, redirecting_reason,
    completed_elsewhere, group_text, line_key, substitute_number, feature_access_code,
    forwarded_to_number, forwarding_target, forwarding_reason
FROM call JOIN party ON party.id = call.party LEFT JOIN party AS redirected ON redirected.id = call.redirecting
)sql";

// Each reads few rows more than it returns: an entry may have many, but the listed ones are the newest.
const std::string kSelectListed =
    std::string(kSelect) + "WHERE item = ? AND listed = 1 ORDER BY item_order DESC LIMIT ?";
const std::string kSelectNewest = std::string(kSelect) + "WHERE item = ? ORDER BY item_order DESC LIMIT ?";
const std::string kSelectSome =
    std::string(kSelect) +
    "WHERE item = ? AND call.id IN (SELECT value FROM json_each(?)) ORDER BY item_order DESC";

using occurrence_columns::as;
using occurrence_columns::bindFields;
using occurrence_columns::readFields;

using Missed = MissedCallItem::MissedCallInfo;
using Dialled = DialledCallItem::DialledCallInfo;
using Received = ReceivedCallItem::ReceivedCallInfo;
using Forwarded = ForwardedCallItem::ForwardedCallInfo;

template <typename Info>
void readInto(Query& rows, std::list<Info>& occurrences) {
    while (rows.next()) {
        static_cast<void>(rows.number());
        static_cast<void>(rows.number());
        readFields(rows, occurrences.emplace_back());
    }
}

/// "75:11" in seconds.
std::int64_t secondsOf(const std::string& duration) {
    const std::size_t colon = duration.find(':');
    if (colon == std::string::npos) {
        return 0;
    }
    const auto number = [](const std::string& digits) {
        return std::int64_t{std::strtoll(digits.c_str(), nullptr, 10)};
    };
    return 60 * number(duration.substr(0, colon)) + number(duration.substr(colon + 1));
}

/// A call that was completed elsewhere is one, also if a colleague has picked it up.
CallReason reasonOf(const Missed& missed, const CallFacts& facts) {
    return missed.getCompletedElsewhere() ? CallReason::eCompletedElsewhere : facts.reason;
}

std::optional<std::int64_t> secondsOf(const std::optional<std::chrono::sys_seconds>& time) {
    return time ? std::optional<std::int64_t>(time->time_since_epoch().count()) : std::nullopt;
}

template <typename Info>
bool isSameCall(const Info& a, const Info& b) {
    return a.getCallId() == b.getCallId() && a.getNumber() == b.getNumber() &&
           a.getTimeAndDate() == b.getTimeAndDate();
}

}  // namespace

template <typename Info>
struct HistoryRows::Stored {
    std::int64_t id = 0;
    std::int64_t order = 0;
    Info info{};
    /// True if the written entry has it.
    bool kept = false;
};

template <typename Info>
std::list<HistoryRows::Stored<Info>> HistoryRows::listedOf(std::int64_t item) {
    std::list<Stored<Info>> stored;
    Query rows = m_session.query(kSelectListed.c_str());
    rows.bind(item).bind(std::int64_t{CallItemWithPicture::kMaxOccurrences});
    while (rows.next()) {
        Stored<Info> call{.id = rows.number(), .order = rows.number()};
        readFields(rows, call.info);
        stored.push_back(std::move(call));
    }
    return stored;
}

template <typename Item>
void HistoryRows::write(std::int64_t item, const std::string& name,
                        const std::list<typename ListTraits<Item>::Info>& occurrences, const CallFacts* facts,
                        bool isNew) {
    using Info = typename ListTraits<Item>::Info;
    std::list<Stored<Info>> stored = isNew ? std::list<Stored<Info>>() : listedOf<Info>(item);
    // From the oldest to the newest, so that each gets a greater order than the one before.
    std::optional<std::int64_t> last;
    std::list<Stored<Info>> changed;
    auto oldest = stored.rbegin();
    for (auto written = occurrences.rbegin(); written != occurrences.rend(); ++written) {
        const auto same = std::find_if(oldest, stored.rend(), [&](const Stored<Info>& each) {
            return !each.kept && isSameCall(each.info, *written);
        });
        Stored<Info> call{.info = *written};
        if (same != stored.rend()) {
            same->kept = true;
            call.id = same->id;
            call.order = same->order;
            oldest = std::next(same);
        }
        const bool follows = call.id != 0 && (!last || call.order > *last);
        if (!follows) {
            call.order = (last ? *last : isNew ? 0 : newestOrder(item)) + 1;
        }
        last = call.order;
        if (!follows || !(same->info == *written)) {
            changed.push_back(std::move(call));
        }
    }
    lose(stored, occurrences);
    for (const Stored<Info>& call : changed) {
        const bool isNewest = &call == &changed.back() && call.id == 0;
        store(call, item, ListTraits<Item>::kList, name, isNewest ? facts : nullptr);
    }
}

template <typename Info>
void HistoryRows::lose(const std::list<Stored<Info>>& stored, const std::list<Info>& occurrences) {
    // A full entry loses its oldest calls to newer ones.
    const bool full = occurrences.size() >= CallItemWithPicture::kMaxOccurrences;
    bool oldest = true;
    for (auto call = stored.rbegin(); call != stored.rend(); ++call) {
        oldest = oldest && !call->kept;
        if (oldest && full) {
            m_session.query("UPDATE call SET listed = 0 WHERE id = ?").bind(call->id).run();
        } else if (!call->kept) {
            removeWhere("id = ?", call->id);
        }
    }
}

template <typename Info>
void HistoryRows::store(const Stored<Info>& call, std::int64_t item, ListName list, const std::string& name,
                        const CallFacts* facts) {
    const Info& info = call.info;
    const CallFacts known = facts != nullptr ? *facts : CallFacts();
    auto&& duration = as<Duration>(info);
    auto&& timeFormat = as<TimeFormat>(info);
    auto&& missed = as<Missed>(info);
    const std::string& redirecting = info.getRedirectingNumber();
    const std::string& redirectingName = info.getRedirectingName();
    const bool hasRedirecting = !redirecting.empty() || !redirectingName.empty();
    const bool hasConnected = !known.connectedNumber.empty() || !known.connectedName.empty();
    const std::int64_t start =
        call.id != 0
            ? 0
            : callStart(m_session, info.getTimeAndDate(),
                        timeFormat.getTimeFormat() == CallLogEntryEvent::eTimeLocal, m_context.phoneAhead);
    const CallPlace place = call.id != 0 ? CallPlace{.id = call.id}
                                         : callPlace(m_session, m_context.line, info, list, item, start);
    const std::int64_t id = place.id;
    Query query = m_session.query(id != 0 ? kUpdate : kInsert);
    query.bind(item).bind(call.order);
    std::int64_t party = 0;
    if (id == 0) {
        party = m_parties.idOf(info.getNumber(), name);
        query.bind(party);
    }
    query.bind(hasRedirecting ? std::optional(m_parties.idOf(redirecting, redirectingName)) : std::nullopt);
    query.bind(secondsOf(duration.getDuration())).bind(static_cast<std::int32_t>(reasonOf(missed, known)));
    if (id == 0) {
        query.bind(info.getCallId()).bind(place.part).bind(start).bind(m_context.line);
        query.bind(static_cast<std::int32_t>(list));
        query.bind(secondsOf(known.established)).bind(secondsOf(known.ended)).bind(known.endApproximate);
        const bool isParty = known.connectedNumber == info.getNumber() && known.connectedName == name;
        query.bind(!hasConnected
                       ? std::nullopt
                       : std::optional(isParty ? party
                                               : m_parties.idOf(known.connectedNumber, known.connectedName)));
    }
    bindFields(query, info);
    if (id != 0) {
        query.bind(id);
    }
    query.run();
    if (id == 0 && m_context.events != nullptr) {
        m_context.events->addOfCall(m_session, JournalEventKind::eCallFiled, m_session.lastInsertedId());
    }
}

std::int64_t HistoryRows::newestOrder(std::int64_t item) {
    Query query = m_session.query("SELECT coalesce(max(item_order), 0) FROM call WHERE item = ?");
    return query.bind(item).next() ? query.number() : 0;
}

std::optional<std::int64_t> HistoryRows::newestOf(std::int64_t item) {
    Query query = m_session.query("SELECT id FROM call WHERE item = ? ORDER BY item_order DESC LIMIT 1");
    return query.bind(item).next() ? std::optional(query.number()) : std::nullopt;
}

template <typename Info>
void HistoryRows::readListed(std::int64_t item, std::list<Info>& occurrences) {
    for (Stored<Info>& call : listedOf<Info>(item)) {
        occurrences.push_back(std::move(call.info));
    }
}

template <typename Info>
void HistoryRows::readNewest(std::int64_t item, std::int64_t limit, std::list<Info>& occurrences) {
    Query rows = m_session.query(kSelectNewest.c_str());
    rows.bind(item).bind(limit);
    readInto(rows, occurrences);
}

template <typename Info>
void HistoryRows::read(std::int64_t item, const std::vector<std::int64_t>& calls,
                       std::list<Info>& occurrences) {
    std::string ids;
    for (const std::int64_t call : calls) {
        ids += (ids.empty() ? "[" : ",") + std::to_string(call);
    }
    Query rows = m_session.query(kSelectSome.c_str());
    rows.bind(item).bind(ids.empty() ? "[]" : ids + "]");
    readInto(rows, occurrences);
}

void HistoryRows::removeWhere(const std::string& condition, std::int64_t value) {
    for (const char* const column : {"party", "connected", "redirecting"}) {
        Query rows = m_session.query(
            ("SELECT DISTINCT " + std::string(column) + " FROM call WHERE " + condition).c_str());
        rows.bind(value);
        while (rows.next()) {
            if (const auto party = rows.optionalNumber()) {
                m_traces.insert(*party);
            }
        }
    }
    if (m_session.query(("DELETE FROM call WHERE " + condition).c_str()).bind(value).run() > 0) {
        m_hasDeleted = true;
    }
}

void HistoryRows::removeOf(std::int64_t item) {
    removeWhere("item = ?", item);
}

void HistoryRows::removeListedOf(std::int64_t item) {
    removeWhere("listed = 1 AND item = ?", item);
    release(item, std::nullopt);
}

HistoryRows::Detached HistoryRows::detach(std::int64_t item) {
    Detached calls;
    {
        Query rows = m_session.query("SELECT id, listed FROM call WHERE item = ?");
        rows.bind(item);
        while (rows.next()) {
            const std::int64_t id = rows.number();
            (rows.flag() ? calls.listed : calls.older).push_back(id);
        }
    }
    release(item, std::nullopt);
    return calls;
}

void HistoryRows::attach(std::int64_t item, const Detached& calls) {
    for (const std::int64_t id : calls.listed) {
        removeWhere("item IS NULL AND id = ?", id);
    }
    Query update = m_session.query("UPDATE call SET item = ? WHERE item IS NULL AND id = ?");
    for (const std::int64_t id : calls.older) {
        update.again().bind(item).bind(id).run();
    }
}

void HistoryRows::release(std::int64_t item, const std::optional<std::chrono::sys_seconds>& calledBackAt) {
    m_session
        .query(
            "UPDATE call SET item = NULL, listed = 0, called_back_at = coalesce(?, called_back_at) WHERE "
            "item = ?")
        .bind(secondsOf(calledBackAt))
        .bind(item)
        .run();
}

void HistoryRows::removeAll(ListName list) {
    m_hasDeleted = true;
    m_hasManyTraces = true;
    m_session.query("DELETE FROM call WHERE line = ? AND list = ?")
        .bind(m_context.line)
        .bind(static_cast<std::int32_t>(list))
        .run();
}

bool HistoryRows::removeTraces() {
    if (m_hasManyTraces) {
        m_parties.removeUnused();
    } else {
        m_parties.removeUnused(m_traces);
    }
    return m_hasDeleted;
}

template void HistoryRows::write<MissedCallItem>(std::int64_t, const std::string&, const std::list<Missed>&,
                                                 const CallFacts*, bool);
template void HistoryRows::write<DialledCallItem>(std::int64_t, const std::string&, const std::list<Dialled>&,
                                                  const CallFacts*, bool);
template void HistoryRows::write<ReceivedCallItem>(std::int64_t, const std::string&,
                                                   const std::list<Received>&, const CallFacts*, bool);
template void HistoryRows::write<ForwardedCallItem>(std::int64_t, const std::string&,
                                                    const std::list<Forwarded>&, const CallFacts*, bool);
template void HistoryRows::readListed(std::int64_t, std::list<Missed>&);
template void HistoryRows::read(std::int64_t, const std::vector<std::int64_t>&, std::list<Missed>&);
template void HistoryRows::readListed(std::int64_t, std::list<Dialled>&);
template void HistoryRows::read(std::int64_t, const std::vector<std::int64_t>&, std::list<Dialled>&);
template void HistoryRows::readListed(std::int64_t, std::list<Received>&);
template void HistoryRows::read(std::int64_t, const std::vector<std::int64_t>&, std::list<Received>&);
template void HistoryRows::readListed(std::int64_t, std::list<Forwarded>&);
template void HistoryRows::read(std::int64_t, const std::vector<std::int64_t>&, std::list<Forwarded>&);
template void HistoryRows::readNewest(std::int64_t, std::int64_t, std::list<Missed>&);
template void HistoryRows::readNewest(std::int64_t, std::int64_t, std::list<Dialled>&);
template void HistoryRows::readNewest(std::int64_t, std::int64_t, std::list<Received>&);
template void HistoryRows::readNewest(std::int64_t, std::int64_t, std::list<Forwarded>&);

}  // namespace host
