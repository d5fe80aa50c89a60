#include "host/data/CallBackRows.h"

#include "platform/journal-library/DataResponse.h"

namespace host {
namespace {

constexpr const char* kWrite = R"sql(
INSERT OR REPLACE INTO callback (line, entry_id, first_name, surname, number, number_type, time_date, type, state,
    device_id)
VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)
)sql";

constexpr const char* kRead = R"sql(
SELECT entry_id, first_name, surname, number, number_type, time_date, type, state, device_id FROM callback
WHERE line = ? ORDER BY time_date DESC, entry_id DESC LIMIT ? OFFSET ?
)sql";

CallBackItem itemFrom(Query& row) {
    CallBackItem item;
    item.setEntryId(row.text());
    item.setFirstname(row.text());
    item.setSurname(row.text());
    item.setNumber(row.text());
    item.setNumberType(static_cast<NumberType::NT>(row.smallNumber()));
    item.setTimeDate(row.text());
    item.setCallBackType(static_cast<CallBackItem::CallBackType>(row.smallNumber()));
    item.setCallBackState(static_cast<CallBackItem::CallBackState>(row.smallNumber()));
    item.setDeviceId(row.text());
    return item;
}

}  // namespace

void CallBackRows::write(const CallBackItem& item) {
    Query query = m_session.query(kWrite);
    query.bind(m_line)
        .bind(item.getEntryId())
        .bind(item.getFirstname())
        .bind(item.getSurname())
        .bind(item.getNumber());
    query.bind(static_cast<std::int32_t>(item.getNumberType())).bind(item.getTimeDate());
    query.bind(static_cast<std::int32_t>(item.getCallBackType()));
    query.bind(static_cast<std::int32_t>(item.getCallBackState())).bind(item.getDeviceId());
    query.run();
}

void CallBackRows::remove(const std::string& entryId) {
    m_session.query("DELETE FROM callback WHERE line = ? AND entry_id = ?").bind(m_line).bind(entryId).run();
}

void CallBackRows::removeAll() {
    m_session.query("DELETE FROM callback WHERE line = ?").bind(m_line).run();
}

std::set<std::string> CallBackRows::ids() {
    std::set<std::string> ids;
    Query rows = m_session.query("SELECT entry_id FROM callback WHERE line = ?");
    rows.bind(m_line);
    while (rows.next()) {
        ids.insert(rows.text());
    }
    return ids;
}

std::vector<CallBackItem> CallBackRows::all() {
    std::vector<CallBackItem> items;
    Query rows = m_session.query(kRead);
    rows.bind(m_line).bind(std::int64_t{-1}).bind(std::int64_t{0});
    while (rows.next()) {
        items.push_back(itemFrom(rows));
    }
    return items;
}

void CallBackRows::read(std::int64_t offset, std::int64_t limit, journalxml::ListDocument& document) {
    Query rows = m_session.query(kRead);
    rows.bind(m_line).bind(limit).bind(offset);
    while (rows.next() && document.add(itemFrom(rows))) {}
}

}  // namespace host
