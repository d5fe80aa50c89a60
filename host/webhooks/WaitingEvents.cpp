#include "host/webhooks/WaitingEvents.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <utility>

#include "host/journal-events/EventQueue.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

/// The row of the last event that was ever added.
constexpr const char* kLast =
    "SELECT coalesce((SELECT seq FROM sqlite_sequence WHERE name = 'webhook_event'), 0)";

// Its last parameters are the last rows to remove, one for each kind.
constexpr const char* kRemove = R"sql(
DELETE FROM webhook_event WHERE id > ? AND id <= ?
    AND id <= CASE kind WHEN 0 THEN ? WHEN 1 THEN ? WHEN 2 THEN ? WHEN 3 THEN ? WHEN 4 THEN ? ELSE id END
)sql";

/// Begins with the parameter position.
std::string conditionOf(const std::set<JournalEventKind>& wanted) {
    std::string kinds;
    for (const JournalEventKind kind : wanted) {
        kinds += (kinds.empty() ? "" : ",") + std::to_string(static_cast<int>(kind));
    }
    return " FROM webhook_event WHERE id > ? AND kind IN (" + kinds + ")";
}

std::int64_t numberOf(Query&& query) {
    return query.next() ? query.number() : 0;
}

}  // namespace

WaitingEvents::WaitingEvents(const Source& source, std::string key, const std::set<JournalEventKind>& wanted)
    : m_database(source.database),
      m_digits(source.digits),
      m_key(std::move(key)),
      m_wanted(wanted),
      m_next("SELECT " + std::string(EventMessages::kColumns) + conditionOf(wanted) + " ORDER BY id LIMIT 1"),
      m_countUpTo("SELECT count(*)" + conditionOf(wanted) + " AND id <= ?"),
      m_lastBefore("SELECT coalesce(max(id), 0)" + conditionOf(wanted) + " AND time < ?"),
      m_lastSurplus("SELECT id" + conditionOf(wanted) + " ORDER BY id DESC LIMIT 1 OFFSET ?") {}

std::int64_t WaitingEvents::countUpTo(Database::Session& session, std::int64_t last) const {
    return numberOf(std::move(session.query(m_countUpTo.c_str()).bind(m_position.load()).bind(last)));
}

std::optional<EventMessage> WaitingEvents::next() {
    if (m_dropped > 0) {
        return droppedMessage(m_dropped, m_position);
    }
    EventMessage message;
    bool found = true;
    while (found && message.body.empty()) {
        std::int64_t last = 0;
        const bool done =
            m_database.readAsideSoon("reading an event for a webhook", [&](Database::Session& session) {
                Query row = session.query(m_next.c_str());
                found = row.bind(m_position.load()).next();
                if (found) {
                    message = EventMessages(session, m_digits).read(row);
                    last = message.event;
                } else {
                    last = numberOf(session.query(kLast));
                }
            });
        if (!done) {
            return std::nullopt;
        }
        if (message.body.empty()) {
            // No event that it wants: an event of a deleted call, or none.
            advance(last);
        }
    }
    return found ? std::optional(std::move(message)) : std::nullopt;
}

void WaitingEvents::advance(std::int64_t position) noexcept {
    m_isChanged = m_isChanged || position > m_position;
    m_position = std::max(m_position.load(), position);
}

void WaitingEvents::delivered(const EventMessage& message) noexcept {
    if (message.event > 0) {
        advance(message.event);
    } else {
        m_dropped = 0;
        m_isChanged = true;
    }
}

std::int64_t WaitingEvents::limit(std::chrono::system_clock::time_point now) {
    std::int64_t last = 0;
    std::int64_t count = 0;
    const std::int64_t oldest =
        std::chrono::floor<std::chrono::seconds>(now - kLongest).time_since_epoch().count();
    const bool done =
        m_database.readAsideSoon("limiting the events of a webhook", [&](Database::Session& session) {
            const auto first = [&](const std::string& sql, std::int64_t value) {
                return numberOf(std::move(session.query(sql.c_str()).bind(m_position.load()).bind(value)));
            };
            last = std::max(first(m_lastBefore, oldest), first(m_lastSurplus, kMost));
            count = last > 0 ? countUpTo(session, last) : 0;
        });
    if (!done || count == 0) {
        return 0;
    }
    advance(last);
    m_dropped += count;
    return count;
}

std::optional<std::int64_t> WaitingEvents::count() const {
    std::int64_t count = 0;
    const bool done = m_database.readAsideSoon("counting events", [&](Database::Session& session) {
        count = countUpTo(session, std::numeric_limits<std::int64_t>::max());
    });
    return done ? std::optional(count) : std::nullopt;
}

bool WaitingEvents::load(Database& database, const std::vector<WaitingEvents*>& all) {
    return database.write("reading the positions of webhooks", [&](Database::Session& session) {
        const std::int64_t last = numberOf(session.query(kLast));
        for (WaitingEvents* const each : all) {
            Query row = session.query("SELECT position, dropped FROM webhook WHERE key = ?");
            const bool isKnown = row.bind(each->m_key).next();
            each->m_position = isKnown ? row.number() : last;
            each->m_dropped = isKnown ? row.number() : 0;
        }
        session.query("DELETE FROM webhook").run();
        for (WaitingEvents* const each : all) {
            each->store(session);
            each->m_storedPosition = each->m_position;
        }
        removeDelivered(session, all, 0);
    });
}

void WaitingEvents::store(Database::Session& session) const {
    session.query("INSERT OR REPLACE INTO webhook (line, key, position, dropped) VALUES ('', ?, ?, ?)")
        .bind(m_key)
        .bind(m_position.load())
        .bind(m_dropped)
        .run();
}

/// Deletes the rows after `after` that each webhook which wants such events has got. A receiver that is down
/// keeps no others.
void WaitingEvents::removeDelivered(Database::Session& session, const std::vector<WaitingEvents*>& all,
                                    std::int64_t after) {
    std::int64_t last = 0;
    std::array<std::int64_t, kJournalEventKinds> lasts{};
    lasts.fill(std::numeric_limits<std::int64_t>::max());
    for (const WaitingEvents* const each : all) {
        last = std::max(last, each->m_position.load());
        for (const JournalEventKind kind : each->m_wanted) {
            std::int64_t& ofKind = lasts.at(static_cast<std::size_t>(kind));
            ofKind = std::min(ofKind, each->m_position.load());
        }
    }
    Query query = session.query(kRemove);
    query.bind(after).bind(last);
    for (const std::int64_t ofKind : lasts) {
        query.bind(ofKind);
    }
    query.run();
}

bool WaitingEvents::storePositions(Database& database, const std::vector<WaitingEvents*>& all) {
    if (std::none_of(all.begin(), all.end(), [](const WaitingEvents* each) { return each->m_isChanged; })) {
        return true;
    }
    std::int64_t after = std::numeric_limits<std::int64_t>::max();
    for (const WaitingEvents* const each : all) {
        after = each->m_isChanged ? std::min(after, each->m_storedPosition) : after;
    }
    const auto failure = database.note([&](Database::Session& session) {
        for (const WaitingEvents* const each : all) {
            each->store(session);
        }
        removeDelivered(session, all, after);
    });
    if (failure) {
        return false;
    }
    for (WaitingEvents* const each : all) {
        each->m_isChanged = false;
        each->m_storedPosition = each->m_position;
    }
    return true;
}

void WaitingEvents::forget(Database& database) {
    bool any = false;
    static_cast<void>(database.readAside("looking for events", [&any](Database::Session& session) {
        any = session.query("SELECT 1 FROM webhook UNION ALL SELECT 1 FROM webhook_event").next();
    }));
    if (any && database.write("forgetting events", [](Database::Session& session) {
            session.query("DELETE FROM webhook").run();
            session.query("DELETE FROM webhook_event").run();
        })) {
        database.truncateLog();
    }
}

}  // namespace host
