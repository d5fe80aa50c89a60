#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "host/access/Access.h"
#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"

namespace host {

/// The table of routes. Thread-safe after the last `add`.
class Router {
public:
    /// Called on worker threads, concurrently. May throw `HttpError`.
    using Handler = std::function<HttpResponse(const HttpRequest&)>;
    /// The most bytes that the server reads of any body.
    static constexpr std::size_t kUsualBody = 256U * 1024U;

    struct Route {
        std::string method;
        /// "/api/v1/lists/{list}": a segment in braces matches any text, which becomes the parameter of that
        /// name.
        std::string pattern;
        /// The scope that the token of a request needs. It has no default: each route names its own.
        Scope scope;
        Handler handler;
        /// The parameters of the query that the route takes. Every route below "/api/v1" takes "line", too.
        std::vector<std::string> queryParameters{};
        /// The most bytes that the body of a request may have. A longer one than `kUsualBody` is read from
        /// clients with the token only.
        std::size_t maxBody = 64U * 1024U;
        /// True if it concerns all lines: a token for one line is refused.
        bool isOfAllLines = false;

        /// Throws `HttpError` 400 if the query of the request has a parameter that this route does not take,
        /// or one twice: a misspelt parameter must not widen a request. Routes outside "/api/v1" ignore the
        /// query.
        void checkQuery(const HttpRequest& request) const;
    };

    /// If several patterns match a path, the first one added serves all methods of the path: add "viewed"
    /// before "{entryId}".
    void add(Route route) { m_routes.push_back(std::move(route)); }

    /// Returns the route of a request and sets the request's parameters and route. The route of GET serves
    /// HEAD. nullptr if there is no route.
    [[nodiscard]] const Route* find(HttpRequest& request) const;
    /// The methods of the request's path, "GET, PUT"; empty if no pattern matches.
    [[nodiscard]] std::string methodsFor(const HttpRequest& request) const;
    [[nodiscard]] const std::vector<Route>& routes() const noexcept { return m_routes; }

private:
    using Parameters = std::map<std::string, std::string>;

    /// Empty if no pattern matches.
    [[nodiscard]] std::string patternFor(const std::vector<std::string>& path, Parameters& parameters) const;

    std::vector<Route> m_routes;
};

}  // namespace host
