#include "host/http/ForeignOrigins.h"

#include <algorithm>

namespace host {

bool ForeignOrigins::isAllowed(const HttpRequest& request) const {
    const std::string& origin = request.header("origin");
    return !origin.empty() && std::find(m_allowed.begin(), m_allowed.end(), origin) != m_allowed.end();
}

std::optional<HttpResponse> ForeignOrigins::preflight(const HttpRequest& request) const {
    if (request.method != "OPTIONS" || request.header("access-control-request-method").empty() ||
        !isAllowed(request)) {
        return std::nullopt;
    }
    HttpResponse response;
    response.status = 204;
    response.headers = {{"Access-Control-Allow-Methods", "GET, HEAD, POST, PUT, DELETE"},
                        {"Access-Control-Allow-Headers", "Authorization, Content-Type, Last-Event-ID"},
                        {"Access-Control-Max-Age", "600"}};
    return response;
}

void ForeignOrigins::addHeaders(const HttpRequest& request, HttpResponse& response) const {
    if (m_allowed.empty()) {
        return;
    }
    response.headers.emplace_back("Vary", "Origin");
    if (isAllowed(request)) {
        response.headers.emplace_back("Access-Control-Allow-Origin", request.header("origin"));
        response.headers.emplace_back("Access-Control-Expose-Headers", "ETag, Location");
    }
}

}  // namespace host
