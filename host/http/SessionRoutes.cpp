#include "host/http/SessionRoutes.h"

#include <nlohmann/json.hpp>
#include <string>

#include "host/http/Authenticator.h"
#include "host/http/messages/HttpError.h"
#include "host/http/messages/JsonBody.h"
#include "host/http/messages/Router.h"

namespace host {
namespace {

constexpr const char* kPath = "/api/v1/session";

HttpResponse begin(const Authenticator& authenticator, const HttpRequest& request) {
    const nlohmann::ordered_json json = jsonObject(request);
    const auto token = json.find("token");
    if (json.size() != 1 || token == json.end() || !token->is_string()) {
        throw HttpError(422, "wrong-shape", R"(the body must be {"token": "..."})");
    }
    return authenticator.beginSession(token->get<std::string>());
}

}  // namespace

void addSessionRoutes(const Authenticator& authenticator, Router& router) {
    router.add({"POST", kPath, Scope::eNone,
                [&authenticator](const HttpRequest& each) { return begin(authenticator, each); }});
    router.add({"DELETE", kPath, Scope::eNone,
                [&authenticator](const HttpRequest& /*each*/) { return authenticator.endSession(); }});
}

}  // namespace host
