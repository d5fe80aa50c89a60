#include "host/csta-wire/XmlText.h"

#include <cstddef>

namespace host {

namespace {

constexpr const char* kReplacement = "\xEF\xBF\xBD";

bool endsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

/// The length of the well-formed character that `bytes` begins with; 0 when it does not begin with one.
std::size_t characterLength(std::string_view bytes) noexcept {
    const auto at = [bytes](std::size_t i) {
        return static_cast<unsigned>(static_cast<unsigned char>(bytes[i]));
    };
    const unsigned lead = at(0);
    if (lead < 0x80) {
        return 1;
    }
    const std::size_t length = lead >= 0xC2 && lead <= 0xDF   ? 2
                               : lead >= 0xE0 && lead <= 0xEF ? 3
                               : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                              : 0;
    if (length == 0 || bytes.size() < length) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((at(i) & 0xC0U) != 0x80) {
            return 0;
        }
    }
    // The second byte decides on overlong forms, surrogates and what lies beyond U+10FFFF.
    const bool bad = (lead == 0xE0 && at(1) < 0xA0) || (lead == 0xED && at(1) > 0x9F) ||
                     (lead == 0xF0 && at(1) < 0x90) || (lead == 0xF4 && at(1) > 0x8F);
    return bad ? 0 : length;
}

/// As `characterLength`, but 0 also for what XML 1.0 has no place for.
std::size_t xmlCharacterLength(std::string_view bytes) noexcept {
    const auto lead = static_cast<unsigned char>(bytes[0]);
    if (lead < 0x20 && !isXmlBlank(bytes[0])) {
        return 0;
    }
    const std::size_t length = characterLength(bytes);
    const bool noncharacter =
        length == 3 && (bytes.substr(0, 3) == "\xEF\xBF\xBE" || bytes.substr(0, 3) == "\xEF\xBF\xBF");
    return noncharacter ? 0 : length;
}

std::string_view rootTag(std::string_view xml) noexcept {
    std::size_t at = 0;
    while ((at = xml.find('<', at)) != std::string_view::npos && at + 1 < xml.size()) {
        if (xml[at + 1] == '?') {
            at = xml.find("?>", at);
        } else if (xml.substr(at, 4) == "<!--") {
            at = xml.find("-->", at);
        } else if (xml[at + 1] != '!') {
            return xml.substr(at);
        } else {
            ++at;
        }
        if (at == std::string_view::npos) {
            break;
        }
    }
    return {};
}

}  // namespace

std::string_view trimmed(std::string_view text) noexcept {
    while (!text.empty() && isXmlBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isXmlBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

bool isXmlUtf8(std::string_view bytes) noexcept {
    while (!bytes.empty()) {
        const std::size_t length = xmlCharacterLength(bytes);
        if (length == 0) {
            return false;
        }
        bytes.remove_prefix(length);
    }
    return true;
}

std::string utf8FromLatin1(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 8);
    for (const char c : bytes) {
        const unsigned value = static_cast<unsigned char>(c);
        if (value < 0x80) {
            text.push_back(c);
        } else {
            text.push_back(static_cast<char>(0xC0U | value >> 6U));
            text.push_back(static_cast<char>(0x80U | (value & 0x3FU)));
        }
    }
    return text;
}

std::string escapedXml(std::string_view text) {
    std::string out;
    out.reserve(text.size() + text.size() / 8);
    while (!text.empty()) {
        const std::size_t length = xmlCharacterLength(text);
        switch (text.front()) {
            case '&': out += "&amp;"; break;
            case '<': out += "&lt;"; break;
            case '>': out += "&gt;"; break;
            case '"': out += "&quot;"; break;
            case '\r': out += "&#13;"; break;
            default: out += length == 0 ? std::string_view(kReplacement) : text.substr(0, length); break;
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return out;
}

std::string_view localPart(std::string_view name) noexcept {
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

std::string missingClosingTag(std::string_view xml) {
    const std::string_view root = rootTag(xml);
    const std::string_view end = trimmed(xml);
    if (root.size() < 2 || endsWith(end, "-->") || endsWith(end, "?>")) {
        return {};
    }
    const std::string_view name = root.substr(1, root.find_first_of(" \t\r\n/>", 1) - 1);
    const std::size_t tagEnd = root.find('>');
    const bool selfClosed = tagEnd != std::string_view::npos && root[tagEnd - 1] == '/' &&
                            root.data() + tagEnd + 1 == end.data() + end.size();
    std::string closing = "</" + std::string(name);
    const std::size_t lastTag = end.rfind('<');
    const bool closed =
        endsWith(end, ">") && trimmed(end.substr(lastTag, end.size() - lastTag - 1)) == closing;
    return selfClosed || closed ? std::string() : closing;
}

}  // namespace host
