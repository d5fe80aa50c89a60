#include "host/call-import/CallInsertion.h"

#include <array>
#include <cstdio>

#include "host/history/CallJson.h"

namespace host {
namespace {

/// Greater ids of a file are not taken over: the database could run out of ids.
constexpr std::int64_t kMaxId = std::int64_t{1} << 40;

constexpr const char* kSameId = R"sql(
SELECT call.id, part, list, number FROM call JOIN party ON party.id = call.party
WHERE call.line = ? AND call_id = ? AND start = ? AND call_id <> '' ORDER BY part
)sql";

constexpr const char* kSameCall = R"sql(
SELECT call.id, 0, list, number FROM party JOIN call ON call.party = party.id
WHERE party.line = ? AND number = ? AND start = ? AND duration = ? AND (list = 1) = ?
)sql";

constexpr const char* kInsert = R"sql(
INSERT INTO call (item, item_order, listed, text_c, text_d, log_target,
    presentation_a, presentation_b, presentation_c, presentation_d, time_format,
    redirecting_number_presentation, redirecting_name_presentation, transfer_number_type, redirecting_reason,
    group_text, substitute_number, feature_access_code, forwarding_target, forwarding_reason, forwarded_to_number,
    id, line, list, call_id, part, start, established, ended, duration, end_approximate, called_back_at, reason,
    party, connected, redirecting, connected_number, time_and_date, duration_text, completed_elsewhere, line_key)
VALUES (NULL, 0, 0, '', '', 0,  0, 0, 0, 0, 0,  0, 0, 0, 0,  '', '', 0, 0, 0, ?,
    ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?,  ?, ?, ?, ?, ?, ?, ?, ?)
)sql";

std::int64_t secondsOf(std::chrono::sys_seconds time) {
    return time.time_since_epoch().count();
}

std::optional<std::int64_t> secondsOf(const std::optional<std::chrono::sys_seconds>& time) {
    return time ? std::optional(secondsOf(*time)) : std::nullopt;
}

/// The duration as an occurrence has it: "01:15".
std::string durationText(const Call& call) {
    if (call.list == ListName::eMissed) {
        return {};
    }
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%02lld:%02d", static_cast<long long>(call.duration.count() / 60),
                  static_cast<int>(call.duration.count() % 60));
    return text.data();
}

}  // namespace

std::optional<std::int64_t> CallInsertion::add(const Call& call) {
    const Identity identity = identityOf(call);
    if (identity.isKnown) {
        return std::nullopt;
    }
    const std::int64_t party = m_parties.idOf(call.party.number, call.party.name);
    const auto connected = partyOf(call.connected);
    const auto redirecting = partyOf(call.redirecting);
    Query query = m_session.query(kInsert);
    const std::string connectedNumber = call.connected ? call.connected->number : std::string();
    query.bind(call.list == ListName::eForwarded ? connectedNumber : std::string());
    query.bind(freeId(call.id)).bind(m_line).bind(static_cast<std::int32_t>(call.list)).bind(call.callId);
    query.bind(identity.nextPart).bind(secondsOf(call.start));
    query.bind(secondsOf(call.established)).bind(secondsOf(call.ended));
    query.bind(std::int64_t{call.duration.count()}).bind(call.endApproximate);
    query.bind(secondsOf(call.calledBackAt)).bind(static_cast<std::int32_t>(call.reason));
    query.bind(party).bind(connected).bind(redirecting);
    query.bind(connectedNumber);
    query.bind(utcText(call.start)).bind(durationText(call));
    query.bind(call.reason == CallReason::eCompletedElsewhere).bind(call.lineKey);
    query.run();
    const std::int64_t id = m_session.lastInsertedId();
    m_added.emplace(id, call.id);
    return id;
}

std::int64_t CallInsertion::lastId() {
    Query query = m_session.query("SELECT seq FROM sqlite_sequence WHERE name = 'call'");
    return query.next() ? query.number() : 0;
}

CallInsertion::Identity CallInsertion::identityOf(const Call& call) {
    const bool hasId = !call.callId.empty();
    Query rows = m_session.query(hasId ? kSameId : kSameCall);
    rows.bind(m_line).bind(hasId ? call.callId : call.party.number).bind(secondsOf(call.start));
    if (!hasId) {
        rows.bind(std::int64_t{call.duration.count()}).bind(isOutgoing(call));
    }
    Identity identity;
    while (rows.next() && !identity.isKnown) {
        const auto added = m_added.find(rows.number());
        identity.nextPart = rows.number() + (hasId ? 1 : 0);
        const bool sameList = rows.smallNumber() == static_cast<std::int32_t>(call.list) || !hasId;
        const bool areDifferent =
            added != m_added.end() &&
            (!sameList || (call.id != 0 && added->second != 0 && call.id != added->second));
        identity.isKnown = rows.text() == call.party.number && !areDifferent;
    }
    return identity;
}

std::optional<std::int64_t> CallInsertion::freeId(std::int64_t id) {
    if (id <= 0 || id > kMaxId) {
        return std::nullopt;
    }
    Query taken = m_session.query("SELECT 1 FROM call WHERE id = ?");
    return taken.bind(id).next() ? std::nullopt : std::optional(id);
}

std::optional<std::int64_t> CallInsertion::partyOf(const std::optional<Party>& party) {
    return party ? std::optional(m_parties.idOf(party->number, party->name)) : std::nullopt;
}

}  // namespace host
