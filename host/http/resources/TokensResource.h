#pragma once

#include <functional>
#include <string>
#include <utility>

#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"

namespace host {

class AccessTokens;
class Router;

/// The named tokens: create, list, revoke. Thread-safe.
class TokensResource {
public:
    using IsLine = std::function<bool(const std::string&)>;

    /// `tokens` is borrowed and outlives the resource; `isLine` returns true for the device of a line.
    TokensResource(AccessTokens& tokens, IsLine isLine) : m_tokens(tokens), m_isLine(std::move(isLine)) {}

    void addRoutes(Router& router);

private:
    [[nodiscard]] HttpResponse list() const;
    [[nodiscard]] HttpResponse create(const HttpRequest& request);
    [[nodiscard]] HttpResponse revoke(const HttpRequest& request);

    AccessTokens& m_tokens;
    const IsLine m_isLine;
};

}  // namespace host
