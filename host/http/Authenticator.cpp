#include "host/http/Authenticator.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "host/access/AccessTokens.h"
#include "host/access/Tickets.h"
#include "host/config/WebOrigin.h"
#include "host/http/messages/HttpError.h"

namespace host {
namespace {

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
    });
    return text;
}

bool isAddress(const std::string& host) {
    std::array<unsigned char, sizeof(in6_addr)> ignored{};
    return inet_pton(AF_INET, host.c_str(), ignored.data()) == 1 ||
           inet_pton(AF_INET6, host.c_str(), ignored.data()) == 1;
}

/// "localhost" of "localhost:8080", "::1" of "[::1]:8080".
std::string hostOf(const std::string& hostAndPort) {
    if (!hostAndPort.empty() && hostAndPort.front() == '[') {
        const std::size_t end = hostAndPort.find(']');
        const std::string host = hostAndPort.substr(1, end == std::string::npos ? end : end - 1);
        return end != std::string::npos && isAddress(host) ? host : std::string();
    }
    return hostAndPort.substr(0, hostAndPort.find(':'));
}

bool isWildcard(const std::string& host) {
    return host == "0.0.0.0" || host == "::";
}

HttpError wrongToken() {
    return {401, kWrongToken,
            "this is no valid token; `calljournal tokens create NAME` on the server makes one"};
}

/// The only route that takes tickets: an EventSource of a browser cannot send a header.
bool isEventStream(const std::vector<std::string>& path) {
    const bool isOfLine = path.size() == 5 && path[2] == "lines";
    return (path.size() == 3 || isOfLine) && path[0] == "api" && path[1] == "v1" && path.back() == "events";
}

constexpr std::chrono::milliseconds kBetweenTries{100};
/// The responses that wait take memory.
constexpr std::chrono::seconds kLongestDelay{2};

constexpr int kSecondsOfYear = 365 * 24 * 60 * 60;

std::string cookieValue(std::string_view cookies, std::string_view name) {
    while (!cookies.empty()) {
        std::string_view cookie = cookies.substr(0, cookies.find(';'));
        cookies.remove_prefix(std::min(cookies.size(), cookie.size() + 1));
        cookie.remove_prefix(std::min(cookie.size(), cookie.find_first_not_of(' ')));
        if (cookie.substr(0, name.size()) == name && cookie.substr(name.size(), 1) == "=") {
            return std::string(cookie.substr(name.size() + 1));
        }
    }
    return {};
}

}  // namespace

Authenticator::Authenticator(std::optional<std::string> token, const AccessTokens* named, Tickets* tickets,
                             const std::string& publicUrl, std::vector<std::string> allowedOrigins)
    : m_token(std::move(token)),
      m_named(named),
      m_tickets(tickets),
      m_publicOrigin(originOf(publicUrl).value_or("")),
      m_foreign(std::move(allowedOrigins)) {}

void Authenticator::setListenAddress(const Endpoint& endpoint, bool isSecure) {
    m_isSecure = isSecure;
    m_host = lowered(endpoint.host);
    // A cookie is sent to every port of a host, so two servers on one machine need two cookie names.
    m_cookie = "calljournal-" + std::to_string(endpoint.port);
}

void Authenticator::checkOrigin(const HttpRequest& request) const {
    const std::string host = lowered(request.header("host"));
    if (host.empty()) {
        throw HttpError(400, "no-host", "the request names no host");
    }
    if (host.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789.-_:[]") != std::string::npos) {
        throw HttpError(400, "bad-host", "the request must name one host");
    }
    if (!isServedHost(hostOf(host))) {
        throw HttpError(403, "wrong-host", "this server is not " + host);
    }
    const std::string origin = lowered(request.header("origin"));
    const std::string site = request.header("sec-fetch-site");
    // A browser sends Sec-Fetch-Site where it sends no Origin. A link or a bookmark may open the page itself.
    const bool opensPage = request.header("sec-fetch-mode") == "navigate" && request.path.empty();
    if (m_foreign.isAllowed(request) || (!origin.empty() && origin == m_publicOrigin)) {
        return;
    }
    if ((!origin.empty() && origin != (m_isSecure ? "https://" : "http://") + host) ||
        (!opensPage && (site == "cross-site" || site == "same-site"))) {
        throw HttpError(403, "foreign-origin", "pages of other origins may not ask");
    }
}

bool Authenticator::isServedHost(const std::string& host) const {
    const std::size_t scheme = m_publicOrigin.find("://");
    return host == "localhost" || host == m_host ||
           (!m_publicOrigin.empty() && host == hostOf(m_publicOrigin.substr(scheme + 3))) ||
           (isWildcard(m_host) && isAddress(host));
}

bool Authenticator::matchesToken(const std::string& text) const {
    if (!m_token || text.size() != m_token->size()) {
        return false;
    }
    // Compares every character: the time taken must not depend on the number of matching characters.
    unsigned difference = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        difference |= static_cast<unsigned>(static_cast<unsigned char>(text[at] ^ (*m_token)[at]));
    }
    return difference == 0;
}

std::string Authenticator::tokenOf(const HttpRequest& request) const {
    constexpr std::string_view kBearer = "bearer ";
    const std::string& authorization = request.header("authorization");
    if (lowered(authorization.substr(0, kBearer.size())) == kBearer) {
        return authorization.substr(kBearer.size());
    }
    return m_foreign.isAllowed(request) ? std::string() : cookieValue(request.header("cookie"), m_cookie);
}

std::optional<Access> Authenticator::accessOf(const std::string& token) const {
    if (!m_token || matchesToken(token)) {
        return Access{Scope::eAdmin, {}, 0};
    }
    return m_named != nullptr && !token.empty() ? m_named->find(token) : std::nullopt;
}

Access Authenticator::access(const HttpRequest& request) const {
    const std::string token = tokenOf(request);
    if (m_token && m_tickets != nullptr && token.empty() && isEventStream(request.path) &&
        request.query.contains("ticket")) {
        auto access = m_tickets->redeem(request.queryValue("ticket"), Tickets::Clock::now());
        if (!access || !isValid(*access)) {
            throw HttpError(401, kWrongToken, "this ticket was used before, or is older than a minute");
        }
        return std::move(*access);
    }
    auto access = accessOf(token);
    if (access) {
        return std::move(*access);
    }
    if (token.empty()) {
        throw HttpError(401, "no-token",
                        "this needs the token in the file api-token of the data directory, or a named one");
    }
    throw wrongToken();
}

bool Authenticator::isTrusted(const HttpRequest& request) const {
    return accessOf(tokenOf(request)).has_value();
}

bool Authenticator::isValid(const Access& access) const {
    return access.tokenId == 0 || (m_named != nullptr && m_named->isValid(access.tokenId));
}

std::chrono::milliseconds Authenticator::failedTry() const {
    using Clock = std::chrono::steady_clock;
    ++m_failedTries;
    const std::lock_guard lock(m_tryMutex);
    const Clock::time_point now = Clock::now();
    m_nextTry = std::min(std::max(m_nextTry, now) + kBetweenTries, now + kLongestDelay);
    return std::chrono::ceil<std::chrono::milliseconds>(m_nextTry - now);
}

std::optional<HttpResponse> Authenticator::signIn(const HttpRequest& request) const {
    if (!request.path.empty() || !request.query.contains("token") || request.method != "GET") {
        return std::nullopt;
    }
    HttpResponse response;
    response.status = 303;
    const std::string& token = request.queryValue("token");
    const bool isRefused = !accessOf(token);
    response.headers = {{"Location", isRefused ? "./?refused=1" : "./"}};
    if (isRefused) {
        response.delay = failedTry();
    } else if (m_token) {
        setCookie(response, token, kSecondsOfYear);
    }
    return response;
}

HttpResponse Authenticator::beginSession(const std::string& token) const {
    HttpResponse response = emptyResponse();
    if (m_token) {
        if (!accessOf(token)) {
            throw wrongToken();
        }
        setCookie(response, token, kSecondsOfYear);
    }
    return response;
}

HttpResponse Authenticator::endSession() const {
    HttpResponse response = emptyResponse();
    setCookie(response, "", 0);
    return response;
}

void Authenticator::setCookie(HttpResponse& response, const std::string& value, int seconds) const {
    response.headers.emplace_back("Set-Cookie",
                                  m_cookie + "=" + value + "; Path=/; Max-Age=" + std::to_string(seconds) +
                                      "; HttpOnly; SameSite=Strict" +
                                      (m_isSecure || m_publicOrigin.starts_with("https:") ? "; Secure" : ""));
}

}  // namespace host
