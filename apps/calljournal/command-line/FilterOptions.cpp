#include "apps/calljournal/command-line/FilterOptions.h"

#include <CLI/CLI.hpp>

namespace calljournal {

void FilterOptions::addSelection(CLI::App& app) {
    add(app, "since", "TIME", "only calls from TIME on: 2026-11-21, 2026-11-21T15:00, 7d for seven days ago");
    add(app, "until", "TIME", "only calls before TIME");
    add(app, "tz", "ZONE", "the time zone of the given times, such as Europe/Berlin [that of the server]");
    add(app, "number", "NUMBER", "only calls with this number, in any spelling");
    add(app, "search", "TEXT", "only calls with TEXT in the name or number");
    add(app, "list", "missed|dialled|received|forwarded", "only calls of this list");
    add(app, "direction", "incoming|outgoing", "only incoming or only outgoing calls");
    add(app, "viewed", "true|false", "only missed calls that were viewed, or that were not");
    add(app, "min-duration", "SECONDS", "only calls of at least this duration, also 1m30s");
}

void FilterOptions::addOrder(CLI::App& app) {
    add(app, "sort", "start|-start", "the oldest or the newest first [-start]");
}

bool FilterOptions::selectsCalls() const {
    for (const auto& [name, filter] : m_filters) {
        if (isGiven(filter) && name != "tz" && name != "sort") {
            return true;
        }
    }
    return false;
}

host::ApiClient::Query FilterOptions::query() const {
    host::ApiClient::Query query;
    for (const auto& [name, filter] : m_filters) {
        if (isGiven(filter)) {
            query.emplace_back(name, filter.value);
        }
    }
    return query;
}

void FilterOptions::add(CLI::App& app, const char* name, const char* type, const char* help) {
    Filter& filter = m_filters[name];
    filter.option = app.add_option(std::string("--") + name, filter.value, help)->type_name(type);
}

bool FilterOptions::isGiven(const Filter& filter) {
    return filter.option->count() > 0;
}

}  // namespace calljournal
