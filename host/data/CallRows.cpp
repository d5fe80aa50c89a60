#include "host/data/CallRows.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <list>
#include <type_traits>

#include "host/database/RowId.h"
#include "host/journal-events/EventQueue.h"
#include "journal-items/Occurrences.h"
#include "platform/journal-library/CallListDatabaseAdapterHelper.h"
#include "platform/journal-library/DataResponse.h"

namespace host {
namespace {

constexpr const char* kUpdate = R"sql(
UPDATE call_item SET sort_key = ?, entry_id = ?, first_name = ?, surname = ?, picture_clip = ?, viewed = ?,
    group_by = ?
WHERE id = ? AND line = ? AND list = ?
)sql";

constexpr const char* kInsert = R"sql(
INSERT INTO call_item (sort_key, entry_id, first_name, surname, picture_clip, viewed, group_by, line, list, id)
VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)
)sql";

constexpr const char* kFindById = "SELECT id FROM call_item WHERE line = ? AND list = ? AND id = ?";
constexpr const char* kFindByEntry =
    "SELECT max(id) FROM call_item WHERE line = ? AND list = ? AND entry_id = ?";

constexpr const char* kReadOne = R"sql(
SELECT list, id, entry_id, first_name, surname, picture_clip, viewed, group_by FROM call_item
WHERE line = ? AND list = ? ORDER BY sort_key > ?, sort_key DESC, entry_id DESC, id DESC LIMIT ? OFFSET ?
)sql";

constexpr const char* kReadSurplus = R"sql(
SELECT id FROM call_item WHERE line = ? AND list = ?
ORDER BY sort_key > ?, sort_key DESC, entry_id DESC, id DESC LIMIT -1 OFFSET ?
)sql";

constexpr const char* kRemove = "DELETE FROM call_item WHERE id = ?";

// The two statements after it take several times as long when every entry is right.
constexpr const char* kFindWronglyListed = R"sql(
SELECT 1 FROM call_item WHERE line = ?
    AND min(10, calls) <> (SELECT count(*) FROM call WHERE item = call_item.id AND listed = 1) LIMIT 1
)sql";

constexpr const char* kListNewest = R"sql(
UPDATE call SET listed = 1 WHERE listed = 0 AND id IN (
    SELECT newest.id FROM call_item JOIN call AS newest ON newest.id IN (
        SELECT id FROM call WHERE item = call_item.id ORDER BY item_order DESC LIMIT 10)
    WHERE call_item.line = ? AND min(10, call_item.calls) >
        (SELECT count(*) FROM call WHERE item = call_item.id AND listed = 1))
)sql";

constexpr const char* kUnlistOlder = R"sql(
UPDATE call SET listed = 0 WHERE listed = 1 AND id IN (
    SELECT older.id FROM call_item JOIN call AS older ON older.item = call_item.id AND older.listed = 1
    WHERE call_item.line = ? AND (SELECT count(*) FROM call WHERE item = call_item.id AND listed = 1) > 10
        AND older.id NOT IN (SELECT id FROM call WHERE item = call_item.id ORDER BY item_order DESC LIMIT 10))
)sql";

constexpr const char* kReadRow = R"sql(
SELECT entry_id, first_name, surname, picture_clip, viewed, group_by FROM call_item
WHERE line = ? AND list = ? AND id = ?
)sql";

constexpr const char* kReadAll = R"sql(
SELECT list, id, entry_id, first_name, surname, picture_clip, viewed, group_by FROM call_item
WHERE line = ? ORDER BY sort_key > ?, sort_key DESC, entry_id DESC, id DESC LIMIT ? OFFSET ?
)sql";

std::int32_t numberOf(ListName list) {
    return static_cast<std::int32_t>(list);
}

void setOwnFields(MissedCallItem& item, bool viewed, const std::string& /*groupBy*/) {
    item.setViewed(viewed);
}
void setOwnFields(DialledCallItem& item, bool /*viewed*/, const std::string& groupBy) {
    item.setJournalSeviceGroupBy(groupBy);
}
void setOwnFields(CallItemWithPicture& /*item*/, bool /*viewed*/, const std::string& /*groupBy*/) {}

bool viewedOf(const CallItemWithPicture& /*item*/) {
    return false;
}
bool viewedOf(const MissedCallItem& item) {
    return item.getViewed();
}

std::string groupByOf(const CallItemWithPicture& /*item*/) {
    return {};
}
std::string groupByOf(const DialledCallItem& item) {
    return item.getJournalSeviceGroupBy();
}

/// The name under which a call is filed.
std::string nameOf(const CallItem& item) {
    const bool both = !item.getFirstname().empty() && !item.getSurname().empty();
    return item.getFirstname() + (both ? " " : "") + item.getSurname();
}

template <typename Item>
void bindFields(Query& query, const Item& item) {
    query.bind(sortKeyOf(item)).bind(item.getEntryId()).bind(item.getFirstname()).bind(item.getSurname());
    query.bind(item.getPictureClip()).bind(viewedOf(item)).bind(groupByOf(item));
}

}  // namespace

template <typename Item>
std::string CallRows::write(const Item& item, const CallFacts* facts,
                            const std::optional<std::int64_t>& newId) {
    const std::int32_t list = numberOf(ListTraits<Item>::kList);
    std::int64_t id = rowIdOf(item.getUniqueId()).value_or(0);
    bool isNew = id == 0;
    const bool becomesViewed = m_events != nullptr && !isNew && viewedOf(item) && !isViewed(id);
    if (!isNew) {
        Query update = m_session.query(kUpdate);
        bindFields(update, item);
        isNew = update.bind(id).bind(m_line).bind(list).run() == 0;
    }
    if (isNew) {
        Query insert = m_session.query(kInsert);
        bindFields(insert, item);
        insert.bind(m_line).bind(list).bind(newId).run();
        id = m_session.lastInsertedId();
    }
    m_history.write<Item>(id, nameOf(item), occurrencesOf(item), facts, isNew);
    if (becomesViewed && !isNew) {
        if (const auto call = m_history.newestOf(id)) {
            m_events->addOfCall(m_session, JournalEventKind::eMissedViewed, *call);
        }
    }
    return uniqueIdOf(id);
}

bool CallRows::isViewed(std::int64_t id) {
    Query row = m_session.query("SELECT viewed FROM call_item WHERE id = ?");
    return row.bind(id).next() && row.flag();
}

template std::string CallRows::write(const MissedCallItem&, const CallFacts*,
                                     const std::optional<std::int64_t>&);
template std::string CallRows::write(const DialledCallItem&, const CallFacts*,
                                     const std::optional<std::int64_t>&);
template std::string CallRows::write(const ReceivedCallItem&, const CallFacts*,
                                     const std::optional<std::int64_t>&);
template std::string CallRows::write(const ForwardedCallItem&, const CallFacts*,
                                     const std::optional<std::int64_t>&);

template <typename Item>
bool CallRows::find(std::int64_t id, Item& item) {
    Query row = m_session.query(kReadRow);
    if (!row.bind(m_line).bind(numberOf(ListTraits<Item>::kList)).bind(id).next()) {
        return false;
    }
    item = readItem<Item>(id, row);
    return true;
}

template <typename Item>
bool CallRows::findWithNewest(std::int64_t id, Item& item) {
    Query row = m_session.query(kReadRow);
    if (!row.bind(m_line).bind(numberOf(ListTraits<Item>::kList)).bind(id).next()) {
        return false;
    }
    item = readHead<Item>(id, row);
    std::list<typename ListTraits<Item>::Info> occurrences;
    m_history.readNewest(id, Item::kMaxOccurrences, occurrences);
    setOccurrences(item, occurrences);
    return true;
}

template bool CallRows::findWithNewest(std::int64_t, MissedCallItem&);
template bool CallRows::findWithNewest(std::int64_t, DialledCallItem&);
template bool CallRows::findWithNewest(std::int64_t, ReceivedCallItem&);
template bool CallRows::findWithNewest(std::int64_t, ForwardedCallItem&);
template bool CallRows::find(std::int64_t, MissedCallItem&);
template bool CallRows::find(std::int64_t, DialledCallItem&);
template bool CallRows::find(std::int64_t, ReceivedCallItem&);
template bool CallRows::find(std::int64_t, ForwardedCallItem&);

std::optional<std::int64_t> CallRows::idOf(ListName list, const std::string& text) {
    const bool isNumber = !text.empty() && std::all_of(text.begin(), text.end(),
                                                       [](char each) { return each >= '0' && each <= '9'; });
    return isNumber ? findId(list, text, "") : findId(list, "", text);
}

std::optional<std::int64_t> CallRows::findId(ListName list, const std::string& uniqueId,
                                             const std::string& entryId) {
    Query query = m_session.query(uniqueId.empty() ? kFindByEntry : kFindById);
    query.bind(m_line).bind(numberOf(list));
    if (uniqueId.empty()) {
        query.bind(entryId);
    } else {
        query.bind(rowIdOf(uniqueId).value_or(0));
    }
    const std::int64_t id = query.next() ? query.number() : 0;
    return id > 0 ? std::optional(id) : std::nullopt;
}

std::optional<std::string> CallRows::remove(ListName list, const std::string& uniqueId,
                                            const std::string& entryId, const Calls& calls) {
    const std::optional<std::int64_t> id = findId(list, uniqueId, entryId);
    if (!id) {
        return std::nullopt;
    }
    switch (calls.fate) {
        case Calls::Fate::eDeleted: m_history.removeOf(*id); break;
        case Calls::Fate::eListedDeleted: m_history.removeListedOf(*id); break;
        case Calls::Fate::eKept: m_history.release(*id, calls.calledBackAt); break;
    }
    m_session.query(kRemove).bind(*id).run();
    return uniqueIdOf(*id);
}

std::optional<std::string> CallRows::removeAll(ListName list) {
    Query last = m_session.query("SELECT max(id) FROM call_item WHERE line = ? AND list = ?");
    const std::int64_t id = last.bind(m_line).bind(numberOf(list)).next() ? last.number() : 0;
    m_history.removeAll(list);
    m_session.query("DELETE FROM call_item WHERE line = ? AND list = ?")
        .bind(m_line)
        .bind(numberOf(list))
        .run();
    return id > 0 ? std::optional(uniqueIdOf(id)) : std::nullopt;
}

void CallRows::listNewestCalls() {
    if (Query wrong = m_session.query(kFindWronglyListed); !wrong.bind(m_line).next()) {
        return;
    }
    m_session.query(kListNewest).bind(m_line).run();
    m_session.query(kUnlistOlder).bind(m_line).run();
}

void CallRows::shortenLists() {
    for (const ListName list :
         {ListName::eMissed, ListName::eDialled, ListName::eReceived, ListName::eForwarded}) {
        std::vector<std::int64_t> surplus;
        if (count(list) > std::int64_t{CallListDatabaseAdapterHelper::kListRows}) {
            Query rows = m_session.query(kReadSurplus);
            rows.bind(m_line).bind(numberOf(list)).bind(latestSortKey());
            rows.bind(std::int64_t{CallListDatabaseAdapterHelper::kListRows});
            while (rows.next()) {
                surplus.push_back(rows.number());
            }
        }
        for (const std::int64_t id : surplus) {
            m_history.release(id, std::nullopt);
            m_session.query(kRemove).bind(id).run();
        }
    }
}

std::optional<std::int64_t> CallRows::rewrittenGroup(const std::string& uniqueId) {
    const auto id = findId(ListName::eMissed, uniqueId, "");
    MissedCallItem item;
    if (!id || !find(*id, item) || item.getMissedCallInfoList().size() < 2 ||
        item.getMissedCallInfoList().front().getLineKey().empty()) {
        return std::nullopt;
    }
    return id;
}

std::int64_t CallRows::count(ListName list) {
    Query rows = m_session.query("SELECT count(*) FROM call_item WHERE line = ? AND list = ?");
    return rows.bind(m_line).bind(numberOf(list)).next() ? rows.number() : 0;
}

std::string CallRows::latestSortKey() {
    constexpr std::chrono::hours kOtherZones{24};
    const std::time_t time =
        std::chrono::system_clock::to_time_t(std::chrono::system_clock::now() + kOtherZones);
    std::tm fields{};
    std::array<char, 32> text{};
    return gmtime_r(&time, &fields) == nullptr
               ? std::string()
               : std::string(text.data(),
                             std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &fields));
}

void CallRows::read(ListName list, std::int64_t offset, std::int64_t limit,
                    journalxml::ListDocument& document) {
    Query rows = m_session.query(kReadOne);
    rows.bind(m_line).bind(numberOf(list)).bind(latestSortKey()).bind(limit).bind(offset);
    addTo(document, rows);
}

void CallRows::readAll(std::int64_t offset, std::int64_t limit, journalxml::ListDocument& document) {
    Query rows = m_session.query(kReadAll);
    rows.bind(m_line).bind(latestSortKey()).bind(limit).bind(offset);
    addTo(document, rows);
}

void CallRows::addTo(journalxml::ListDocument& document, Query& rows) {
    bool taken = true;
    while (taken && rows.next()) {
        const auto list = static_cast<ListName>(rows.smallNumber());
        const std::int64_t id = rows.number();
        withItemOf(list, [&]<typename Item>() {
            if constexpr (!std::is_same_v<Item, CallBackItem>) {
                taken = document.add(readItem<Item>(id, rows));
            }
        });
    }
}

template <typename Item>
Item CallRows::readItem(std::int64_t id, Query& row) {
    Item item = readHead<Item>(id, row);
    std::list<typename ListTraits<Item>::Info> occurrences;
    m_history.readListed(id, occurrences);
    setOccurrences(item, occurrences);
    return item;
}

template <typename Item>
Item CallRows::readHead(std::int64_t id, Query& row) {
    Item item;
    item.setUniqueId(uniqueIdOf(id));
    item.setEntryId(row.text());
    item.setFirstname(row.text());
    item.setSurname(row.text());
    item.setPictureClip(row.text());
    const bool viewed = row.flag();
    setOwnFields(item, viewed, row.text());
    return item;
}

}  // namespace host
