#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// One property of a vCard: `item1.TEL;TYPE=work,pref:+49 30 1234`. A plain value.
struct VCardLine {
    /// A parameter; one that stands without a name ("TEL;CELL:") is a TYPE. Values are without quotation marks.
    struct Parameter {
        std::string name;
        std::vector<std::string> values;
    };

    /// Names are in capital letters and without the group before them.
    std::string name;
    std::vector<Parameter> parameters;
    /// As it stands, with its escapes.
    std::string value;

    /// Nothing when the line, unfolded already, is no property.
    [[nodiscard]] static std::optional<VCardLine> parse(std::string_view line);

    /// The first value of the parameter in small letters; empty when there is none.
    [[nodiscard]] std::string parameter(std::string_view parameterName) const;
    /// Whether TYPE has the value, given in small letters.
    [[nodiscard]] bool isOfType(std::string_view type) const;
    /// How much this one of several properties is preferred: 1 is the most; 101 when nothing is said.
    [[nodiscard]] int preference() const;

    /// The value as a text.
    [[nodiscard]] std::string text() const;
    /// The value as a list of texts that `separator` parts (";" or ","), empty ones included.
    [[nodiscard]] std::vector<std::string> texts(char separator) const;

    /// The way back: a text with the escapes that a value needs.
    [[nodiscard]] static std::string escaped(std::string_view text);
};

}  // namespace host
