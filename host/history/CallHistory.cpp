#include "host/history/CallHistory.h"

#include <vector>

#include "host/database/Database.h"
#include "host/history/CallKeySearch.h"
#include "host/history/CallReader.h"

namespace host {

std::optional<CallPage> CallHistory::page(const CallQuery& query) const {
    CallPage page;
    const bool done = m_database.readAside("reading the history", [&](Database::Session& session) {
        std::vector<CallKey> keys = CallKeySearch(session, m_line, query, m_digits).find();
        if (keys.size() > query.limit) {
            keys.resize(query.limit);
            page.next = keys.empty() ? std::string() : cursorAfter(keys.back());
        }
        CallReader reader(session, m_line);
        for (const CallKey& key : keys) {
            if (std::optional<Call> call = reader.find(key.id)) {
                page.calls.push_back(std::move(*call));
            }
        }
    });
    return done ? std::optional(std::move(page)) : std::nullopt;
}

bool CallHistory::find(std::int64_t id, std::optional<Call>& call) const {
    return m_database.readAside(
        "reading a call", [&](Database::Session& session) { call = CallReader(session, m_line).find(id); });
}

}  // namespace host
