#include "host/contact-files/VCardProperty.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

#include "host/text-files/FileText.h"

namespace host {
namespace {

constexpr int kNoPreference = 101;

/// The position of the first of `ends` outside of quotation marks; the length of the text if there is none.
std::size_t endOutsideQuotes(std::string_view text, std::size_t from, std::string_view ends) {
    bool quoted = false;
    for (std::size_t at = from; at < text.size(); ++at) {
        if (text[at] == '"') {
            quoted = !quoted;
        } else if (!quoted && ends.find(text[at]) != std::string_view::npos) {
            return at;
        }
    }
    return text.size();
}

std::string withoutQuotes(std::string_view text) {
    std::string bare(stripped(text));
    bare.erase(std::remove(bare.begin(), bare.end(), '"'), bare.end());
    return bare;
}

VCardProperty::Parameter parameterFrom(std::string_view text) {
    VCardProperty::Parameter parameter;
    const std::size_t equals = text.find('=');
    const bool named = equals != std::string_view::npos;
    parameter.name = named ? upper(stripped(text.substr(0, equals))) : "TYPE";
    // Some writers quote the whole list of types: commas separate values there, too.
    std::string_view values = named ? text.substr(equals + 1) : text;
    for (;;) {
        const std::size_t comma = values.find(',');
        parameter.values.push_back(withoutQuotes(values.substr(0, comma)));
        if (comma == std::string_view::npos) {
            return parameter;
        }
        values.remove_prefix(comma + 1);
    }
}

/// The character of an escape after its backslash.
char unescaped(char character) {
    return character == 'n' || character == 'N' ? '\n' : character;
}

}  // namespace

std::optional<VCardProperty> VCardProperty::parse(std::string_view line) {
    const std::size_t colon = endOutsideQuotes(line, 0, ":");
    if (colon == line.size()) {
        return std::nullopt;
    }
    VCardProperty property;
    std::size_t end = endOutsideQuotes(line, 0, ";:");
    const std::string_view name = line.substr(0, end);
    property.name = upper(stripped(name.substr(name.rfind('.') + 1)));
    while (end < colon) {
        const std::size_t begin = end + 1;
        end = endOutsideQuotes(line, begin, ";:");
        property.parameters.push_back(parameterFrom(line.substr(begin, end - begin)));
    }
    property.value = line.substr(colon + 1);
    return property.name.empty() ? std::nullopt : std::optional(std::move(property));
}

std::string VCardProperty::parameter(std::string_view parameterName) const {
    for (const Parameter& each : parameters) {
        if (each.name == parameterName) {
            return lower(each.values.front());
        }
    }
    return {};
}

bool VCardProperty::isOfType(std::string_view type) const {
    return std::any_of(parameters.begin(), parameters.end(), [type](const Parameter& each) {
        return each.name == "TYPE" && std::any_of(each.values.begin(), each.values.end(),
                                                  [type](const auto& word) { return lower(word) == type; });
    });
}

int VCardProperty::preference() const {
    const std::string text = parameter("PREF");
    int rank = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), rank).ec == std::errc() && rank >= 1) {
        return std::min(rank, kNoPreference);
    }
    return isOfType("pref") ? 1 : kNoPreference;
}

std::string VCardProperty::text() const {
    return texts('\0').front();
}

std::vector<std::string> VCardProperty::texts(char separator) const {
    std::vector<std::string> parts(1);
    for (std::size_t at = 0; at < value.size(); ++at) {
        if (value[at] == '\\' && at + 1 < value.size()) {
            parts.back() += unescaped(value[++at]);
        } else if (separator != '\0' && value[at] == separator) {
            parts.emplace_back();
        } else {
            parts.back() += value[at];
        }
    }
    std::transform(parts.begin(), parts.end(), parts.begin(),
                   [](const std::string& part) { return cleaned(part); });
    return parts;
}

std::string VCardProperty::escaped(std::string_view text) {
    std::string value;
    for (const char each : text) {
        if (each == '\n') {
            value += "\\n";
            continue;
        }
        if (each == '\\' || each == ',' || each == ';') {
            value += '\\';
        }
        value += each;
    }
    return value;
}

}  // namespace host
