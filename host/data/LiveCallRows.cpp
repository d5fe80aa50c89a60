#include "host/data/LiveCallRows.h"

#include <chrono>
#include <optional>
#include <set>
#include <sstream>

namespace host {
namespace {

constexpr const char* kWrite = R"sql(
INSERT OR REPLACE INTO live_call (line, device, call_id, first_event, role, outgoing, conference, conference_id,
    marked_missed, pick_up, transferred, elsewhere, reason, calling_number, calling_name, called_number, called_name,
    redirecting_number, redirecting_name, partner_number, partner_name, others, established, last_event, seen,
    ended, end_approximate)
VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)
)sql";

constexpr const char* kRead = R"sql(
SELECT device, call_id, first_event, role, outgoing, conference, conference_id, marked_missed,
    pick_up, transferred, elsewhere, reason, calling_number, calling_name, called_number, called_name,
    redirecting_number, redirecting_name, partner_number, partner_name, others, established, last_event, seen, ended, end_approximate
FROM live_call WHERE line = ? ORDER BY first_event
)sql";

// Times are microseconds since 1970.
std::int64_t numberOf(PhoneCall::Time time) {
    return std::chrono::duration_cast<std::chrono::microseconds>(time.time_since_epoch()).count();
}

std::optional<std::int64_t> numberOf(const std::optional<PhoneCall::Time>& time) {
    return time ? std::optional(numberOf(*time)) : std::nullopt;
}

std::optional<PhoneCall::Time> timeFrom(Query& row) {
    const std::optional<std::int64_t> number = row.optionalNumber();
    return number ? std::optional(PhoneCall::Time(std::chrono::microseconds(*number))) : std::nullopt;
}

CSTADevice deviceFrom(Query& row) {
    CSTADevice device;
    device.number = row.text();
    device.name = row.text();
    return device;
}

/// Numbers as one text, each followed by a line break, which no number contains.
std::string textOf(const std::set<std::string>& numbers) {
    std::string text;
    for (const std::string& number : numbers) {
        text += number + '\n';
    }
    return text;
}

std::set<std::string> numbersFrom(const std::string& text) {
    std::set<std::string> numbers;
    std::istringstream lines(text);
    for (std::string number; std::getline(lines, number);) {
        numbers.insert(number);
    }
    return numbers;
}

NotedCall callFrom(Query& row) {
    NotedCall noted;
    PhoneCall& call = noted.call;
    call.device = row.text();
    call.callId = row.text();
    call.firstEvent = timeFrom(row).value_or(PhoneCall::Time());
    call.role = static_cast<PhoneRole>(row.smallNumber());
    call.outgoing = row.flag();
    call.conference = row.flag();
    call.conferenceId = row.text();
    call.markedMissed = row.flag();
    call.pickUp = row.flag();
    call.transferred = row.flag();
    call.elsewhere = row.flag();
    call.reason = static_cast<CallReason>(row.smallNumber());
    call.calling = deviceFrom(row);
    call.called = deviceFrom(row);
    call.redirecting = deviceFrom(row);
    call.partner = deviceFrom(row);
    call.others = numbersFrom(row.text());
    call.established = timeFrom(row);
    call.lastEvent = timeFrom(row).value_or(PhoneCall::Time());
    noted.seen = timeFrom(row).value_or(PhoneCall::Time());
    noted.ended = timeFrom(row);
    noted.endApproximate = row.flag();
    return noted;
}

void bindDevice(Query& query, const CSTADevice& device) {
    query.bind(device.number).bind(device.name);
}

}  // namespace

std::vector<NotedCall> LiveCallRows::read() {
    std::vector<NotedCall> calls;
    Query rows = m_session.query(kRead);
    rows.bind(m_line);
    while (rows.next()) {
        calls.push_back(callFrom(rows));
    }
    return calls;
}

void LiveCallRows::write(const NotedCall& noted) {
    const PhoneCall& call = noted.call;
    Query row = m_session.query(kWrite);
    row.bind(m_line).bind(call.device).bind(call.callId).bind(numberOf(call.firstEvent));
    row.bind(static_cast<std::int32_t>(call.role)).bind(call.outgoing).bind(call.conference);
    row.bind(call.conferenceId).bind(call.markedMissed).bind(call.pickUp).bind(call.transferred);
    row.bind(call.elsewhere).bind(static_cast<std::int32_t>(call.reason));
    bindDevice(row, call.calling);
    bindDevice(row, call.called);
    bindDevice(row, call.redirecting);
    bindDevice(row, call.partner);
    row.bind(textOf(call.others)).bind(numberOf(call.established)).bind(numberOf(call.lastEvent));
    row.bind(numberOf(noted.seen)).bind(numberOf(noted.ended)).bind(noted.endApproximate).run();
}

void LiveCallRows::remove(const PhoneCallKey& call) {
    m_session.query("DELETE FROM live_call WHERE line = ? AND device = ? AND call_id = ? AND first_event = ?")
        .bind(m_line)
        .bind(call.device)
        .bind(call.callId)
        .bind(numberOf(call.firstEvent))
        .run();
}

void LiveCallRows::removeEnded(const std::string& callId) {
    m_session.query("DELETE FROM live_call WHERE line = ? AND call_id = ? AND ended IS NOT NULL")
        .bind(m_line)
        .bind(callId)
        .run();
}

}  // namespace host
