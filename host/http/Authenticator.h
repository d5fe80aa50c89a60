#pragma once

#include <optional>
#include <string>

#include "host/config/Endpoint.h"
#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"

namespace host {

/// Checks the origin and the token of a request:
///
///  1. `Host` must be localhost or the listening address. This prevents DNS rebinding.
///  2. A request from a page of another origin is refused. This prevents cross-site request forgery.
///  3. The journal's data needs the token, in `Authorization: Bearer TOKEN` or in the cookie that a browser
///     gets when it opens the page with `/?token=TOKEN`.
///
/// Thread-safe after `setListenAddress`.
class Authenticator {
public:
    /// Without a token, only the first two checks apply.
    explicit Authenticator(std::optional<std::string> token) : m_token(std::move(token)) {}

    /// Call before the first request.
    void setListenAddress(const Endpoint& endpoint);

    /// Throws `HttpError`: 400 if `Host` is missing or is not one host name; 403 for another host or another
    /// origin.
    void checkOrigin(const HttpRequest& request) const;
    /// Throws `HttpError` 401: "no-token" if the request has no token, "wrong-token" if it has another one.
    void checkToken(const HttpRequest& request) const;
    /// True if `checkToken` does not throw.
    [[nodiscard]] bool isTrusted(const HttpRequest& request) const;

    /// The response to "/?token=TOKEN": sets the cookie and redirects to "./", so that the token leaves the
    /// address bar. A wrong token redirects to "./?refused=1". Both are relative, because a proxy may serve
    /// the page under a path. std::nullopt for any other request.
    [[nodiscard]] std::optional<HttpResponse> signIn(const HttpRequest& request) const;

    /// Status 204; sets the cookie. Throws `HttpError` 401 "wrong-token" for another token.
    [[nodiscard]] HttpResponse beginSession(const std::string& token) const;
    /// Status 204; removes the cookie.
    [[nodiscard]] HttpResponse endSession() const;

private:
    [[nodiscard]] bool isServedHost(const std::string& host) const;
    /// The token of the request; empty if it has none.
    [[nodiscard]] std::string tokenOf(const HttpRequest& request) const;
    [[nodiscard]] bool matchesToken(const std::string& text) const;
    /// Adds the header that gives the cookie this value for some seconds; 0 removes the cookie.
    void setCookie(HttpResponse& response, const std::string& value, int seconds) const;

    // Constant after `setListenAddress`.
    const std::optional<std::string> m_token;
    std::string m_host;
    std::string m_cookie;
};

}  // namespace host
