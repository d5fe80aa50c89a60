#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/http/messages/HttpRequest.h"
#include "host/http/messages/HttpResponse.h"

namespace host {

/// The origins of other pages that may use the API (cross-origin resource sharing). Such a page sends a token
/// or a ticket; cookies are not for it. Thread-safe.
class ForeignOrigins {
public:
    /// Each as `originOf` returns it.
    explicit ForeignOrigins(std::vector<std::string> allowed) : m_allowed(std::move(allowed)) {}

    /// True if the request comes from a page of one of the origins.
    [[nodiscard]] bool isAllowed(const HttpRequest& request) const;
    /// The response to a browser that asks if a page may send a request; std::nullopt for any other request.
    [[nodiscard]] std::optional<HttpResponse> preflight(const HttpRequest& request) const;
    /// Lets the page read the response, if it may.
    void addHeaders(const HttpRequest& request, HttpResponse& response) const;

private:
    const std::vector<std::string> m_allowed;
};

}  // namespace host
