#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/support/Property.h"
#include "fuzz/support/ScratchDatabase.h"
#include "host/data/PartyRows.h"
#include "host/history/CallHistory.h"
#include "host/history/CallSelection.h"
#include "host/history/CallStatistics.h"
#include "host/history/FilterText.h"
#include "host/search/SearchText.h"
#include "tests/support/StoredCalls.h"

// Feeds any bytes to the filters of the history, a text line "parameter=value" for each. The filter runs over
// a history of some calls: each found call fulfils the conditions, no condition finds more, the pages
// together are the selection, and no text of a value is in the SQL.

namespace {

using fuzz::require;
using Parameters = host::FilterText::Parameters;
using std::chrono::sys_seconds;

constexpr std::int64_t kNow = 1'795'238'525;  // 2026-11-21T05:22:05Z

void fill(host::Database& database) {
    static constexpr const char* kNumbers[] = {"4711", "+49 30 1234", "", "100%", "0_1", "*61"};
    static constexpr const char* kNames[] = {"Ada Miller", "M\xc3\xbcller",   "O'Hara \"x\"", "%_\\",
                                             "",           "\xf0\x9f\x93\x9e"};
    for (std::size_t each = 0; each < 60; ++each) {
        const auto at = static_cast<std::int64_t>(each);
        journaltest::store(database, {.list = static_cast<ListName>(each % 4),
                                      .start = kNow - at * at * 3600,
                                      .number = kNumbers[each % 6],
                                      .name = kNames[each / 3 % 6],
                                      .duration = each % 4 == 0 ? 0 : at * 7,
                                      .reason = static_cast<std::int32_t>(each % 7),
                                      .unviewed = each % 8 == 0});
    }
}

Parameters parametersIn(std::string_view text) {
    Parameters parameters;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        const std::size_t equals = std::min(line.find('='), line.size());
        parameters[std::string(line.substr(0, equals))] = line.substr(std::min(equals + 1, line.size()));
    }
    return parameters;
}

std::vector<std::int64_t> pages(const host::CallHistory& history, host::CallQuery query) {
    std::vector<std::int64_t> ids;
    do {
        const auto page = history.page(query);
        require(page.has_value(), "a filter makes the database fail");
        require(page->calls.size() <= query.limit, "a page has more calls than its limit");
        for (const host::Call& call : page->calls) {
            ids.push_back(call.id);
        }
        require(page->next.empty() || page->next != query.cursor, "a page is followed by itself");
        query.cursor = page->next;
    } while (!query.cursor.empty());
    return ids;
}

bool fulfils(const host::Call& call, const host::CallFilter& filter) {
    return (!filter.since || call.start >= *filter.since) && (!filter.until || call.start < *filter.until) &&
           (!filter.list || call.list == *filter.list) &&
           (!filter.outgoing || host::isOutgoing(call) == *filter.outgoing) &&
           (!filter.viewed || call.viewed == *filter.viewed) &&
           (!filter.minDuration || call.duration >= *filter.minDuration);
}

void checkCalls(const host::CallHistory& history, const host::CallFilter& filter,
                const std::vector<std::int64_t>& ids) {
    for (const std::int64_t id : ids) {
        std::optional<host::Call> call;
        require(history.find(id, call) && call, "a call of a page does not exist");
        require(fulfils(*call, filter), "a filter finds a call that does not fulfil it");
    }
}

/// The texts of the values are parameters: the condition is the same for another text of that length.
void checkCondition(host::CallFilter filter) {
    const std::string condition = host::CallSelection("2001", filter, nullptr).condition();
    require(std::all_of(condition.begin(), condition.end(),
                        [](char each) { return each == '\n' || (each >= ' ' && each < 0x7f); }),
            "the condition has characters of a value");
    const host::SearchText search(filter.search);
    if (search.number().empty()) {
        filter.search.assign(search.text().size(), 'a');
    }
    filter.number = filter.number.empty() ? "" : "7";
    require(host::CallSelection("2001", filter, nullptr).condition() == condition,
            "the condition depends on the text of a value");
}

void check(const host::CallHistory& history, const host::CallQuery& query) {
    host::CallQuery whole{
        .filter = query.filter, .limit = 1000, .oldestFirst = query.oldestFirst, .cursor = {}};
    const std::vector<std::int64_t> all = pages(history, whole);
    checkCalls(history, query.filter, all);
    checkCondition(query.filter);

    const std::vector<std::int64_t> paged = pages(history, query);
    require(!query.cursor.empty() || paged == all, "the pages together are not the selection");
    require(std::set(paged.begin(), paged.end()).size() == paged.size(), "a call is on two pages");

    host::CallQuery wider = whole;
    wider.filter.search.clear();
    wider.filter.number.clear();
    const std::vector<std::int64_t> more = pages(history, wider);
    const std::set<std::int64_t> known(more.begin(), more.end());
    require(std::all_of(all.begin(), all.end(), [&known](std::int64_t id) { return known.contains(id); }),
            "a filter finds a call that is not found without it");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::ScratchDatabase scratch(&fill);
    static host::Database& database = scratch.renew();
    static const host::CallHistory history(database, "2001", nullptr);
    static const host::FilterText filters(sys_seconds(std::chrono::seconds(kNow)),
                                          host::Zone::named("Europe/Berlin").value());
    const Parameters parameters = parametersIn({reinterpret_cast<const char*>(data), size});
    try {
        check(history, filters.query(parameters));
    } catch (const host::FilterError& error) {
        fuzz::requireUtf8(error.what(), "the message of a refused filter is not UTF-8");
        require(!fuzz::hasControlCharacters(error.what()),
                "the message of a refused filter has control characters");
    }
    return 0;
}
