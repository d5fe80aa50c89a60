#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// One request as the handlers see it. A plain value.
struct HttpRequest {
    /// "GET", in capital letters.
    std::string method;
    /// As the client sent it: "/api/v1/lists/missed?limit=5".
    std::string target;
    /// By name in small letters; the values of a name that came twice are joined with ", ".
    std::map<std::string, std::string> headers;
    std::string body;

    // What `readTarget` finds in the target, percent escapes resolved.
    std::vector<std::string> path;
    std::map<std::string, std::string> query;
    /// The values of a route's placeholders; the router fills them in.
    std::map<std::string, std::string> parameters;

    /// False for a target that nobody asks for in good faith: not absolute, a broken escape, a control character, "." or
    /// "..", or an escaped "/" in a segment.
    [[nodiscard]] bool readTarget();

    // Each empty when there is none of that name.
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

}  // namespace host
