#include "host/call-import/ImportedEntries.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <random>
#include <utility>

#include "host/history/CallJson.h"
#include "host/presentation/PlainText.h"
#include "journal-items/CallItemWithPicture.h"

namespace host {
namespace {

constexpr std::int64_t kListedCalls = CallItemWithPicture::kMaxOccurrences;

// The newest entry of a key comes last.
constexpr const char* kEntries = R"sql(
SELECT call_item.id, call_item.list, group_by, first_name, surname, party.number, line_key
FROM call_item JOIN call ON call.id = (
        SELECT id FROM call WHERE item = call_item.id ORDER BY item_order DESC LIMIT 1)
    JOIN party ON party.id = call.party
WHERE call_item.line = ? ORDER BY sort_key, entry_id, call_item.id
)sql";

constexpr const char* kCounts = "SELECT list, count(*) FROM call_item WHERE line = ? GROUP BY list";

constexpr const char* kRenumber = R"sql(
WITH ordered AS (SELECT id, row_number() OVER (ORDER BY start, id) AS place FROM call WHERE item = ?)
UPDATE call SET item_order = place FROM ordered WHERE call.id = ordered.id AND item_order <> place
)sql";

constexpr const char* kUnlist = R"sql(
UPDATE call SET listed = 0 WHERE listed = 1
    AND id IN (SELECT id FROM call WHERE item = ? ORDER BY item_order DESC LIMIT ?)
)sql";

constexpr const char* kList = R"sql(
UPDATE call SET listed = 1 WHERE id IN (SELECT id FROM call WHERE item = ? ORDER BY item_order DESC LIMIT ?)
)sql";

constexpr const char* kInsert = R"sql(
INSERT INTO call_item (line, list, sort_key, entry_id, first_name, surname, picture_clip, viewed, group_by)
VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)
)sql";

constexpr const char* kOldest = R"sql(
SELECT id, sort_key FROM call_item WHERE line = ? AND list = ? ORDER BY sort_key, entry_id, id LIMIT 1
)sql";

/// The key of an entry in its list: all calls of one key belong to one entry.
std::string keyOf(ListName list, const std::string& number, const std::string& name,
                  const std::string& lineKey) {
    constexpr char kSeparator = '\x1f';
    std::string key = std::to_string(static_cast<int>(list)) + kSeparator + number + kSeparator;
    if (number.empty() && list != ListName::eDialled) {
        key += name;
    }
    return list == ListName::eMissed ? key + kSeparator + lineKey : key;
}

}  // namespace

ImportedEntries::ImportedEntries(Database::Session& session, const std::string& line,
                                 DigitAnalysisServiceIfc* digits, ImportRun& run)
    : m_session(session), m_line(line), m_contacts(session, line, digits), m_run(run) {
    Query rows = m_session.query(kEntries);
    rows.bind(m_line);
    while (rows.next()) {
        const std::int64_t id = rows.number();
        const auto list = static_cast<ListName>(rows.smallNumber());
        const std::string groupBy = rows.text();
        const std::string firstName = rows.text();
        const std::string name = fullName(firstName, rows.text());
        const std::string number = rows.text();
        m_entries[keyOf(list, list == ListName::eDialled ? groupBy : number, name, rows.text())] = id;
    }
    Query counts = m_session.query(kCounts);
    counts.bind(m_line);
    while (counts.next()) {
        const auto list = static_cast<ListName>(counts.smallNumber());
        m_counts[list] = static_cast<std::size_t>(counts.number());
    }
}

void ImportedEntries::take(const std::vector<NewCall>& calls) {
    std::map<std::string, Group> groups;
    for (const NewCall& each : calls) {
        const Call& call = *each.call;
        if (!call.calledBackAt) {
            groups[keyOf(call.list, call.party.number, call.party.name, call.lineKey)].push_back(each);
        }
    }
    for (auto& [key, group] : groups) {
        std::sort(group.begin(), group.end(), [](const NewCall& a, const NewCall& b) {
            return std::pair(a.call->start, a.id) < std::pair(b.call->start, b.id);
        });
        const auto found = m_entries.find(key);
        if (const std::int64_t entry = found != m_entries.end() ? found->second : make(key, group);
            entry != 0) {
            give(entry, group);
        }
    }
}

void ImportedEntries::give(std::int64_t entry, const Group& group) {
    order(entry, group);
    const bool unviewed =
        std::any_of(group.begin(), group.end(), [](const NewCall& each) { return each.unviewed; });
    if (m_run.made.contains(entry)) {
        list(entry, group.size());
        if (unviewed) {
            m_session.query("UPDATE call_item SET viewed = 0 WHERE id = ?").bind(entry).run();
        }
        return;
    }
    m_run.extended.insert(entry);
    if (unviewed) {
        m_run.unviewed.insert(entry);
    }
}

void ImportedEntries::order(std::int64_t entry, const Group& group) {
    struct End {
        std::int64_t order = 0;
        std::int64_t start = 0;
    };
    const auto endOf = [&](const char* sql) {
        Query row = m_session.query(sql);
        End end;
        if (row.bind(entry).next()) {
            end.order = row.number();
            end.start = row.number();
        }
        return end;
    };
    const End newest =
        endOf("SELECT item_order, start FROM call WHERE item = ? ORDER BY item_order DESC LIMIT 1");
    const End oldest = endOf("SELECT item_order, start FROM call WHERE item = ? ORDER BY item_order LIMIT 1");
    const bool areNewer = group.front().call->start.time_since_epoch().count() >= newest.start;
    const bool areOlder = group.back().call->start.time_since_epoch().count() <= oldest.start;
    std::int64_t next =
        areNewer || !areOlder ? newest.order + 1 : oldest.order - static_cast<std::int64_t>(group.size());
    Query update = m_session.query("UPDATE call SET item = ?, item_order = ? WHERE id = ?");
    for (const NewCall& each : group) {
        update.again().bind(entry).bind(next++).bind(each.id).run();
    }
    if (!areNewer && !areOlder) {
        m_session.query(kRenumber).bind(entry).run();
    }
}

void ImportedEntries::list(std::int64_t entry, std::size_t added) {
    m_session.query(kUnlist).bind(entry).bind(kListedCalls + static_cast<std::int64_t>(added)).run();
    m_session.query(kList).bind(entry).bind(kListedCalls).run();
    m_session
        .query(
            "UPDATE call_item SET sort_key = (SELECT time_and_date FROM call WHERE item = ?1 "
            "ORDER BY item_order DESC LIMIT 1) WHERE id = ?1")
        .bind(entry)
        .run();
}

std::int64_t ImportedEntries::make(const std::string& key, const Group& group) {
    const Call& newest = *group.back().call;
    const std::string time = utcText(newest.start);
    if (m_counts[newest.list] >= kMaxEntries && !makesSpace(newest.list, time)) {
        return 0;
    }
    const std::string& number = newest.party.number;
    const auto match = number.empty() ? std::nullopt : m_contacts.lookUp(m_contacts.indexed(number));
    Contact contact = match ? m_contacts.find(match->id).value_or(Contact()) : Contact();
    if (fullName(contact.getFirstname(), contact.getSurname()).empty()) {
        contact.setSurname(newest.party.name);
    }
    Query insert = m_session.query(kInsert);
    insert.bind(m_line).bind(static_cast<std::int32_t>(newest.list)).bind(time).bind(freeEntryId(time));
    insert.bind(contact.getFirstname()).bind(contact.getSurname()).bind(contact.getPicture());
    insert.bind(newest.list == ListName::eMissed);
    insert.bind(newest.list == ListName::eDialled ? number : std::string()).run();
    const std::int64_t entry = m_session.lastInsertedId();
    ++m_counts[newest.list];
    m_entries[key] = entry;
    m_run.made.insert(entry);
    return entry;
}

bool ImportedEntries::makesSpace(ListName list, const std::string& time) {
    Query row = m_session.query(kOldest);
    if (!row.bind(m_line).bind(static_cast<std::int32_t>(list)).next()) {
        return true;
    }
    const std::int64_t oldest = row.number();
    if (time <= row.text()) {
        return false;
    }
    remove(oldest);
    --m_counts[list];
    return true;
}

void ImportedEntries::remove(std::int64_t entry) {
    m_session.query("UPDATE call SET item = NULL, listed = 0 WHERE item = ?").bind(entry).run();
    m_session.query("DELETE FROM call_item WHERE id = ?").bind(entry).run();
    std::erase_if(m_entries, [entry](const auto& each) { return each.second == entry; });
    m_run.made.erase(entry);
    m_run.extended.erase(entry);
}

std::string ImportedEntries::freeEntryId(const std::string& time) {
    std::random_device random;
    for (;;) {
        std::array<char, 16> digits{};
        std::snprintf(digits.data(), digits.size(), "%.8X", static_cast<unsigned>(random()));
        std::string entryId = time + digits.data();
        Query taken = m_session.query(
            "SELECT 1 FROM call_item WHERE line = ? AND list IN (0, 1, 2, 3) AND entry_id = ?");
        if (!taken.bind(m_line).bind(entryId).next()) {
            return entryId;
        }
    }
}

}  // namespace host
