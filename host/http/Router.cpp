#include "host/http/Router.h"

#include <map>
#include <string_view>

namespace host {
namespace {

using Parameters = std::map<std::string, std::string>;

bool fits(std::string_view pattern, const std::vector<std::string>& path, Parameters& parameters) {
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

const Router::Route* Router::find(HttpRequest& request) const {
    const std::string method = request.method == "HEAD" ? "GET" : request.method;
    for (const Route& route : m_routes) {
        Parameters parameters;
        if (route.method == method && fits(route.pattern, request.path, parameters)) {
            request.parameters = std::move(parameters);
            return &route;
        }
    }
    return nullptr;
}

std::string Router::methodsFor(const HttpRequest& request) const {
    std::string methods;
    for (const Route& route : m_routes) {
        Parameters ignored;
        if (fits(route.pattern, request.path, ignored)) {
            methods += (methods.empty() ? "" : ", ") + route.method;
        }
    }
    return methods;
}

}  // namespace host
