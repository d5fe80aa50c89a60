#include "host/http/resources/TokensResource.h"

#include <charconv>
#include <chrono>
#include <nlohmann/json.hpp>

#include "host/access/AccessTokens.h"
#include "host/history/CallJson.h"
#include "host/history/FilterText.h"
#include "host/history/Zone.h"
#include "host/http/messages/HttpError.h"
#include "host/http/messages/JsonBody.h"
#include "host/http/messages/Router.h"

namespace host {
namespace {

using Json = nlohmann::ordered_json;
using std::chrono::sys_seconds;

constexpr std::size_t kNameBytes = 64;

sys_seconds now() {
    return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

Json tokenJson(const NamedToken& token) {
    return {{"id", token.id},
            {"name", token.name},
            {"scope", wordOf(token.scope)},
            {"line", token.line.empty() ? Json() : Json(token.line)},
            {"created", utcText(token.created)},
            {"expires", token.expires ? Json(utcText(*token.expires)) : Json()},
            {"expired", token.expires && *token.expires <= now()}};
}

[[noreturn]] void refuse(const std::string& why) {
    throw HttpError(422, "wrong-shape", why);
}

/// A member of the body that is a text; std::nullopt if it is missing or null.
std::optional<std::string> textIn(const Json& json, const char* name) {
    const auto found = json.find(name);
    if (found == json.end() || found->is_null()) {
        return std::nullopt;
    }
    if (!found->is_string()) {
        refuse(std::string(name) + " must be a text");
    }
    return found->get<std::string>();
}

sys_seconds expiryIn(const std::string& text) {
    // Without an offset, the time would be that of some machine.
    const auto time = text.ends_with('Z') ? timeOfText(text, now(), Zone::ofMachine()) : std::nullopt;
    if (!time || *time <= now()) {
        refuse(R"(expires must be a time to come, such as "2030-01-31T12:00:00Z")");
    }
    return *time;
}

NamedToken tokenIn(const Json& json, const TokensResource::IsLine& isLine) {
    for (const auto& [name, value] : json.items()) {
        if (name != "name" && name != "scope" && name != "line" && name != "expires") {
            refuse("a token has name, scope, line and expires, not " + name);
        }
    }
    NamedToken token;
    token.name = textIn(json, "name").value_or("");
    if (token.name.empty() || token.name.size() > kNameBytes) {
        refuse("name must have 1 to " + std::to_string(kNameBytes) + " bytes");
    }
    const auto scope = scopeOf(textIn(json, "scope").value_or(""));
    if (!scope) {
        refuse("scope must be read, write, admin or metrics");
    }
    token.scope = *scope;
    token.line = textIn(json, "line").value_or("");
    if (!token.line.empty() && !isLine(token.line)) {
        refuse("there is no line " + token.line);
    }
    if (const auto expires = textIn(json, "expires")) {
        token.expires = expiryIn(*expires);
    }
    return token;
}

}  // namespace

void TokensResource::addRoutes(Router& router) {
    const auto add = [&router](const char* method, const char* pattern, Router::Handler handler) {
        router.add({.method = method,
                    .pattern = pattern,
                    .scope = Scope::eAdmin,
                    .handler = std::move(handler),
                    .isOfAllLines = true});
    };
    add("GET", "/api/v1/tokens", [this](const HttpRequest& /*each*/) { return list(); });
    add("POST", "/api/v1/tokens", [this](const HttpRequest& each) { return create(each); });
    add("DELETE", "/api/v1/tokens/{tokenId}", [this](const HttpRequest& each) { return revoke(each); });
}

HttpResponse TokensResource::list() const {
    Json tokens = Json::array();
    for (const NamedToken& token : m_tokens.list()) {
        tokens.push_back(tokenJson(token));
    }
    return jsonResponse({{"tokens", std::move(tokens)}});
}

HttpResponse TokensResource::create(const HttpRequest& request) {
    AccessTokens::Failure failure{};
    const auto created = m_tokens.create(tokenIn(jsonObject(request), m_isLine), failure);
    if (!created) {
        if (failure == AccessTokens::Failure::eNameTaken) {
            throw HttpError(409, "name-taken", "there is a token of this name already");
        }
        doneOr503(false);
    }
    Json json = tokenJson(created->token);
    json["token"] = created->secret;
    HttpResponse response = jsonResponse(json, 201);
    response.headers.emplace_back("Location", "/api/v1/tokens/" + std::to_string(created->token.id));
    return response;
}

HttpResponse TokensResource::revoke(const HttpRequest& request) {
    const std::string& text = request.parameter("tokenId");
    std::int64_t id = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), id);
    const bool isNumber = error == std::errc() && end == text.data() + text.size();
    if (!isNumber || !storedOr503(m_tokens.revoke(id))) {
        throw HttpError(404, "not-found", "there is no such token");
    }
    return emptyResponse();
}

}  // namespace host
