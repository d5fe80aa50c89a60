#include "host/http/resources/StatusResource.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "host/database/Database.h"
#include "host/http/messages/HttpError.h"
#include "host/http/messages/Router.h"
#include "host/management/LocalManagement.h"
#include "host/stored-lists/StoredLists.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;

Json telephoneJson(const std::optional<TelephoneState>& telephone) {
    return telephone ? Json{{"state", telephone->word}, {"reason", telephone->reason}} : Json();
}

}  // namespace

void StatusResource::addRoutes(Router& router) {
    router.add(
        {"GET", "/api/v1/status", Scope::eRead, [this](const HttpRequest& each) { return status(each); }});
}

HttpResponse StatusResource::status(const HttpRequest& request) const {
    Json lists = Json::object();
    for (const auto& [name, total] : storedOr503(m_sources.storedLists.counts())) {
        lists[std::string(wordOf(name))] = {{"total", total}};
    }
    lists["missed"]["unviewed"] = storedOr503(m_sources.storedLists.unviewed());
    const LineState state = m_sources.lineState();
    const auto keys = m_sources.management.values();
    const auto softwareType = keys.find("software-type");
    return jsonResponse(
        {{"version", m_sources.version},
         {"line", m_sources.line},
         {"scope", wordOf(request.access.scope)},
         {"softwareType", softwareType == keys.end() ? std::string() : softwareType->second},
         {"switch", {{"connected", state.connected}, {"monitoring", state.monitoring}}},
         {"callControl", state.callControl && (!state.telephone || state.telephone->isReady)},
         {"telephone", telephoneJson(state.telephone)},
         {"calls", state.liveCallCount},
         {"storedCalls", storedOr503(m_sources.storedLists.callCount())},
         {"database", {{"kept", m_sources.database.keptCount()}, {"lost", m_sources.database.lostCount()}}},
         {"lists", std::move(lists)}});
}

}  // namespace host
