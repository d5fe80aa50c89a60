#include "host/history/CallSelection.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "host/database/Query.h"
#include "host/search/SearchText.h"
#include "platform/digits/DigitAnalysisServiceIfc.h"

namespace host {
namespace {

// Two searches of an index; with OR it would be a scan.
constexpr const char* kWithNumber = R"sql(party.id IN (
    SELECT id FROM party AS known WHERE known.line = ? AND known.lookup = ?
    UNION ALL SELECT id FROM party AS filed WHERE filed.line = ? AND filed.number = ?))sql";
constexpr const char* kInName = "instr(party.search, ?) > 0";
constexpr const char* kInNumber = "instr(substr(party.search, instr(party.search, char(31)) + 1), ?) > 0";
// The shown contact is the best one of the number (ContactRows::kLookUpSql), so that others do not count.
constexpr const char* kInContact = R"sql(party.lookup IN (
    SELECT found.number FROM contact JOIN contact_number AS found ON found.contact = contact.id
    WHERE contact.line IN (?, '') AND instr(contact.search, ?) > 0 AND contact.id = (
        SELECT best.id FROM contact_number AS other JOIN contact AS best ON best.id = other.contact
        WHERE other.line IN (?, '') AND other.number = found.number
        ORDER BY best.line = '', best.source = 0, best.source, best.id LIMIT 1)))sql";
// Only the missed list has unviewed entries.
constexpr const char* kUnviewed = R"sql((call.list = 0 AND EXISTS (
    SELECT 1 FROM call_item WHERE call_item.id = call.item AND call_item.viewed = 0)))sql";

}  // namespace

CallSelection::CallSelection(const std::string& line, const CallFilter& filter,
                             DigitAnalysisServiceIfc* digits) {
    require("call.line = ?");
    add(line);
    if (!filter.list) {
        require("call.list IN (0, 1, 2, 3)");  // for the index
    }
    requireTimes(filter);
    require(ofKind(filter));
    require(ofParties(line, filter, digits), "call.party IN (SELECT party.id FROM party WHERE ", ")");
}

CallSelection CallSelection::ofParties(const std::string& line, const CallFilter& filter,
                                       DigitAnalysisServiceIfc* digits) {
    CallSelection parties;
    if (!filter.number.empty()) {
        parties.requireNumber(line, filter.number, digits);
    }
    if (!filter.search.empty()) {
        parties.requireText(line, filter.search);
    }
    return parties;
}

CallSelection CallSelection::ofKind(const CallFilter& filter) {
    CallSelection kind;
    if (filter.list) {
        kind.require("call.list = ?");
        kind.add(static_cast<std::int64_t>(*filter.list));
    }
    if (filter.outgoing) {
        kind.require(*filter.outgoing ? "call.list = ?" : "call.list <> ?");
        kind.add(static_cast<std::int64_t>(ListName::eDialled));
    }
    if (filter.viewed) {
        kind.require(*filter.viewed ? std::string("call.list = 0 AND NOT ") + kUnviewed : kUnviewed);
    }
    if (filter.minDuration) {
        kind.require("call.duration >= ?");
        kind.add(std::int64_t{filter.minDuration->count()});
    }
    return kind;
}

void CallSelection::bind(Query& query) const {
    for (const Value& value : m_values) {
        if (value.text) {
            query.bind(*value.text);
        } else {
            query.bind(value.number);
        }
    }
}

void CallSelection::require(const std::string& condition) {
    m_condition += (m_condition.empty() ? "" : " AND ") + condition;
}

void CallSelection::require(CallSelection&& other, const std::string& before, const std::string& after) {
    if (!other.m_condition.empty()) {
        require(before + other.m_condition + after);
        std::move(other.m_values.begin(), other.m_values.end(), std::back_inserter(m_values));
    }
}

void CallSelection::requireNumber(const std::string& line, const std::string& number,
                                  DigitAnalysisServiceIfc* digits) {
    std::string normalised = number;
    if (digits != nullptr) {
        digits->normalise(normalised);
    }
    require(kWithNumber);
    add(line);
    add(normalised);
    add(line);
    add(number);
}

void CallSelection::requireText(const std::string& line, const std::string& text) {
    const SearchText search(text);
    // All rows in their order, which is faster than all of them by an index.
    require("+party.line = ?");
    add(line);
    std::string found = kInName;
    add(search.text());
    if (!search.number().empty() && search.number() != search.text()) {
        found += std::string(" OR ") + kInNumber;
        add(search.number());
    }
    require('(' + found + " OR " + kInContact + ')');
    add(line);
    add(search.text());
    add(line);
}

void CallSelection::requireTimes(const CallFilter& filter) {
    if (filter.since) {
        require("call.start >= ?");
        add(std::int64_t{filter.since->time_since_epoch().count()});
    }
    if (filter.until) {
        require("call.start < ?");
        add(std::int64_t{filter.until->time_since_epoch().count()});
    }
}

}  // namespace host
