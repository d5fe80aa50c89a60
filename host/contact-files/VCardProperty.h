#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// One property of a vCard: `item1.TEL;TYPE=work,pref:+49 30 1234`. A plain value.
struct VCardProperty {
    /// A parameter; one without a name ("TEL;CELL:") is a TYPE. Values have no quotation marks.
    struct Parameter {
        std::string name;
        std::vector<std::string> values;
    };

    /// Names are in upper case and without the group before them.
    std::string name;
    std::vector<Parameter> parameters;
    /// The value as written, with its escapes.
    std::string value;

    /// Parses an unfolded line of text; `std::nullopt` if it is no property.
    [[nodiscard]] static std::optional<VCardProperty> parse(std::string_view line);

    /// The first value of the parameter in lower case; empty if there is none.
    [[nodiscard]] std::string parameter(std::string_view parameterName) const;
    /// True if TYPE has the value. Requires: `type` is in lower case.
    [[nodiscard]] bool isOfType(std::string_view type) const;
    /// The preference among several properties: 1 is the highest; 101 if there is none.
    [[nodiscard]] int preference() const;

    /// The value as a text.
    [[nodiscard]] std::string text() const;
    /// The value as a list of texts separated by `separator` (";" or ","), empty ones included.
    [[nodiscard]] std::vector<std::string> texts(char separator) const;

    /// The inverse: a text with the escapes that a value needs.
    [[nodiscard]] static std::string escaped(std::string_view text);
};

}  // namespace host
