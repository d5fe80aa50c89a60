#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/access/Access.h"

namespace host {

/// A request as the handlers get it. A plain value.
struct HttpRequest {
    /// "GET", in capital letters.
    std::string method;
    /// As the client sent it: "/api/v1/lists/missed?limit=5".
    std::string target;
    /// By name in lower case; the values of a repeated name are joined with ", ".
    std::map<std::string, std::string> headers;
    std::string body;

    // Set by `readTarget`, with percent escapes decoded.
    std::vector<std::string> path;
    /// Of a repeated parameter, the first value.
    std::map<std::string, std::string> query;
    /// A parameter that the query has more than once; empty if there is none.
    std::string repeatedParameter;
    /// The values of a route's placeholders; set by the router.
    std::map<std::string, std::string> parameters;
    /// The pattern of its route; set by the router. "page" for a file of the page, "other" without a route.
    std::string_view route = "other";
    /// The rights that its token grants; set by the pipeline.
    Access access;
    /// The request is about one line only: it names it, or its token is for it; set by the pipeline.
    bool isOfOneLine = false;

    /// Parses `target`. False for an invalid target: not absolute, a broken escape, a control character, "."
    /// or "..", or an escaped "/" in a segment.
    [[nodiscard]] bool readTarget();

    /// True if the names of all headers are tokens (RFC 9110); the HTTP library accepts other ones, too.
    [[nodiscard]] bool hasValidHeaderNames() const;

    // Each returns an empty text for an unknown name.
    [[nodiscard]] const std::string& header(const std::string& name) const { return valueIn(headers, name); }
    [[nodiscard]] const std::string& queryValue(const std::string& name) const {
        return valueIn(query, name);
    }
    [[nodiscard]] const std::string& parameter(const std::string& name) const {
        return valueIn(parameters, name);
    }

private:
    [[nodiscard]] static const std::string& valueIn(const std::map<std::string, std::string>& values,
                                                    const std::string& name);
    [[nodiscard]] bool readQuery(std::string_view text);
};

/// A segment of a path, with percent escapes where it needs them.
[[nodiscard]] std::string percentEncoded(std::string_view segment);

}  // namespace host
