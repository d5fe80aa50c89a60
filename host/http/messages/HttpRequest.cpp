#include "host/http/messages/HttpRequest.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <optional>
#include <utility>

namespace host {
namespace {

std::optional<char> escapedByte(std::string_view digits) {
    unsigned char byte = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
    if (digits.size() != 2 || result.ec != std::errc{} || result.ptr != digits.data() + digits.size()) {
        return std::nullopt;
    }
    return static_cast<char>(byte);
}

bool isControl(char letter) {
    return static_cast<unsigned char>(letter) < 0x20 || letter == 0x7F;
}

std::optional<std::string> decoded(std::string_view text, bool plusIsBlank) {
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        char letter = text[at];
        if (letter == '%') {
            const auto byte = escapedByte(text.substr(at + 1, 2));
            if (!byte) {
                return std::nullopt;
            }
            letter = *byte;
            at += 2;
        } else if (letter == '+' && plusIsBlank) {
            letter = ' ';
        }
        if (isControl(letter)) {
            return std::nullopt;
        }
        plain += letter;
    }
    return plain;
}

/// Splits `text` at each separator.
std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(end + 1);
    }
}

bool isTraversal(const std::string& segment) {
    return segment == "." || segment == ".." || segment.find_first_of("/\\") != std::string::npos;
}

}  // namespace

bool HttpRequest::readTarget() {
    const std::string_view whole = target;
    const std::size_t question = whole.find('?');
    const std::string_view pathText = whole.substr(0, question);
    if (pathText.empty() || pathText.front() != '/') {
        return false;
    }
    path.clear();
    if (pathText != "/") {
        for (const std::string_view part : split(pathText.substr(1), '/')) {
            auto segment = decoded(part, false);
            if (!segment || isTraversal(*segment)) {
                return false;
            }
            path.push_back(std::move(*segment));
        }
    }
    query.clear();
    repeatedParameter.clear();
    return question == std::string_view::npos || readQuery(whole.substr(question + 1));
}

bool HttpRequest::readQuery(std::string_view text) {
    for (const std::string_view part : split(text, '&')) {
        if (part.empty()) {
            continue;
        }
        const std::size_t equals = part.find('=');
        auto name = decoded(part.substr(0, equals), true);
        auto value =
            decoded(equals == std::string_view::npos ? std::string_view() : part.substr(equals + 1), true);
        if (!name || !value) {
            return false;
        }
        if (!query.try_emplace(*name, std::move(*value)).second) {
            repeatedParameter = *name;
        }
    }
    return true;
}

bool HttpRequest::hasValidHeaderNames() const {
    constexpr std::string_view kTokens = "abcdefghijklmnopqrstuvwxyz0123456789!#$%&'*+-.^_`|~";
    return std::all_of(headers.begin(), headers.end(), [kTokens](const auto& header) {
        return header.first.find_first_not_of(kTokens) == std::string::npos;
    });
}

const std::string& HttpRequest::valueIn(const std::map<std::string, std::string>& values,
                                        const std::string& name) {
    static const std::string kNone;
    const auto found = values.find(name);
    return found == values.end() ? kNone : found->second;
}

std::string percentEncoded(std::string_view segment) {
    std::string encoded;
    for (const char each : segment) {
        const auto byte = static_cast<unsigned char>(each);
        if (std::isalnum(byte) != 0 || std::string_view("-._~").find(each) != std::string_view::npos) {
            encoded += each;
        } else {
            constexpr std::string_view kHex = "0123456789ABCDEF";
            encoded += {'%', kHex[byte >> 4U], kHex[byte & 0x0FU]};
        }
    }
    return encoded;
}

}  // namespace host
