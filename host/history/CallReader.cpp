#include "host/history/CallReader.h"

#include "host/presentation/PlainText.h"

namespace host {
namespace {

using std::chrono::seconds;
using std::chrono::sys_seconds;

constexpr const char* kFind = R"sql(
SELECT call.id, call.list, party.number, party.name, party.lookup,
    call.connected IS NOT NULL, connected.number, connected.name, call.connected_number, call.forwarded_to_number,
    call.redirecting IS NOT NULL, redirecting.number, redirecting.name, call.reason,
    call.start, call.established, call.ended, call.duration, call.end_approximate, call.line_key, call.call_id,
    call.item, call.list <> 0 OR coalesce(call_item.viewed, 1), call.called_back_at
FROM call JOIN party ON party.id = call.party
    LEFT JOIN party AS connected ON connected.id = call.connected
    LEFT JOIN party AS redirecting ON redirecting.id = call.redirecting
    LEFT JOIN call_item ON call_item.id = call.item
WHERE call.id = ? AND call.line = ?
)sql";

sys_seconds timeFrom(Query& row) {
    return sys_seconds(seconds(row.number()));
}

std::optional<sys_seconds> optionalTimeFrom(Query& row) {
    const std::optional<std::int64_t> time = row.optionalNumber();
    return time ? std::optional(sys_seconds(seconds(*time))) : std::nullopt;
}

Party partyFrom(Query& row) {
    Party party;
    party.number = row.text();
    party.name = row.text();
    return party;
}

std::optional<Party> optionalPartyFrom(Query& row) {
    const bool present = row.flag();
    Party party = partyFrom(row);
    return present ? std::optional(std::move(party)) : std::nullopt;
}

CallReason reasonOf(std::int64_t value) {
    const bool known = value >= 0 && value < static_cast<std::int64_t>(kCallReasonWords.size());
    return known ? static_cast<CallReason>(value) : CallReason::eNone;
}

/// The party to which the call went, as far as the journal knows it, for calls of which the link knows none.
std::optional<Party> otherConnectedParty(const std::string& connectedNumber,
                                         const std::string& forwardedToNumber) {
    const std::string& number = connectedNumber.empty() ? forwardedToNumber : connectedNumber;
    return number.empty() ? std::nullopt : std::optional(Party{number, {}});
}

}  // namespace

std::optional<Call> CallReader::find(std::int64_t id) {
    Query row = m_session.query(kFind);
    if (!row.bind(id).bind(m_line).next()) {
        return std::nullopt;
    }
    Call call;
    call.id = row.number();
    call.list = static_cast<ListName>(row.smallNumber());
    call.party = partyFrom(row);
    call.contactName = contactName(row.text());
    call.connected = optionalPartyFrom(row);
    const std::string connectedNumber = row.text();
    const std::string forwardedToNumber = row.text();
    if (!call.connected) {
        call.connected = otherConnectedParty(connectedNumber, forwardedToNumber);
    }
    call.redirecting = optionalPartyFrom(row);
    call.reason = reasonOf(row.number());
    call.start = timeFrom(row);
    call.established = optionalTimeFrom(row);
    call.ended = optionalTimeFrom(row);
    call.duration = seconds(row.number());
    call.endApproximate = row.flag();
    call.lineKey = row.text();
    call.callId = row.text();
    call.entry = row.optionalNumber();
    call.viewed = row.flag();
    call.calledBackAt = optionalTimeFrom(row);
    return call;
}

std::string CallReader::contactName(const std::string& lookup) {
    if (lookup.empty()) {
        return {};
    }
    const auto [name, isNew] = m_names.try_emplace(lookup);
    if (isNew) {
        if (const auto match = m_contacts.lookUp(lookup)) {
            if (const auto contact = m_contacts.find(match->id)) {
                name->second = fullName(contact->getFirstname(), contact->getSurname());
            }
        }
    }
    return name->second;
}

}  // namespace host
