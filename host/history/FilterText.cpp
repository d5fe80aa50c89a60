#include "host/history/FilterText.h"

#include <algorithm>

#include "host/history/CallKey.h"
#include "host/history/TextCursor.h"
#include "host/search/SearchText.h"

namespace host {
namespace {

using Parameters = FilterText::Parameters;

constexpr const char* kTimes =
    "must be a date (2026-11-21), a time (2026-11-21T10:00, with Z or an offset such as +01:00), a period "
    "back "
    "from now (30m, 12h, 7d, 2w), today or yesterday";

/// The value of a parameter, or null if it is not given. Throws for an empty value: a filter without effect
/// would select more than was meant.
const std::string* valueOf(const Parameters& parameters, const char* name) {
    const auto found = parameters.find(name);
    if (found == parameters.end()) {
        return nullptr;
    }
    if (found->second.empty()) {
        throw FilterError(name, "must not be empty");
    }
    return &found->second;
}

std::optional<bool> choiceOf(const Parameters& parameters, const char* name, std::string_view yes,
                             std::string_view no) {
    const std::string* const text = valueOf(parameters, name);
    if (text == nullptr) {
        return std::nullopt;
    }
    if (*text != yes && *text != no) {
        throw FilterError(name, "must be " + std::string(yes) + " or " + std::string(no));
    }
    return *text == yes;
}

std::optional<ListName> listOf(const Parameters& parameters) {
    const std::string* const text = valueOf(parameters, "list");
    const auto list = text != nullptr ? listNamed(*text) : std::nullopt;
    if (text != nullptr && (!list || *list == ListName::eCallbacks)) {
        throw FilterError("list", "must be missed, dialled, received or forwarded");
    }
    return list;
}

std::string searchOf(const Parameters& parameters) {
    const std::string* const text = valueOf(parameters, "search");
    if (text == nullptr) {
        return {};
    }
    const bool hasControl =
        std::any_of(text->begin(), text->end(), [](char each) { return each >= '\0' && each < ' '; });
    if (hasControl || SearchText(*text).isEmpty()) {
        throw FilterError("search", "must be a text without control characters, and not blank");
    }
    return *text;
}

}  // namespace

const std::vector<std::string>& filterParameters() {
    static const std::vector<std::string> names{"since",     "until",  "number",       "search", "list",
                                                "direction", "viewed", "min-duration", "tz"};
    return names;
}

const std::vector<std::string>& queryParameters() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all = filterParameters();
        all.insert(all.end(), {"limit", "cursor", "sort"});
        return all;
    }();
    return names;
}

Zone FilterText::zone(const Parameters& parameters) const {
    const std::string* const name = valueOf(parameters, "tz");
    if (name == nullptr) {
        return m_zone;
    }
    const auto zone = Zone::named(*name);
    if (!zone) {
        throw FilterError("tz", "must be the name of a time zone, as Europe/Berlin");
    }
    return *zone;
}

CallFilter FilterText::filter(const Parameters& parameters) const {
    const Zone itsZone = zone(parameters);
    const auto time = [&](const char* name) {
        const std::string* const text = valueOf(parameters, name);
        const auto point = text != nullptr ? timeOfText(*text, m_now, itsZone) : std::nullopt;
        if (text != nullptr && !point) {
            throw FilterError(name, kTimes);
        }
        return point;
    };
    CallFilter filter;
    filter.since = time("since");
    filter.until = time("until");
    if (const std::string* const number = valueOf(parameters, "number")) {
        filter.number = *number;
    }
    filter.search = searchOf(parameters);
    filter.list = listOf(parameters);
    filter.outgoing = choiceOf(parameters, "direction", "outgoing", "incoming");
    filter.viewed = choiceOf(parameters, "viewed", "true", "false");
    if (const std::string* const text = valueOf(parameters, "min-duration")) {
        filter.minDuration = durationOfText(*text);
        if (!filter.minDuration) {
            throw FilterError("min-duration", "must be a number of seconds, or a duration as 1m30s");
        }
    }
    return filter;
}

CallQuery FilterText::query(const Parameters& parameters) const {
    CallQuery query;
    query.filter = filter(parameters);
    query.limit = limit(parameters, query.limit);
    query.oldestFirst = choiceOf(parameters, "sort", "start", "-start").value_or(false);
    if (const std::string* const cursor = valueOf(parameters, "cursor")) {
        if (!keyOfCursor(*cursor)) {
            throw FilterError("cursor", "must be the member next of the page before");
        }
        query.cursor = *cursor;
    }
    return query;
}

std::size_t FilterText::limit(const Parameters& parameters, std::size_t fallback) {
    const std::string* const text = valueOf(parameters, "limit");
    if (text == nullptr) {
        return fallback;
    }
    TextCursor cursor(*text);
    const auto number = cursor.takeNumber(1, 4);
    if (!number || !cursor.atEnd() || *number < 1 || *number > 1000) {
        throw FilterError("limit", "must be a number from 1 to 1000");
    }
    return static_cast<std::size_t>(*number);
}

}  // namespace host
