#include "host/data/CallContacts.h"

#include <limits>
#include <optional>

#include "host/data/CallRows.h"
#include "platform/journal-library/DataResponse.h"

namespace host {
namespace {

constexpr const char* kNewestCalls = R"sql(
SELECT call_item.list, call_item.entry_id, party.number
FROM call_item
    JOIN call ON call.id = (SELECT id FROM call WHERE item = call_item.id ORDER BY item_order DESC LIMIT 1)
    JOIN party ON party.id = call.party
WHERE call_item.line = ? AND party.number <> ''
ORDER BY call_item.sort_key DESC, call_item.entry_id DESC, call_item.id DESC
)sql";

constexpr const char* kByName =
    "SELECT id FROM contact WHERE line IN (?, '') ORDER BY surname COLLATE NOCASE, first_name COLLATE "
    "NOCASE, id";

}  // namespace

CallContacts::Found CallContacts::find(std::int64_t wanted) {
    Found found;
    Query calls = m_session.query(kNewestCalls);
    calls.bind(m_line);
    while (calls.next()) {
        const auto list = static_cast<ListName>(calls.smallNumber());
        std::string entryId = calls.text();
        const std::optional<ContactRows::Match> match = m_contacts.lookUp(m_contacts.indexed(calls.text()));
        if (match) {
            Records& records = found.records[match->id];
            if (records.empty()) {
                found.order.push_back(match->id);
            }
            records.push_back({std::move(entryId), std::string(wordOf(list))});
        }
    }
    Query others = m_session.query(kByName);
    others.bind(m_line);
    while (static_cast<std::int64_t>(found.order.size()) < wanted && others.next()) {
        if (const std::int64_t id = others.number(); !found.records.contains(id)) {
            found.order.push_back(id);
        }
    }
    return found;
}

void CallContacts::read(std::int64_t offset, std::int64_t limit, journalxml::ListDocument& document) {
    constexpr std::int64_t kAll = std::numeric_limits<std::int64_t>::max();
    Found found = find(limit > kAll - offset ? kAll : offset + limit);
    std::int64_t position = 0;
    for (const std::int64_t id : found.order) {
        const bool wanted = position >= offset && position - offset < limit;
        ++position;
        std::optional<Contact> contact = wanted ? m_contacts.find(id) : std::nullopt;
        if (contact) {
            contact->setCallRecords(found.records[id]);
            if (!document.add(*contact)) {
                return;
            }
        }
    }
}

}  // namespace host
