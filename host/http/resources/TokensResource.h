#pragma once

#include <string>

#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"

namespace host {

class AccessTokens;
class Router;

/// The named tokens: create, list, revoke. Thread-safe.
class TokensResource {
public:
    /// `tokens` is borrowed and outlives the resource; `line` is the only line there is.
    TokensResource(AccessTokens& tokens, std::string line) : m_tokens(tokens), m_line(std::move(line)) {}

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse list() const;
    [[nodiscard]] HttpResponse create(const HttpRequest& request);
    [[nodiscard]] HttpResponse revoke(const HttpRequest& request);

    AccessTokens& m_tokens;
    const std::string m_line;
};

}  // namespace host
