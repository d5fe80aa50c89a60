#pragma once

#include <optional>
#include <string>

#include "host/http/Authenticator.h"
#include "host/http/PageFiles.h"
#include "host/http/Router.h"

namespace host {

/// What every request goes through before and behind its handler: where it comes from, its size, its route, its token, its
/// line; and the headers that every answer has. Threads: any, once the routes are added.
class RequestPipeline {
public:
    /// All is borrowed and outlives the road. `line` is the only line there is.
    RequestPipeline(const Authenticator& authenticator, const Router& router, const PageFiles& page,
                    std::string line)
        : m_authenticator(authenticator), m_router(router), m_page(page), m_line(std::move(line)) {}

    /// Never throws: whatever goes wrong is an error answer.
    [[nodiscard]] HttpResponse handle(HttpRequest request) const;

private:
    [[nodiscard]] HttpResponse process(HttpRequest& request) const;
    [[nodiscard]] HttpResponse route(HttpRequest& request) const;

    const Authenticator& m_authenticator;
    const Router& m_router;
    const PageFiles& m_page;
    const std::string m_line;
};

}  // namespace host
