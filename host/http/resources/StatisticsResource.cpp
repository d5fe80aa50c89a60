#include "host/http/resources/StatisticsResource.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <utility>
#include <vector>

#include "host/clock/SystemClock.h"
#include "host/history/CallJson.h"
#include "host/http/messages/FilterParameters.h"
#include "host/http/messages/HttpError.h"
#include "host/http/messages/NumberFields.h"
#include "host/http/messages/Router.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;

std::optional<CallGrouping> groupingOf(const HttpRequest& request) {
    if (!request.query.contains("by")) {
        return std::nullopt;
    }
    const std::string& word = request.queryValue("by");
    using Named = std::pair<const char*, CallGrouping>;
    for (const auto& [name, by] :
         {Named("day", CallGrouping::eDay), Named("hour", CallGrouping::eHour),
          Named("weekday", CallGrouping::eWeekday), Named("party", CallGrouping::eParty),
          Named("list", CallGrouping::eList)}) {
        if (word == name) {
            return by;
        }
    }
    throw HttpError(400, "bad-parameter", "by must be day, hour, weekday, party or list");
}

Json keyJson(const CallGroup& group, CallGrouping by) {
    switch (by) {
        case CallGrouping::eDay:
            return utcText(std::chrono::sys_days(std::chrono::days(group.key))).substr(0, 10);
        case CallGrouping::eParty: return group.number;
        case CallGrouping::eList: return std::string(wordOf(static_cast<ListName>(group.key)));
        default: return group.key;
    }
}

void addCounts(Json& json, const CallCounts& counts) {
    json["calls"] = counts.calls;
    json["answered"] = counts.received;
    json["missed"] = counts.missed;
    json["completedElsewhere"] = counts.completedElsewhere;
    json["dialled"] = counts.dialled;
    json["forwarded"] = counts.forwarded;
    json["talkTime"] = counts.talkTime.count();
    json["longest"] = counts.longest.count();
    json["callBackTime"] = counts.callBackTime ? Json(counts.callBackTime->count()) : Json();
}

Json groupsJson(const std::vector<CallGroup>& groups, CallGrouping by, NumberTexts& numbers,
                PlaceLanguage language) {
    Json json = Json::array();
    for (const CallGroup& group : groups) {
        Json& each = json.emplace_back(Json{{"key", keyJson(group, by)}});
        if (by == CallGrouping::eParty) {
            each["displayName"] = group.displayName;
            addNumberFields(each, numbers, group.number, language);
        }
        addCounts(each, group.counts);
    }
    return json;
}

Json timeJson(const std::optional<std::chrono::sys_seconds>& time) {
    return time ? Json(utcText(*time)) : Json();
}

}  // namespace

void StatisticsResource::addRoutes(Router& router) {
    std::vector<std::string> parameters = filterParameters();
    parameters.insert(parameters.end(), {"by", "limit", "language"});
    router.add({"GET", "/api/v1/statistics", Scope::eRead,
                [this](const HttpRequest& each) { return statistics(each); }, std::move(parameters)});
}

HttpResponse StatisticsResource::statistics(const HttpRequest& request) const {
    const auto by = groupingOf(request);
    const PlaceLanguage language = languageOf(request);
    const StatisticsQuery query = filtersIn(m_zone, [&](const FilterText& text) {
        return StatisticsQuery{text.filter(request.query), by, text.zone(request.query),
                               FilterText::limit(request.query, 10)};
    });
    const std::chrono::sys_seconds now(std::chrono::seconds(SystemClock().getSeconds()));
    const StatisticsResult result = storedOr503(m_statistics.of(query, now));
    Json totals = Json::object();
    addCounts(totals, result.totals);
    Json groups = groupsJson(result.groups, by.value_or(CallGrouping::eParty), m_numbers, language);
    return jsonResponse({{"since", timeJson(query.filter.since)},
                         {"until", timeJson(query.filter.until)},
                         {"tz", query.zone.name()},
                         {"by", by ? Json(request.queryValue("by")) : Json()},
                         {"totals", std::move(totals)},
                         {"groups", by ? groups : Json::array()},
                         {"topParties", by ? Json::array() : groups}});
}

}  // namespace host
