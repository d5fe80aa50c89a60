#include "host/http/resources/CallsResource.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "host/database/RowId.h"
#include "host/history/CallJson.h"
#include "host/http/messages/FilterParameters.h"
#include "host/http/messages/HttpError.h"
#include "host/http/messages/NumberFields.h"
#include "host/http/messages/Router.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;

HttpError noSuchCall() {
    return {404, "unknown-call", "there is no such call"};
}

std::int64_t idOf(const HttpRequest& request) {
    const auto id = rowIdOf(request.parameter("callId"));
    if (!id) {
        throw noSuchCall();
    }
    return *id;
}

}  // namespace

CallsResource::CallsResource(StoredEntries& entries, NumberTexts& numbers)
    : m_numbers(numbers),
      m_resync(entries.sources().resync),
      m_history(entries.sources().database, entries.sources().line, entries.sources().digits),
      m_deletion(entries) {}

void CallsResource::addRoutes(Router& router) {
    std::vector<std::string> deletionParameters = filterParameters();
    deletionParameters.emplace_back("all");
    std::vector<std::string> pageParameters = queryParameters();
    pageParameters.emplace_back("language");
    router.add({"GET", "/api/v1/calls", Scope::eRead, [this](const HttpRequest& each) { return page(each); },
                std::move(pageParameters)});
    router.add({"DELETE", "/api/v1/calls", Scope::eWrite,
                [this](const HttpRequest& each) { return deleteSome(each); }, std::move(deletionParameters)});
    router.add({"GET",
                "/api/v1/calls/{callId}",
                Scope::eRead,
                [this](const HttpRequest& each) { return call(each); },
                {"language"}});
    router.add({"DELETE", "/api/v1/calls/{callId}", Scope::eWrite,
                [this](const HttpRequest& each) { return deleteOne(each); }});
}

HttpResponse CallsResource::page(const HttpRequest& request) const {
    const CallQuery query =
        filtersIn(m_zone, [&](const FilterText& text) { return text.query(request.query); });
    const PlaceLanguage language = languageOf(request);
    const CallPage page = storedOr503(m_history.page(query));
    Json items = Json::array();
    for (const Call& each : page.calls) {
        addNumberFields(items.emplace_back(callJson(each)), m_numbers, each.party.number, language);
    }
    return jsonResponse(
        {{"items", std::move(items)}, {"next", page.next.empty() ? Json() : Json(page.next)}});
}

HttpResponse CallsResource::call(const HttpRequest& request) const {
    std::optional<Call> call;
    doneOr503(m_history.find(idOf(request), call));
    if (!call) {
        throw noSuchCall();
    }
    Json json = callJson(*call);
    addNumberFields(json, m_numbers, call->party.number, languageOf(request));
    return jsonResponse(json);
}

HttpResponse CallsResource::deleteOne(const HttpRequest& request) {
    if (changedOr503(m_deletion.remove(idOf(request))) == 0) {
        throw noSuchCall();
    }
    resync();
    return emptyResponse();
}

HttpResponse CallsResource::deleteSome(const HttpRequest& request) {
    const CallFilter filter =
        filtersIn(m_zone, [&](const FilterText& text) { return text.filter(request.query); });
    const bool all = request.query.contains("all");
    if (all != filter.isEmpty() || (all && request.queryValue("all") != "true")) {
        throw HttpError(400, "wrong-selection", "a deletion takes either filters or all=true");
    }
    return jsonResponse({{"deleted", changedOr503(m_deletion.remove(filter))}});
}

void CallsResource::resync() const {
    if (m_resync) {
        m_resync();
    }
}

}  // namespace host
