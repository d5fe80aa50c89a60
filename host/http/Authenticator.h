#pragma once

#include <optional>
#include <string>

#include "host/config/Endpoint.h"
#include "host/http/HttpRequest.h"
#include "host/http/HttpResponse.h"

namespace host {

/// Who may ask, and from where:
///
///  1. `Host` must be localhost or the address that the server listens on, so that no name which somebody else's name server
///     points here gets an answer.
///  2. A request that a page of another origin makes is refused.
///  3. What the journal holds needs the token: in `Authorization: Bearer TOKEN`, or in the cookie that a browser gets when
///     the page is opened with `/?token=TOKEN`.
///
/// Threads: any, once `setListenAddress` was called.
class Authenticator {
public:
    /// Without a token everybody may ask who passes the first two.
    explicit Authenticator(std::optional<std::string> token) : m_token(std::move(token)) {}

    /// Before the first request.
    void setListenAddress(const Endpoint& endpoint);

    /// Throws `HttpError`: 400 without a host and with what is none, two of them say; 403 for a wrong one and for another origin.
    void checkOrigin(const HttpRequest& request) const;
    /// Throws `HttpError` 401: "no-token" for a request without one, "wrong-token" for one that has another.
    void checkToken(const HttpRequest& request) const;

    /// The answer to "/?token=TOKEN": a cookie and the way to the page without the token in its address; for a wrong token the
    /// way to "/?refused=1", where the page says so. Nothing for any other request.
    [[nodiscard]] std::optional<HttpResponse> signIn(const HttpRequest& request) const;

private:
    [[nodiscard]] bool isServedHost(const std::string& host) const;
    /// The token that the request names; empty without one.
    [[nodiscard]] std::string tokenOf(const HttpRequest& request) const;
    [[nodiscard]] bool matchesToken(const std::string& text) const;

    // Constant once the server listens.
    const std::optional<std::string> m_token;
    std::string m_host;
    std::string m_cookie;
};

}  // namespace host
