#include "host/framework/OperaTextAdapter.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/framework/Method.h"

namespace host {
namespace {

constexpr std::array<std::pair<std::string_view, Method::Kind>, 3> kKinds{{
    {"request", Method::Kind::eRequest},
    {"response", Method::Kind::eResponse},
    {"notification", Method::Kind::eNotification},
}};

constexpr std::array<std::pair<std::string_view, Method::ParameterKind>, 2> kParameterKinds{{
    {"in", Method::ParameterKind::eIn},
    {"out", Method::ParameterKind::eOut},
}};

template <typename Table, typename Kind>
std::string_view wordOf(const Table& table, Kind kind) {
    for (const auto& [word, value] : table) {
        if (value == kind) {
            return word;
        }
    }
    return {};
}

template <typename Table>
auto kindOf(const Table& table, std::string_view wanted) {
    using Kind = typename Table::value_type::second_type;
    for (const auto& [word, value] : table) {
        if (word == wanted) {
            return std::optional<Kind>(value);
        }
    }
    return std::optional<Kind>();
}

void appendField(std::string& text, std::string_view field) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    for (const char character : field) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte <= 0x20 || byte == 0x7F || byte == '%') {
            text += '%';
            text += kDigits[byte >> 4U];
            text += kDigits[byte & 0x0FU];
        } else {
            text += character;
        }
    }
}

void appendLine(std::string& text, std::string_view kind, std::string_view second, std::string_view third) {
    text += kind;
    text += ' ';
    appendField(text, second);
    text += ' ';
    appendField(text, third);
}

std::optional<unsigned> digitOf(char character) {
    if (character >= '0' && character <= '9') {
        return static_cast<unsigned>(character - '0');
    }
    if (character >= 'A' && character <= 'F') {
        return static_cast<unsigned>(character - 'A') + 10;
    }
    if (character >= 'a' && character <= 'f') {
        return static_cast<unsigned>(character - 'a') + 10;
    }
    return std::nullopt;
}

std::optional<std::string> readField(std::string_view text) {
    std::string field;
    field.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '%') {
            field += text[at];
            continue;
        }
        const std::optional<unsigned> high = at + 2 < text.size() ? digitOf(text[at + 1]) : std::nullopt;
        const std::optional<unsigned> low = high ? digitOf(text[at + 2]) : std::nullopt;
        if (!low) {
            return std::nullopt;
        }
        field += static_cast<char>(*high * 16 + *low);
        at += 2;
    }
    return field;
}

struct TextLine {
    std::string_view kind;
    std::string second;
    std::string third;
};

/// Removes the first text line from `text`. Returns std::nullopt if it does not have exactly three fields.
std::optional<TextLine> takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);

    const std::size_t first = line.find(' ');
    const std::size_t second = first == std::string_view::npos ? first : line.find(' ', first + 1);
    if (second == std::string_view::npos || line.find(' ', second + 1) != std::string_view::npos) {
        return std::nullopt;
    }
    std::optional<std::string> name = readField(line.substr(first + 1, second - first - 1));
    std::optional<std::string> value = readField(line.substr(second + 1));
    if (!name || !value) {
        return std::nullopt;
    }
    return TextLine{line.substr(0, first), std::move(*name), std::move(*value)};
}

}  // namespace

bool OperaTextAdapter::decode(const std::string& text, Method& method) const {
    std::string_view rest = text;
    std::optional<TextLine> line = takeLine(rest);
    const auto kind = line ? kindOf(kKinds, line->kind) : std::nullopt;
    if (!kind) {
        return false;
    }
    Method read(std::move(line->second), *kind, std::move(line->third));
    while (!rest.empty()) {
        line = takeLine(rest);
        const auto parameterKind = line ? kindOf(kParameterKinds, line->kind) : std::nullopt;
        if (!parameterKind) {
            return false;
        }
        read.addStringParameter(std::move(line->second), std::move(line->third), *parameterKind);
    }
    method = std::move(read);
    return true;
}

std::string OperaTextAdapter::encode(const Method& method) const {
    std::string text;
    appendLine(text, wordOf(kKinds, method.getKind()), method.getName(), method.getSource());
    for (const Method::StringParameter& parameter : method.getStringParameters()) {
        text += '\n';
        appendLine(text, wordOf(kParameterKinds, parameter.kind), parameter.name, parameter.value);
    }
    return text;
}

}  // namespace host
