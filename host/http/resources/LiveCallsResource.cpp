#include "host/http/resources/LiveCallsResource.h"

#include <algorithm>
#include <chrono>
#include <nlohmann/json.hpp>
#include <string_view>

#include "host/csta/call-control/CallControlIfc.h"
#include "host/digits/Dialling.h"
#include "host/directory/Phonebook.h"
#include "host/history/CallJson.h"
#include "host/http/messages/HttpError.h"
#include "host/http/messages/JsonBody.h"
#include "host/http/messages/NumberFields.h"
#include "host/http/messages/Router.h"
#include "host/presentation/PlainText.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;
using Kind = CallControlOutcome::Kind;

std::string_view wordOf(LiveCallView::State state) {
    switch (state) {
        case LiveCallView::State::eOffered: return "offered";
        case LiveCallView::State::eRinging: return "ringing";
        case LiveCallView::State::eCalling: return "calling";
        case LiveCallView::State::eConnected: return "connected";
        case LiveCallView::State::eHeld: return "held";
    }
    return "";
}

std::string timeText(LiveCallView::Time time) {
    return utcText(std::chrono::floor<std::chrono::seconds>(time));
}

/// Throws `HttpError` unless the switch has carried out the request for `service`.
void requireDone(const CallControlOutcome& outcome, const std::string& service) {
    switch (outcome.kind) {
        case Kind::eDone: return;
        case Kind::eRefused:
            throw HttpError(409, "refused", "the switch refuses " + service + ": " + outcome.reason);
        case Kind::eOutOfService:
            throw HttpError(503, "no-telephone", "the telephone is out of service: " + outcome.reason);
        case Kind::eNotPossible: throw HttpError(409, "wrong-state", outcome.reason);
        case Kind::eUnknownCall: throw HttpError(404, "unknown-call", "there is no such live call");
        case Kind::eNotSupported:
            throw HttpError(501, "not-supported",
                            "the switch does not have the service " + service +
                                ", or does not respond to it; use the telephone");
        case Kind::eNotConnected: break;
    }
    throw HttpError(503, "no-link", "there is no link to the switch");
}

/// Throws `HttpError` if the telephone is one of the program's own and cannot dial.
void requireReady(const std::optional<TelephoneState>& telephone) {
    if (telephone && !telephone->isReady) {
        std::string state = telephone->word;
        std::replace(state.begin(), state.end(), '-', ' ');
        throw HttpError(503, "no-telephone",
                        "the telephone is " + state +
                            (telephone->reason.empty() ? std::string() : ": " + telephone->reason));
    }
}

Json parsedCall(const HttpRequest& request) {
    Json body = jsonObject(request);
    const auto number = body.find("number");
    const auto emergency = body.find("emergency");
    for (const auto& [name, value] : body.items()) {
        if (name != "number" && name != "emergency") {
            throw HttpError(422, "wrong-shape", "a call has no member " + name);
        }
    }
    if (number == body.end() || !number->is_string() ||
        (emergency != body.end() && !emergency->is_boolean())) {
        throw HttpError(422, "wrong-shape",
                        R"(the body must be {"number": "...", "emergency": true or false})");
    }
    return body;
}

}  // namespace

void LiveCallsResource::addRoutes(Router& router) {
    router.add(
        {"POST", "/api/v1/calls", Scope::eWrite, [this](const HttpRequest& each) { return place(each); }});
    router.add({"GET",
                "/api/v1/live-calls",
                Scope::eRead,
                [this](const HttpRequest& each) { return jsonResponse(list(languageOf(each))); },
                {"language"}});
    router.add({"POST", "/api/v1/live-calls/{liveCallId}/answer", Scope::eWrite,
                [this](const HttpRequest& each) { return answerCall(each); }});
    router.add({"DELETE", "/api/v1/live-calls/{liveCallId}", Scope::eWrite,
                [this](const HttpRequest& each) { return hangUp(each); }});
}

Json LiveCallsResource::list(PlaceLanguage language) const {
    Json calls = Json::array();
    for (const LiveCallView& call : m_sources.calls.liveCalls()) {
        addNumberFields(calls.emplace_back(callJson(call)), m_sources.numbers, call.number, language);
    }
    return {{"calls", std::move(calls)}};
}

HttpResponse LiveCallsResource::place(const HttpRequest& request) const {
    const Json body = parsedCall(request);
    const auto number = body["number"].get<std::string>();
    const auto target = m_sources.dialling.target(number);
    if (!target) {
        throw HttpError(422, "bad-number", "this is neither a telephone number nor a sip: address");
    }
    if (target->isEmergency && !body.value("emergency", false)) {
        throw HttpError(
            422, "emergency-number",
            target->text + " reaches an emergency service; to call it, confirm with \"emergency\": true");
    }
    requireReady(m_sources.lineState().telephone);
    const CallControlOutcome outcome = m_sources.calls.makeCall(target->text);
    requireDone(outcome, "MakeCall");
    return jsonResponse({{"callId", outcome.callId}}, 202);
}

HttpResponse LiveCallsResource::answerCall(const HttpRequest& request) const {
    requireDone(m_sources.calls.answerCall(request.parameter("liveCallId")), "AnswerCall");
    return emptyResponse();
}

HttpResponse LiveCallsResource::hangUp(const HttpRequest& request) const {
    requireDone(m_sources.calls.clearCall(request.parameter("liveCallId")), "ClearConnection");
    return emptyResponse();
}

Json LiveCallsResource::callJson(const LiveCallView& call) const {
    Contact contact;
    contact.setSearchNumber(call.number);
    const bool isKnown = !call.number.empty() && m_sources.phonebook.lookUp(contact).value_or(false);
    const std::string contactName =
        isKnown ? fullName(contact.getFirstname(), contact.getSurname()) : std::string();
    return {{"callId", call.id},
            {"switchCallId", call.switchCallId},
            {"direction", call.outgoing ? "outgoing" : "incoming"},
            {"state", std::string(wordOf(call.state))},
            {"device", call.device},
            {"number", call.number},
            {"name", call.name},
            {"displayName", contactName.empty() ? call.name : contactName},
            {"since", timeText(call.since)},
            {"connectedSince", call.connectedSince ? Json(timeText(*call.connectedSince)) : Json()}};
}

}  // namespace host
