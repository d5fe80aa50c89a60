#include "host/http/RequestPipeline.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

#include "host/http/ServedLinesIfc.h"
#include "host/http/messages/ContentCoding.h"
#include "host/http/messages/HttpError.h"
#include "host/log/PrivateText.h"
#include "platform/logging/Logging.h"

namespace host {
namespace {

// No foreign sources and no inline script or style: a caller's name cannot become code.
constexpr const char* kContentPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; font-src 'self'; "
    "connect-src 'self'; manifest-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

constexpr const char* kApi = "/api/v1/";

void addCommonHeaders(HttpResponse& response) {
    for (const auto& [name, value] :
         {std::pair{"Content-Security-Policy", kContentPolicy},
          std::pair{"X-Content-Type-Options", "nosniff"}, std::pair{"X-Frame-Options", "DENY"},
          std::pair{"Referrer-Policy", "no-referrer"}, std::pair{"Cross-Origin-Opener-Policy", "same-origin"},
          std::pair{"Cross-Origin-Resource-Policy", "same-origin"}}) {
        response.headers.emplace_back(name, value);
    }
    const bool hasCacheControl =
        std::any_of(response.headers.begin(), response.headers.end(),
                    [](const auto& header) { return header.first == "Cache-Control"; });
    if (!hasCacheControl) {
        response.headers.emplace_back("Cache-Control", "no-store");
    }
    if (response.status == 401) {
        response.headers.emplace_back("WWW-Authenticate", "Bearer");
    }
}

HttpResponse notAllowed(const std::string& methods) {
    HttpResponse response =
        errorResponse({405, "method-not-allowed", "this address is served with " + methods});
    response.headers.emplace_back("Allow", methods);
    return response;
}

void checkScope(const Access& access, const Router::Route& route) {
    if (!includes(access.scope, route.scope)) {
        throw HttpError(403, "wrong-scope",
                        "this needs a token with the scope " + std::string(wordOf(route.scope)) +
                            "; this one has " + std::string(wordOf(access.scope)));
    }
}

/// An address may have the number of a note, a name or words that are searched for.
std::string loggedAddress(const HttpRequest& request) {
    return loggedParties() == Parties::eShown ? request.target : std::string(request.route);
}

HttpError unknownLine() {
    return {404, "unknown-line", "there is no such line"};
}

bool maySee(const Access& access, const std::string& line) {
    return access.line.empty() || access.line == line;
}

/// Removes the line from the path of the request and returns it; empty if neither the path nor the query
/// names one.
std::string takeLine(HttpRequest& request) {
    std::vector<std::string>& path = request.path;
    std::string line = request.queryValue("line");
    if (path.size() > 4 && path[0] == "api" && path[1] == "v1" && path[2] == "lines") {
        if (!line.empty() && line != path[3]) {
            throw HttpError(400, "two-lines", "the address and the parameter name different lines");
        }
        line = path[3];
        path.erase(path.begin() + 2, path.begin() + 4);
    }
    return line;
}

}  // namespace

HttpResponse RequestPipeline::handle(HttpRequest request) const {
    const auto begin = std::chrono::steady_clock::now();
    HttpResponse response;
    try {
        response = process(request);
        compressJson(request, response);
    } catch (const HttpError& error) {
        response = errorResponse(error);
        if (error.code() == kWrongToken) {
            response.delay = m_authenticator.failedTry();
        }
    } catch (const std::bad_alloc&) {
        logAppUni("HTTP", __FILE_NAME__, 2, __LINE__, "%s failed: out of memory", request.method.c_str());
        response = errorResponse({503, "out-of-memory", "there is too little memory for it now"});
    } catch (const std::exception& error) {
        logAppUni("HTTP", __FILE_NAME__, 2, __LINE__, "%s %s failed: %s", request.method.c_str(),
                  loggedAddress(request).c_str(), loggedReason(error.what()).c_str());
        response = errorResponse({500, "internal", "this went wrong; see the log"});
    }
    addCommonHeaders(response);
    m_authenticator.foreignOrigins().addHeaders(request, response);
    if (m_listener) {
        m_listener({.method = request.method,
                    .route = request.route,
                    .status = response.status,
                    .time = std::chrono::steady_clock::now() - begin});
    }
    return response;
}

bool RequestPipeline::mayBeLong(HttpRequest request) const {
    if (!request.hasValidHeaderNames() || !request.readTarget() || !m_authenticator.isTrusted(request)) {
        return false;
    }
    // Only routes of lines have long bodies, and the lines have the same ones.
    static_cast<void>(takeLine(request));
    const std::shared_ptr<const Router> line = m_lines.find(m_lines.first());
    const Router::Route* const found = line == nullptr ? nullptr : line->find(request);
    return found != nullptr && found->maxBody > Router::kUsualBody;
}

HttpResponse RequestPipeline::process(HttpRequest& request) const {
    if (!request.hasValidHeaderNames()) {
        throw HttpError(400, "bad-header", "the name of a header has a character that is not allowed");
    }
    const bool readable = request.readTarget();
    m_authenticator.checkOrigin(request);
    if (auto allowed = m_authenticator.foreignOrigins().preflight(request)) {
        return std::move(*allowed);
    }
    if (!readable) {
        throw HttpError(400, "bad-target", "this is no address that is served here");
    }
    if (auto signedIn = m_authenticator.signIn(request)) {
        return std::move(*signedIn);
    }
    const bool reads = request.method == "GET" || request.method == "HEAD";
    if (auto file = m_page.find(request)) {
        request.route = "page";
        return reads ? std::move(*file) : notAllowed("GET");
    }
    return route(request);
}

HttpResponse RequestPipeline::route(HttpRequest& request) const {
    const Router::Route* const found = m_router.find(request);
    if (found == nullptr || found->scope != Scope::eNone) {
        request.access = m_authenticator.access(request);
    }
    if (found == nullptr && m_router.methodsFor(request).empty()) {
        return routeOfLine(request);
    }
    const std::string& line = request.queryValue("line");
    if (!line.empty() && !(maySee(request.access, line) && m_lines.contains(line))) {
        throw unknownLine();
    }
    return carryOut(m_router, found, request);
}

HttpResponse RequestPipeline::routeOfLine(HttpRequest& request) const {
    const std::string named = takeLine(request);
    std::string device = named.empty() ? request.access.line : named;
    if (device.empty()) {
        device = m_lines.first();
    }
    const std::shared_ptr<const Router> line =
        maySee(request.access, device) ? m_lines.find(device) : nullptr;
    if (line == nullptr) {
        throw unknownLine();
    }
    request.isOfOneLine = !named.empty() || !request.access.line.empty();
    const Router::Route* const found = line->find(request);
    HttpResponse response = carryOut(*line, found, request);
    for (auto& [name, value] : response.headers) {
        if (name == "Location" && !named.empty() && value.starts_with(kApi)) {
            value.insert(std::string_view(kApi).size(), "lines/" + percentEncoded(named) + "/");
        }
    }
    return response;
}

HttpResponse RequestPipeline::carryOut(const Router& router, const Router::Route* found,
                                       const HttpRequest& request) const {
    if (found == nullptr) {
        const std::string methods = router.methodsFor(request);
        if (methods.empty()) {
            throw HttpError(404, "not-found", "there is nothing at this address");
        }
        return notAllowed(methods);
    }
    checkScope(request.access, *found);
    if (found->isOfAllLines && !request.access.line.empty()) {
        throw HttpError(403, "wrong-line",
                        "this needs a token for all lines; this one is for line " + request.access.line);
    }
    if (request.body.size() > found->maxBody) {
        throw HttpError(413, "too-large",
                        "a body may have " + std::to_string(found->maxBody / 1024) + " KiB here");
    }
    found->checkQuery(request);
    return found->handler(request);
}

}  // namespace host
