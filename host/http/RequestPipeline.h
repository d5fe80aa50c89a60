#pragma once

#include <functional>
#include <optional>

#include "host/http/Authenticator.h"
#include "host/http/PageFiles.h"
#include "host/http/RequestMetrics.h"
#include "host/http/messages/Router.h"

namespace host {

class ServedLinesIfc;

/// The checks before the handler of every request and the headers of every response. The sequence:
///
///  1. host and origin (`Authenticator`), target, size of the body;
///  2. sign-in with "/?token=TOKEN", or a file of the page;
///  3. token, line, route and its scope;
///  4. the handler; an exception becomes an error response;
///  5. compression of long JSON, and the headers that every response has.
///
/// The line of a request is that of "/api/v1/lines/DEVICE/..." or of the parameter `line`, else the line that
/// its token is for, else the first one. A token for one line gets the same response for every other
/// one, whether there is such a line or not.
///
/// Thread-safe after the routes are added.
class RequestPipeline {
public:
    using Listener = std::function<void(const RequestReport&)>;

    /// All are borrowed and outlive the pipeline. `router` has the routes that belong to no line. `listener`
    /// is called after each request, concurrently; it may be empty.
    RequestPipeline(const Authenticator& authenticator, const Router& router, const PageFiles& page,
                    ServedLinesIfc& lines, Listener listener = {})
        : m_authenticator(authenticator),
          m_router(router),
          m_page(page),
          m_lines(lines),
          m_listener(std::move(listener)) {}

    /// Does not throw: an exception of a handler becomes an error response.
    [[nodiscard]] HttpResponse handle(HttpRequest request) const;

    /// True if the body of this request may have more bytes than is usual: it has the token, and its route
    /// takes as many.
    [[nodiscard]] bool mayBeLong(HttpRequest request) const;

private:
    [[nodiscard]] HttpResponse process(HttpRequest& request) const;
    [[nodiscard]] HttpResponse route(HttpRequest& request) const;
    [[nodiscard]] HttpResponse routeOfLine(HttpRequest& request) const;
    /// Checks what all routes have in common, and carries the request out.
    [[nodiscard]] HttpResponse carryOut(const Router& router, const Router::Route* found,
                                        const HttpRequest& request) const;

    const Authenticator& m_authenticator;
    const Router& m_router;
    const PageFiles& m_page;
    ServedLinesIfc& m_lines;
    const Listener m_listener;
};

}  // namespace host
