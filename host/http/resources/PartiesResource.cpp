#include "host/http/resources/PartiesResource.h"

#include <nlohmann/json.hpp>

#include "host/history/CallJson.h"
#include "host/http/messages/HttpError.h"
#include "host/http/messages/JsonBody.h"
#include "host/http/messages/Router.h"
#include "host/limits/TextLimits.h"

namespace host {

using Json = nlohmann::ordered_json;

void PartiesResource::addRoutes(Router& router) {
    router.add({"GET", "/api/v1/parties/{number}", [this](const HttpRequest& each) { return party(each); }});
    router.add(
        {"PUT", "/api/v1/parties/{number}", [this](const HttpRequest& each) { return setNote(each); }});
}

HttpResponse PartiesResource::party(const HttpRequest& request) const {
    const PartySummary party = storedOr503(m_notes.find(request.parameter("number")));
    return jsonResponse({{"number", party.number},
                         {"displayName", party.displayName},
                         {"calls", party.calls},
                         {"lastCall", party.lastCall ? Json(utcText(*party.lastCall)) : Json()},
                         {"note", party.note}});
}

HttpResponse PartiesResource::setNote(const HttpRequest& request) {
    const Json json = jsonObject(request);
    const auto note = json.find("note");
    if (json.size() != 1 || note == json.end() || !note->is_string()) {
        throw HttpError(422, "wrong-shape", R"(the body must be {"note": "..."})");
    }
    const auto text = note->get<std::string>();
    if (text.size() > limits::kTextBytes) {
        throw HttpError(422, "wrong-shape", limits::tooLong("the note", limits::kTextBytes));
    }
    doneOr503(m_notes.setNote(request.parameter("number"), text));
    return party(request);
}

}  // namespace host
