#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "host/http/HttpRequest.h"
#include "host/http/HttpResponse.h"

namespace host {

/// The table of routes. Filled before the first request; afterwards any thread may call.
class Router {
public:
    /// Runs on a worker thread, several at a time. May throw `HttpError`.
    using Handler = std::function<HttpResponse(const HttpRequest&)>;
    /// Whether a request needs no token.
    enum class Guard { eToken, eOpen };

    struct Route {
        std::string method;
        /// "/api/v1/lists/{list}": a segment in braces takes any text, which becomes a parameter of that name.
        std::string pattern;
        Handler handler;
        Guard guard = Guard::eToken;
    };

    /// Of several patterns that fit a path the one that was added first serves it, with all its methods: "viewed" before
    /// "{entryId}".
    void add(Route route) { m_routes.push_back(std::move(route)); }

    /// The route of a request, whose parameters are filled in. HEAD is served by the route of GET. Null when there is none.
    [[nodiscard]] const Route* find(HttpRequest& request) const;
    /// With which methods the path of a request is served, "GET, PUT"; empty when no pattern fits it.
    [[nodiscard]] std::string methodsFor(const HttpRequest& request) const;

    [[nodiscard]] const std::vector<Route>& routes() const noexcept { return m_routes; }

private:
    using Parameters = std::map<std::string, std::string>;

    /// Empty when none fits.
    [[nodiscard]] std::string patternFor(const std::vector<std::string>& path, Parameters& parameters) const;

    std::vector<Route> m_routes;
};

}  // namespace host
