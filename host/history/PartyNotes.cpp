#include "host/history/PartyNotes.h"

#include "host/database/Database.h"
#include "host/history/CallReader.h"
#include "host/history/CallSelection.h"
#include "platform/digits/DigitAnalysisServiceIfc.h"

namespace host {
namespace {

constexpr const char* kCalls = R"sql(
SELECT count(*) FILTER (WHERE call.list = 0), count(*) FILTER (WHERE call.list = 1),
    count(*) FILTER (WHERE call.list = 2), count(*) FILTER (WHERE call.list = 3), count(*),
    coalesce(sum(call.duration), 0), min(call.start), max(call.start)
FROM party CROSS JOIN call INDEXED BY call_party ON call.party = party.id WHERE
)sql";

void readCalls(Database::Session& session, const CallSelection& parties, PartySummary& summary) {
    Query calls = session.query((kCalls + parties.condition()).c_str());
    parties.bind(calls);
    if (!calls.next()) {
        return;
    }
    for (std::int64_t* const count :
         {&summary.missed, &summary.dialled, &summary.received, &summary.forwarded, &summary.calls}) {
        *count = calls.number();
    }
    summary.talkTime = std::chrono::seconds(calls.number());
    for (auto* const time : {&summary.firstCall, &summary.lastCall}) {
        if (const auto start = calls.optionalNumber()) {
            *time = std::chrono::sys_seconds(std::chrono::seconds(*start));
        }
    }
}

}  // namespace

std::optional<PartySummary> PartyNotes::find(const std::string& number) const {
    CallFilter filter;
    filter.number = number;
    const CallSelection parties = CallSelection::ofParties(m_line, filter, m_digits);
    PartySummary summary;
    summary.number = normalised(number);
    const bool done = m_database.readAside("reading a party", [&](Database::Session& session) {
        readCalls(session, parties, summary);
        summary.displayName = CallReader(session, m_line).contactName(summary.number);
        Query newest =
            session.query(("SELECT party.name FROM party WHERE " + parties.condition() +
                           " ORDER BY (SELECT max(start) FROM call WHERE call.party = party.id) DESC LIMIT 1")
                              .c_str());
        parties.bind(newest);
        if (summary.displayName.empty() && newest.next()) {
            summary.displayName = newest.text();
        }
        Query note = session.query("SELECT note FROM party_note WHERE line = ? AND number = ?");
        if (note.bind(m_line).bind(summary.number).next()) {
            summary.note = note.text();
        }
    });
    return done ? std::optional(std::move(summary)) : std::nullopt;
}

bool PartyNotes::setNote(const std::string& number, const std::string& note) {
    const std::string key = normalised(number);
    bool removed = false;
    const bool done = m_database.write("storing a note", [&](Database::Session& session) {
        removed = session.query("DELETE FROM party_note WHERE line = ? AND number = ?")
                      .bind(m_line)
                      .bind(key)
                      .run() > 0;
        if (!note.empty()) {
            session.query("INSERT INTO party_note (line, number, note) VALUES (?, ?, ?)")
                .bind(m_line)
                .bind(key)
                .bind(note)
                .run();
        }
    });
    if (removed) {
        m_database.truncateLog();
    }
    return done;
}

std::string PartyNotes::normalised(std::string number) const {
    if (m_digits != nullptr) {
        m_digits->normalise(number);
    }
    return number;
}

}  // namespace host
