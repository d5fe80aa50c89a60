#include "host/data/HistoryRows.h"

#include <algorithm>
#include <cstdlib>
#include <type_traits>
#include <utility>

#include "journal-items/Duration.h"
#include "journal-items/Redirecting.h"
#include "journal-items/TimeFormat.h"
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
UPDATE call SET item = ?, item_order = ?, listed = 1, redirecting = ?, duration = ?, reason = max(reason, ?),
    connected_number = ?, text_c = ?, text_d = ?, time_and_date = ?,
    log_target = ?, presentation_a = ?, presentation_b = ?, presentation_c = ?, presentation_d = ?,
    duration_text = ?, time_format = ?,
    redirecting_number_presentation = ?, redirecting_name_presentation = ?, transfer_number_type = ?,
    redirecting_reason = ?,
    completed_elsewhere = ?, group_text = ?, line_key = ?, substitute_number = ?, feature_access_code = ?,
    forwarded_to_number = ?, forwarding_target = ?, forwarding_reason = ?
WHERE id = ?
)sql";

// The newest calls of an entry, or those of them whose ids are in a JSON array. It reads no more rows than it
// returns: an entry may have many.
constexpr const char* kSelect = R"sql(
SELECT call.id, item_order, listed, call_id, party.number, connected_number, text_c, text_d, time_and_date,
    log_target, presentation_a, presentation_b, presentation_c, presentation_d, duration_text, time_format,
    coalesce(redirected.number, ''), coalesce(redirected.name, ''),
    redirecting_number_presentation, redirecting_name_presentation, transfer_number_type, redirecting_reason,
    completed_elsewhere, group_text, line_key, substitute_number, feature_access_code,
    forwarded_to_number, forwarding_target, forwarding_reason
FROM call JOIN party ON party.id = call.party LEFT JOIN party AS redirected ON redirected.id = call.redirecting
WHERE item = ? AND (?2 = '' OR call.id IN (SELECT value FROM json_each(?2)))
ORDER BY item_order DESC LIMIT ?
)sql";

// The database would accept other texts as a time, "now" among them. A text that is no time is 0.
constexpr const char* kStart = R"sql(
SELECT CASE WHEN ?1 GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]?*'
        THEN coalesce(CAST(strftime('%s', ?1) AS INTEGER), 0) ELSE 0 END
    - CASE WHEN ?2 AND substr(?1, 11) NOT GLOB '*[-+Zz]*' THEN ?3 ELSE 0 END
)sql";

// The calls with the identity of an occurrence, and if one of them is the occurrence itself, which no entry
// lists: it left its entry, or is one of the older calls of the entry ?6.
constexpr const char* kFindIdentity = R"sql(
SELECT call.id, part, listed = 0 AND list = ?1 AND number = ?2 FROM call JOIN party ON party.id = call.party
WHERE call.line = ?3 AND call_id = ?4 AND start = ?5 AND call_id <> ''
UNION ALL
SELECT call.id, 0, listed = 0 AND number = ?2 FROM call JOIN party ON party.id = call.party
WHERE ?4 = '' AND item = ?6 AND call_id = '' AND start = ?5
ORDER BY 2
)sql";

using Missed = MissedCallItem::MissedCallInfo;
using Dialled = DialledCallItem::DialledCallInfo;
using Received = ReceivedCallItem::ReceivedCallInfo;
using Forwarded = ForwardedCallItem::ForwardedCallInfo;

/// The occurrence as one of its base classes, or a default object of that class if it is no base.
template <typename Part, typename Info>
decltype(auto) as(Info& info) {
    if constexpr (std::is_base_of_v<Part, std::remove_const_t<Info>>) {
        return static_cast<std::conditional_t<std::is_const_v<Info>, const Part&, Part&>>(info);
    } else {
        return Part();
    }
}

void bindCallInfo(Query& query, const CallInfo& info) {
    query.bind(info.getConnectedNumber());
    query.bind(info.getTextC()).bind(info.getTextD()).bind(info.getTimeAndDate()).bind(info.getLogTarget());
    query.bind(info.getPresentationA()).bind(info.getPresentationB());
    query.bind(info.getPresentationC()).bind(info.getPresentationD());
}

void bindRedirecting(Query& query, const Redirecting& redirecting) {
    query.bind(redirecting.getRedirectingNumberPresentation())
        .bind(redirecting.getRedirectingNamePresentation());
    query.bind(redirecting.getTransferNumberType()).bind(redirecting.getRedirectingReason());
}

template <typename Info>
void bindFields(Query& query, const Info& info) {
    bindCallInfo(query, info);
    query.bind(as<Duration>(info).getDuration()).bind(as<TimeFormat>(info).getTimeFormat());
    bindRedirecting(query, info);
    const Missed& missed = as<Missed>(info);
    query.bind(missed.getCompletedElsewhere()).bind(missed.getGroupText()).bind(missed.getLineKey());
    const Dialled& dialled = as<Dialled>(info);
    query.bind(dialled.getSubstituteNumber()).bind(dialled.getFeatureAccessCode());
    const Forwarded& forwarded = as<Forwarded>(info);
    query.bind(forwarded.getForwardedToNumber());
    query.bind(forwarded.getForwardingTarget()).bind(forwarded.getForwardingReason());
}

void readCallInfo(Query& query, CallInfo& info) {
    info.setCallId(query.text());
    info.setNumber(query.text());
    info.setConnectedNumber(query.text());
    info.setTextC(query.text());
    info.setTextD(query.text());
    info.setTimeAndDate(query.text());
    info.setLogTarget(query.smallNumber());
    info.setPresentationA(query.smallNumber());
    info.setPresentationB(query.smallNumber());
    info.setPresentationC(query.smallNumber());
    info.setPresentationD(query.smallNumber());
}

void readRedirecting(Query& query, Redirecting& redirecting) {
    redirecting.setRedirectingNumber(query.text());
    redirecting.setRedirectingName(query.text());
    redirecting.setRedirectingNumberPresentation(query.smallNumber());
    redirecting.setRedirectingNamePresentation(query.smallNumber());
    redirecting.setTransferNumberType(query.smallNumber());
    redirecting.setRedirectingReason(query.smallNumber());
}

template <typename Info>
void readFields(Query& query, Info& info) {
    readCallInfo(query, info);
    auto&& duration = as<Duration>(info);
    duration.setDuration(query.text());
    auto&& timeFormat = as<TimeFormat>(info);
    timeFormat.setTimeFormat(query.smallNumber());
    readRedirecting(query, info);
    auto&& missed = as<Missed>(info);
    missed.setCompletedElsewhere(query.flag());
    missed.setGroupText(query.text());
    missed.setLineKey(query.text());
    auto&& dialled = as<Dialled>(info);
    dialled.setSubstituteNumber(query.text());
    dialled.setFeatureAccessCode(query.flag());
    auto&& forwarded = as<Forwarded>(info);
    forwarded.setForwardedToNumber(query.text());
    forwarded.setForwardingTarget(query.smallNumber());
    forwarded.setForwardingReason(query.smallNumber());
}

template <typename Info>
void readInto(Query& rows, std::list<Info>& occurrences) {
    while (rows.next()) {
        static_cast<void>(rows.number());
        static_cast<void>(rows.number());
        static_cast<void>(rows.flag());
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

CallReason reasonOf(const Missed& missed, const CallFacts& facts) {
    return facts.reason == CallReason::eNone && missed.getCompletedElsewhere()
               ? CallReason::eCompletedElsewhere
               : facts.reason;
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
    Query rows = m_session.query(kSelect);
    // The listed calls are the newest ones.
    rows.bind(item).bind(std::string()).bind(std::int64_t{CallItemWithPicture::kMaxOccurrences});
    while (rows.next()) {
        Stored<Info> call{.id = rows.number(), .order = rows.number()};
        if (!rows.flag()) {
            break;
        }
        readFields(rows, call.info);
        stored.push_back(std::move(call));
    }
    return stored;
}

template <typename Item>
void HistoryRows::write(std::int64_t item, const std::string& name,
                        const std::list<typename ListTraits<Item>::Info>& occurrences,
                        const CallFacts* facts) {
    using Info = typename ListTraits<Item>::Info;
    std::list<Stored<Info>> stored = listedOf<Info>(item);
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
            call.order = (last ? *last : newestOrder(item)) + 1;
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
            m_hasDeleted = true;
            m_session.query("DELETE FROM call WHERE id = ?").bind(call->id).run();
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
    const std::int64_t start = startOf(info.getTimeAndDate(), timeFormat.getTimeFormat());
    std::int64_t part = 0;
    const std::int64_t id = call.id != 0 ? call.id : findUnlisted(info, start, list, item, part);
    Query query = m_session.query(id != 0 ? kUpdate : kInsert);
    query.bind(item).bind(call.order);
    if (id == 0) {
        query.bind(m_parties.idOf(info.getNumber(), name));
    }
    query.bind(hasRedirecting ? std::optional(m_parties.idOf(redirecting, redirectingName)) : std::nullopt);
    query.bind(secondsOf(duration.getDuration())).bind(static_cast<std::int32_t>(reasonOf(missed, known)));
    if (id == 0) {
        query.bind(info.getCallId()).bind(part).bind(start).bind(m_context.line);
        query.bind(static_cast<std::int32_t>(list));
        query.bind(secondsOf(known.established)).bind(secondsOf(known.ended)).bind(known.endApproximate);
        query.bind(hasConnected ? std::optional(m_parties.idOf(known.connectedNumber, known.connectedName))
                                : std::nullopt);
    }
    bindFields(query, info);
    if (id != 0) {
        query.bind(id);
    }
    query.run();
}

std::int64_t HistoryRows::findUnlisted(const CallInfo& info, std::int64_t start, ListName list,
                                       std::int64_t item, std::int64_t& part) {
    Query rows = m_session.query(kFindIdentity);
    rows.bind(static_cast<std::int32_t>(list)).bind(info.getNumber()).bind(m_context.line);
    rows.bind(info.getCallId()).bind(start).bind(item);
    while (rows.next()) {
        const std::int64_t id = rows.number();
        part = rows.number() + 1;
        if (rows.flag()) {
            return id;
        }
    }
    return 0;
}

std::int64_t HistoryRows::startOf(const std::string& timeAndDate, std::int32_t timeFormat) {
    Query query = m_session.query(kStart);
    query.bind(timeAndDate).bind(timeFormat == CallLogEntryEvent::eTimeLocal);
    query.bind(std::int64_t{m_context.phoneAhead.count()});
    return query.next() ? query.number() : 0;
}

std::int64_t HistoryRows::newestOrder(std::int64_t item) {
    Query query = m_session.query("SELECT coalesce(max(item_order), 0) FROM call WHERE item = ?");
    return query.bind(item).next() ? query.number() : 0;
}

template <typename Info>
void HistoryRows::readListed(std::int64_t item, std::list<Info>& occurrences) {
    for (Stored<Info>& call : listedOf<Info>(item)) {
        occurrences.push_back(std::move(call.info));
    }
}

template <typename Info>
void HistoryRows::readNewest(std::int64_t item, std::int64_t limit, std::list<Info>& occurrences) {
    Query rows = m_session.query(kSelect);
    rows.bind(item).bind(std::string()).bind(limit);
    readInto(rows, occurrences);
}

template <typename Info>
void HistoryRows::read(std::int64_t item, const std::vector<std::int64_t>& calls,
                       std::list<Info>& occurrences) {
    std::string ids;
    for (const std::int64_t call : calls) {
        ids += (ids.empty() ? "[" : ",") + std::to_string(call);
    }
    Query rows = m_session.query(kSelect);
    rows.bind(item).bind(ids.empty() ? "[]" : ids + "]").bind(std::int64_t{-1});
    readInto(rows, occurrences);
}

void HistoryRows::removeOf(std::int64_t item) {
    m_hasDeleted = true;
    m_session.query("DELETE FROM call WHERE item = ?").bind(item).run();
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
    m_session.query("DELETE FROM call WHERE line = ? AND list = ?")
        .bind(m_context.line)
        .bind(static_cast<std::int32_t>(list))
        .run();
}

bool HistoryRows::removeTraces() {
    if (m_hasDeleted) {
        m_parties.removeUnused();
    }
    return m_hasDeleted;
}

template void HistoryRows::write<MissedCallItem>(std::int64_t, const std::string&, const std::list<Missed>&,
                                                 const CallFacts*);
template void HistoryRows::write<DialledCallItem>(std::int64_t, const std::string&, const std::list<Dialled>&,
                                                  const CallFacts*);
template void HistoryRows::write<ReceivedCallItem>(std::int64_t, const std::string&,
                                                   const std::list<Received>&, const CallFacts*);
template void HistoryRows::write<ForwardedCallItem>(std::int64_t, const std::string&,
                                                    const std::list<Forwarded>&, const CallFacts*);
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
