#include "apps/calljournal/client/ListClient.h"

#include <nlohmann/json.hpp>

#include "apps/calljournal/output/JsonText.h"
#include "host/api-client/ApiClient.h"
#include "host/presentation/PlainText.h"

namespace calljournal {

using Json = nlohmann::ordered_json;

Json fetchList(host::ApiClient& client, ListName list, const ListFilter& filter) {
    host::ApiClient::Query query;
    if (filter.limit) {
        query.emplace_back("limit", std::to_string(*filter.limit));
    }
    if (!filter.search.empty()) {
        query.emplace_back("search", filter.search);
    }
    return client.get({"lists", std::string(wordOf(list))}, query);
}

std::optional<Json> findEntry(host::ApiClient& client, ListName list, const std::string& id) {
    try {
        return client.get({"lists", std::string(wordOf(list)), id});
    } catch (const host::ApiError& error) {
        if (error.status() != 404) {
            throw;
        }
        return std::nullopt;
    }
}

ListRow rowOf(const Json& item) {
    ListRow row;
    row.entryId = textIn(item, "entryId");
    row.marked = !item.value("viewed", true);
    row.time = host::localTime(textIn(item, "time"));
    row.name = nameIn(item);
    row.number = textIn(item, "number");
    if (const auto occurrences = item.find("occurrences"); occurrences != item.end()) {
        row.count = std::to_string(item.value("calls", occurrences->size()));
        if (!occurrences->empty()) {
            row.duration = textIn(occurrences->front(), "duration");
            row.forwardedTo = textIn(occurrences->front(), "forwardedToNumber");
        }
    }
    if (row.name.empty() && row.number.empty()) {
        row.name = "unknown";  // the caller withholds both
    }
    return row;
}

bool isJournalOff(host::ApiClient& client) {
    try {
        return textIn(client.get({"management", "call-log-enabled"}), "value") == "false";
    } catch (const host::ApiError& error) {
        if (error.status() == 403) {
            return false;  // a token that may not read settings
        }
        throw;
    }
}

}  // namespace calljournal
