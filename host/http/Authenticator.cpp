#include "host/http/Authenticator.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <string_view>

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
    return {401, "wrong-token",
            "this is not the token; it stands in the file api-token of the data directory"};
}

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

void Authenticator::setListenAddress(const Endpoint& endpoint) {
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
    if ((!origin.empty() && origin != "http://" + host) ||
        (!opensPage && (site == "cross-site" || site == "same-site"))) {
        throw HttpError(403, "foreign-origin", "pages of other origins may not ask");
    }
}

bool Authenticator::isServedHost(const std::string& host) const {
    return host == "localhost" || host == m_host || (isWildcard(m_host) && isAddress(host));
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
    return cookieValue(request.header("cookie"), m_cookie);
}

void Authenticator::checkToken(const HttpRequest& request) const {
    if (!m_token) {
        return;
    }
    const std::string token = tokenOf(request);
    if (token.empty()) {
        throw HttpError(401, "no-token", "this needs the token in the file api-token of the data directory");
    }
    if (!matchesToken(token)) {
        throw wrongToken();
    }
}

bool Authenticator::isTrusted(const HttpRequest& request) const {
    return !m_token || matchesToken(tokenOf(request));
}

std::optional<HttpResponse> Authenticator::signIn(const HttpRequest& request) const {
    if (!request.path.empty() || !request.query.contains("token") || request.method != "GET") {
        return std::nullopt;
    }
    HttpResponse response;
    response.status = 303;
    const bool isRefused = m_token && !matchesToken(request.queryValue("token"));
    response.headers = {{"Location", isRefused ? "./?refused=1" : "./"}};
    if (m_token && !isRefused) {
        setCookie(response, *m_token, kSecondsOfYear);
    }
    return response;
}

HttpResponse Authenticator::beginSession(const std::string& token) const {
    HttpResponse response = emptyResponse();
    if (m_token) {
        if (!matchesToken(token)) {
            throw wrongToken();
        }
        setCookie(response, *m_token, kSecondsOfYear);
    }
    return response;
}

HttpResponse Authenticator::endSession() const {
    HttpResponse response = emptyResponse();
    setCookie(response, "", 0);
    return response;
}

void Authenticator::setCookie(HttpResponse& response, const std::string& value, int seconds) const {
    response.headers.emplace_back("Set-Cookie", m_cookie + "=" + value + "; Path=/; Max-Age=" +
                                                    std::to_string(seconds) + "; HttpOnly; SameSite=Strict");
}

}  // namespace host
