#include "host/http/resources/PartiesResource.h"

#include <nlohmann/json.hpp>

#include "host/directory/Phonebook.h"
#include "host/history/CallJson.h"
#include "host/http/messages/HttpError.h"
#include "host/http/messages/JsonBody.h"
#include "host/http/messages/NumberFields.h"
#include "host/http/messages/Router.h"
#include "host/limits/TextLimits.h"

namespace host {

namespace {

using Json = nlohmann::ordered_json;

Json timeJson(const std::optional<std::chrono::sys_seconds>& time) {
    return time ? Json(utcText(*time)) : Json();
}

}  // namespace

void PartiesResource::addRoutes(Router& router) {
    router.add({"GET",
                "/api/v1/parties/{number}",
                Scope::eRead,
                [this](const HttpRequest& each) { return party(each); },
                {"language"}});
    router.add({"PUT",
                "/api/v1/parties/{number}",
                Scope::eWrite,
                [this](const HttpRequest& each) { return setNote(each); },
                {"language"}});
}

HttpResponse PartiesResource::party(const HttpRequest& request) const {
    const PlaceLanguage language = languageOf(request);
    const PartySummary party = storedOr503(m_notes.find(request.parameter("number")));
    Contact contact;
    contact.setSearchNumber(party.number);
    const bool hasContact = !party.number.empty() && storedOr503(m_phonebook.lookUp(contact));
    Json known;
    if (hasContact) {
        known = contactJson(contact, m_numbers);
        known["shared"] = !storedOr503(m_phonebook.sharedAmong({contact})).empty();
    }
    Json json{{"number", party.number}};
    addNumberFields(json, m_numbers, party.number, language);
    json.update({{"displayName", party.displayName},
                 {"contact", std::move(known)},
                 {"calls", party.calls},
                 {"totals",
                  {{"calls", party.calls},
                   {"missed", party.missed},
                   {"dialled", party.dialled},
                   {"received", party.received},
                   {"forwarded", party.forwarded},
                   {"talkTime", party.talkTime.count()}}},
                 {"firstCall", timeJson(party.firstCall)},
                 {"lastCall", timeJson(party.lastCall)},
                 {"note", party.note}});
    return jsonResponse(json);
}

HttpResponse PartiesResource::setNote(const HttpRequest& request) {
    static_cast<void>(languageOf(request));
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
