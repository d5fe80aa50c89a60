#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "host/access/Access.h"
#include "host/config/Endpoint.h"
#include "host/http/ForeignOrigins.h"
#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"

namespace host {

class AccessTokens;
class Tickets;

/// Checks the origin and the token of a request:
///
///  1. `Host` must be localhost, the listening address or that of the public URL. This prevents DNS
///     rebinding.
///  2. A request from a page of another origin is refused, unless that is allowed. This prevents cross-site
///     request forgery.
///  3. The journal's data needs the token, in `Authorization: Bearer TOKEN` or in the cookie that a browser
///     gets when it opens the page with `/?token=TOKEN`.
///
/// Thread-safe after `setListenAddress`.
class Authenticator {
public:
    /// `token` is the one of the data directory, which has the scope admin; without it, only the first two
    /// checks apply. `named` is borrowed and outlives this object; nullptr if there are no named tokens.
    /// The same for `tickets`. `publicUrl` is the URL under which a proxy serves the page; empty for none.
    explicit Authenticator(std::optional<std::string> token, const AccessTokens* named = nullptr,
                           Tickets* tickets = nullptr, const std::string& publicUrl = {},
                           std::vector<std::string> allowedOrigins = {});

    [[nodiscard]] const ForeignOrigins& foreignOrigins() const noexcept { return m_foreign; }

    /// Call before the first request. `isSecure`: the server speaks TLS.
    void setListenAddress(const Endpoint& endpoint, bool isSecure = false);

    /// Throws `HttpError`: 400 if `Host` is missing or is not one host name; 403 for another host or another
    /// origin.
    void checkOrigin(const HttpRequest& request) const;
    /// The rights that the token of the request grants. Throws `HttpError` 401: "no-token" if the request has
    /// none, "wrong-token" if it has another one.
    [[nodiscard]] Access access(const HttpRequest& request) const;
    /// True if `access` does not throw.
    [[nodiscard]] bool isTrusted(const HttpRequest& request) const;
    /// False once the token that granted it is revoked or has expired.
    [[nodiscard]] bool isValid(const Access& access) const;

    /// Counts a try with a wrong token. Returns how much later its response is to be sent, so that all
    /// clients together have some ten tries a second.
    [[nodiscard]] std::chrono::milliseconds failedTry() const;
    [[nodiscard]] std::uint64_t failedTries() const noexcept { return m_failedTries; }

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
    /// std::nullopt for a wrong token.
    [[nodiscard]] std::optional<Access> accessOf(const std::string& token) const;
    /// Adds the header that gives the cookie this value for some seconds; 0 removes the cookie.
    void setCookie(HttpResponse& response, const std::string& value, int seconds) const;

    // Constant after `setListenAddress`.
    const std::optional<std::string> m_token;
    const AccessTokens* const m_named;
    Tickets* const m_tickets;
    /// "https://phone.example"; empty without a proxy.
    const std::string m_publicOrigin;
    const ForeignOrigins m_foreign;
    std::string m_host;
    std::string m_cookie;
    bool m_isSecure = false;

    mutable std::atomic<std::uint64_t> m_failedTries{0};
    mutable std::mutex m_tryMutex;
    // Guarded by m_tryMutex: when the response to the next wrong token is sent at the earliest.
    mutable std::chrono::steady_clock::time_point m_nextTry{};
};

}  // namespace host
