#include "host/http/resources/ImportResource.h"

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "host/call-files/CallFields.h"
#include "host/http/messages/HttpError.h"
#include "host/http/messages/JsonBody.h"
#include "host/http/messages/Router.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;

/// Enough for a few hundred calls.
constexpr std::size_t kMaxBody = 250U * 1024U;

bool flagIn(const Json& body, const char* member) {
    const auto found = body.find(member);
    if (found == body.end()) {
        return false;
    }
    if (!found->is_boolean()) {
        throw HttpError(422, "wrong-shape", std::string(member) + " is true or false");
    }
    return found->get<bool>();
}

std::string importIn(const Json& body) {
    const auto found = body.find("import");
    if (found == body.end() || found->is_null()) {
        return {};
    }
    if (!found->is_string()) {
        throw HttpError(422, "wrong-shape", "import is the text that the first request got");
    }
    return found->get<std::string>();
}

/// Reads a call of the body; a time in it needs a zone.
Call callIn(const Json& call) {
    if (!call.is_object()) {
        throw CallFieldError("it is no JSON object");
    }
    return callOf(callFieldsOf(call), {});
}

}  // namespace

void ImportResource::addRoutes(Router& router) {
    Router::Route route{"POST", "/api/v1/calls/import", Scope::eAdmin,
                        [this](const HttpRequest& each) { return importCalls(each); }};
    route.maxBody = kMaxBody;
    router.add(std::move(route));
}

HttpResponse ImportResource::importCalls(const HttpRequest& request) {
    const Json body = jsonObject(request);
    const auto given = body.find("calls");
    if (given == body.end() || !given->is_array()) {
        throw HttpError(422, "wrong-shape", R"(the body must be {"calls": [...]})");
    }
    ImportSession::Request part{importIn(body), !flagIn(body, "more"), flagIn(body, "unviewed"), {}};
    Json failed = Json::array();
    for (std::size_t row = 0; row < given->size(); ++row) {
        try {
            part.calls.push_back(callIn((*given)[row]));
        } catch (const CallFieldError& error) {
            failed.push_back({{"row", row + 1}, {"error", error.what()}});
        }
    }
    const ImportSession::Response done = m_import.add(part);
    if (done.outcome == ImportSession::Outcome::eOtherImport) {
        throw HttpError(409, "other-import",
                        "another import is running; one whose client is gone ends after 30 seconds");
    }
    if (done.outcome == ImportSession::Outcome::eFailed) {
        throw HttpError(503, "database",
                        "the database does not respond; see the log. Importing the calls again is harmless");
    }
    return jsonResponse({{"imported", done.counts.imported},
                         {"known", done.counts.known},
                         {"failed", std::move(failed)},
                         {"import", done.import.empty() ? Json() : Json(done.import)}});
}

}  // namespace host
