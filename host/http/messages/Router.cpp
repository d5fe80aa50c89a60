#include "host/http/messages/Router.h"

#include <algorithm>
#include <string_view>

#include "host/http/messages/HttpError.h"

namespace host {
namespace {

bool matches(std::string_view pattern, const std::vector<std::string>& path,
             std::map<std::string, std::string>& parameters) {
    for (const std::string& segment : path) {
        if (pattern.empty()) {
            return false;
        }
        pattern.remove_prefix(1);
        const std::string_view part = pattern.substr(0, pattern.find('/'));
        pattern.remove_prefix(part.size());
        if (part.size() > 2 && part.front() == '{') {
            if (segment.empty()) {
                return false;
            }
            parameters[std::string(part.substr(1, part.size() - 2))] = segment;
        } else if (part != segment) {
            return false;
        }
    }
    return pattern.empty();
}

}  // namespace

void Router::Route::checkQuery(const HttpRequest& request) const {
    if (!pattern.starts_with("/api/v1/")) {
        return;
    }
    for (const auto& [name, value] : request.query) {
        if (name != "line" &&
            std::find(queryParameters.begin(), queryParameters.end(), name) == queryParameters.end()) {
            throw HttpError(400, "unknown-parameter", "this address takes no parameter " + name);
        }
    }
    if (!request.repeatedParameter.empty()) {
        throw HttpError(400, "repeated-parameter", request.repeatedParameter + " may be given once only");
    }
}

const Router::Route* Router::find(HttpRequest& request) const {
    const std::string method = request.method == "HEAD" ? "GET" : request.method;
    const std::string pattern = patternFor(request.path, request.parameters);
    for (const Route& route : m_routes) {
        if (route.method == method && route.pattern == pattern) {
            request.route = route.pattern;
            return &route;
        }
    }
    return nullptr;
}

std::string Router::methodsFor(const HttpRequest& request) const {
    Parameters ignored;
    const std::string pattern = patternFor(request.path, ignored);
    std::string methods;
    for (const Route& route : m_routes) {
        if (route.pattern == pattern) {
            methods += (methods.empty() ? "" : ", ") + route.method;
        }
    }
    return methods;
}

std::string Router::patternFor(const std::vector<std::string>& path, Parameters& parameters) const {
    for (const Route& route : m_routes) {
        Parameters found;
        if (matches(route.pattern, path, found)) {
            parameters = std::move(found);
            return route.pattern;
        }
    }
    return {};
}

}  // namespace host
