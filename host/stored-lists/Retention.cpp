#include "host/stored-lists/Retention.h"

#include <set>
#include <string>

#include "platform/logging/Logging.h"

namespace host {
namespace {

constexpr const char* kOldCallBacks = R"sql(
SELECT entry_id FROM callback WHERE line = ?1
    AND coalesce(CAST(strftime('%s', time_date) AS INTEGER), ?2) < ?2 ORDER BY time_date LIMIT 1000
)sql";

}  // namespace

void Retention::apply(std::chrono::sys_seconds now) {
    if (!isOn()) {
        return;
    }
    const std::optional<std::size_t> removed = m_calls.removeOlderThan(now - m_keep);
    if (removed && *removed > 0) {
        logAppUni("Journal", __FILE_NAME__, 4, __LINE__, "%zu calls are older than %d days and are deleted",
                  *removed, static_cast<int>(m_keep.count()));
    }
    removeCallBacks(now - m_keep);
}

void Retention::removeCallBacks(std::chrono::sys_seconds limit) {
    const StoredEntries::Sources& sources = m_entries.sources();
    std::set<std::string> entryIds;
    do {
        entryIds.clear();
        if (!sources.database.readAside("finding old callbacks", [&](Database::Session& session) {
                Query rows = session.query(kOldCallBacks);
                rows.bind(sources.line).bind(std::int64_t{limit.time_since_epoch().count()});
                while (rows.next()) {
                    entryIds.insert(rows.text());
                }
            })) {
            return;
        }
    } while (!entryIds.empty() && m_entries.remove(ListName::eCallbacks, entryIds));
}

}  // namespace host
