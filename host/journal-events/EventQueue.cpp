#include "host/journal-events/EventQueue.h"

#include <chrono>
#include <optional>
#include <vector>

namespace host {
namespace {

constexpr const char* kAddOfCall = R"sql(
INSERT INTO webhook_event (line, kind, uid, time, call, call_id, device, outgoing, number, name,
    redirecting_number, redirecting_name)
VALUES (?, ?, lower(hex(randomblob(16))), unixepoch(), ?, '', '', 0, '', '', '', '')
)sql";

constexpr const char* kAddListDeleted = R"sql(
INSERT INTO webhook_event (line, kind, uid, time, list, call_id, device, outgoing, number, name,
    redirecting_number, redirecting_name)
VALUES (?, ?, lower(hex(randomblob(16))), unixepoch(), ?, '', '', 0, '', '', '', '')
)sql";

constexpr const char* kAddLive = R"sql(
INSERT OR IGNORE INTO webhook_event (line, kind, uid, time, call_id, device, outgoing, number, name,
    redirecting_number, redirecting_name, start, established)
VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)
)sql";

constexpr const char* kLiveParties = R"sql(
SELECT DISTINCT number, redirecting_number FROM webhook_event
WHERE line = ? AND (number <> '' OR redirecting_number <> '')
)sql";

std::int32_t numberOf(JournalEventKind kind) {
    return static_cast<std::int32_t>(kind);
}

std::int64_t numberOf(std::chrono::sys_seconds time) {
    return time.time_since_epoch().count();
}

}  // namespace

void EventQueue::addOfCall(DatabaseSession& session, JournalEventKind kind, std::int64_t call) const {
    if (wants(kind)) {
        session.query(kAddOfCall).bind(m_line).bind(numberOf(kind)).bind(call).run();
        m_hasNew = true;
    }
}

void EventQueue::addListDeleted(DatabaseSession& session, ListName list) const {
    constexpr JournalEventKind kKind = JournalEventKind::eListDeleted;
    if (wants(kKind)) {
        session.query(kAddListDeleted)
            .bind(m_line)
            .bind(numberOf(kKind))
            .bind(static_cast<std::int32_t>(list))
            .run();
        m_hasNew = true;
    }
}

void EventQueue::add(DatabaseSession& session, const LiveCallEvent& event) const {
    Query row = session.query(kAddLive);
    row.bind(m_line).bind(numberOf(event.kind)).bind(event.uid).bind(numberOf(event.time));
    row.bind(event.callId).bind(event.device).bind(event.outgoing).bind(event.number).bind(event.name);
    row.bind(event.redirectingNumber).bind(event.redirectingName).bind(numberOf(event.start));
    row.bind(event.established ? std::optional(numberOf(*event.established)) : std::nullopt).run();
    m_hasNew = true;
}

void EventQueue::setListener(std::function<void()> listener) {
    const std::lock_guard lock(m_mutex);
    m_listener = std::move(listener);
}

void EventQueue::committed() const {
    if (m_hasNew && m_hasNew.exchange(false)) {
        const std::lock_guard lock(m_mutex);
        if (m_listener) {
            m_listener();
        }
    }
}

void eraseFromEvents(DatabaseSession& session, const std::string& line,
                     const std::function<bool(const std::string&)>& matches) {
    std::vector<std::pair<std::string, std::string>> parties;
    {
        Query rows = session.query(kLiveParties);
        rows.bind(line);
        while (rows.next()) {
            std::string number = rows.text();
            parties.emplace_back(std::move(number), rows.text());
        }
    }
    for (const auto& [number, redirecting] : parties) {
        if (!number.empty() && matches(number)) {
            session.query("DELETE FROM webhook_event WHERE line = ? AND number = ?")
                .bind(line)
                .bind(number)
                .run();
        } else if (!redirecting.empty() && matches(redirecting)) {
            session
                .query(
                    "UPDATE webhook_event SET redirecting_number = '', redirecting_name = '' "
                    "WHERE line = ? AND redirecting_number = ?")
                .bind(line)
                .bind(redirecting)
                .run();
        }
    }
}

}  // namespace host
