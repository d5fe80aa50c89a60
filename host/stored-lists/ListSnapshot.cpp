#include "host/stored-lists/ListSnapshot.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

#include "host/presentation/ItemJson.h"

namespace host {
namespace {

constexpr const char* kAll =
    "SELECT id, sort_key, entry_id, viewed FROM call_item WHERE line = ? AND list = ? LIMIT ?";
constexpr const char* kOne =
    "SELECT id, sort_key, entry_id, viewed FROM call_item WHERE line = ? AND list = ? AND id = ?";
constexpr const char* kItemOfCall = "SELECT item FROM call WHERE id = ?";

}  // namespace

bool ListSnapshot::update(Database::Session& session, const Source& source, const RowChanges& changes,
                          std::uint64_t settled) {
    EntryReader reader(session, source.entries);
    // The transaction has read by now: what is noted later is not in its state.
    const auto rows = m_known ? changes.since(*m_known) : std::nullopt;
    std::string rules = ContactRows(session, source.entries.line, source.entries.digits).indexRules();
    if (rows && rules == m_rules) {
        readSome(session, source, reader, *rows);
    } else {
        readAll(session, source, reader);
        m_rules = std::move(rules);
    }
    if (isTooLong()) {
        clear();
        return false;
    }
    putInOrder();
    m_known = settled;
    return true;
}

void ListSnapshot::readAll(Database::Session& session, const Source& source, EntryReader& reader) {
    clear();
    Query all = session.query(kAll);
    all.bind(source.entries.line).bind(static_cast<std::int32_t>(source.list));
    all.bind(std::int64_t{kMostEntries + 1});
    while (!isTooLong() && all.next()) {
        add(source.list, reader, all);
    }
}

void ListSnapshot::readSome(Database::Session& session, const Source& source, EntryReader& reader,
                            const std::vector<RowChanges::Row>& rows) {
    std::set<std::int64_t> items;
    for (const RowChanges::Row& row : rows) {
        if (row.table == RowChanges::Table::eItem) {
            items.insert(row.id);
        } else {
            Query item = session.query(kItemOfCall);
            items.insert(item.bind(row.id).next() ? item.optionalNumber().value_or(0) : 0);
        }
    }
    std::erase_if(m_entries, [&](const Entry& each) {
        const bool isChanged = items.contains(each.id);
        if (isChanged) {
            m_bytes -= each.text.size();
            m_unviewed -= each.viewed ? 0 : 1;
        }
        return isChanged;
    });
    for (const std::int64_t id : items) {
        Query one = session.query(kOne);
        if (one.bind(source.entries.line).bind(static_cast<std::int32_t>(source.list)).bind(id).next()) {
            add(source.list, reader, one);
        }
    }
}

void ListSnapshot::add(ListName list, EntryReader& reader, Query& row) {
    Entry entry;
    entry.id = row.number();
    entry.sortKey = row.text();
    entry.entryId = row.text();
    entry.viewed = list != ListName::eMissed || row.flag();
    if (const auto json = reader.entry(list, entry.id)) {
        entry.text = jsonText(*json);
        m_bytes += entry.text.size();
        m_unviewed += entry.viewed ? 0 : 1;
        m_entries.push_back(std::move(entry));
    }
}

void ListSnapshot::putInOrder() {
    const std::string latest = CallRows::latestSortKey();
    const auto placeOf = [&latest](const Entry& entry) {
        const bool isPast = entry.sortKey <= latest;
        return std::tuple(isPast, std::string_view(entry.sortKey), std::string_view(entry.entryId), entry.id);
    };
    const auto comesBefore = [&placeOf](const Entry& one, const Entry& two) {
        return placeOf(one) > placeOf(two);
    };
    // After a change the few entries that were read again are at the end.
    const auto rest = std::is_sorted_until(m_entries.begin(), m_entries.end(), comesBefore);
    std::sort(rest, m_entries.end(), comesBefore);
    std::inplace_merge(m_entries.begin(), rest, m_entries.end(), comesBefore);
}

std::string ListSnapshot::page(ListName list, std::size_t offset, std::size_t limit) const {
    const std::size_t begin = std::min(offset, m_entries.size());
    const std::size_t end = begin + std::min(limit, m_entries.size() - begin);
    std::string text = jsonText(
        {{"list", std::string(wordOf(list))}, {"total", m_entries.size()}, {"unviewed", m_unviewed}});
    text.back() = ',';
    text += "\"items\":[";
    std::size_t bytes = text.size() + (end - begin) + 2;
    for (std::size_t at = begin; at < end; ++at) {
        bytes += m_entries[at].text.size();
    }
    text.reserve(bytes);
    for (std::size_t at = begin; at < end; ++at) {
        text += m_entries[at].text;
        text += at + 1 < end ? "," : "";
    }
    text += "]}";
    return text;
}

}  // namespace host
