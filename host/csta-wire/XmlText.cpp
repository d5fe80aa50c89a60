#include "host/csta-wire/XmlText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "platform/client-utils/Utf8.h"

namespace host {

namespace {

constexpr const char* kReplacement = "\xEF\xBF\xBD";

/// The characters 0x80 to 0x9F of Windows-1252.
constexpr std::array<std::uint32_t, 32> kWindows1252{
    0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD, 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178};

/// The length of the first character of `bytes`; 0 for ill-formed UTF-8 and for a character that XML 1.0
/// forbids.
std::size_t xmlCharacterLength(std::string_view bytes) noexcept {
    const utf8::Step step = utf8::next(bytes, 0);
    return utf8::isXmlCharacter(step.character) ? step.length : 0;
}

/// The length of the reference to a character with which `xml` begins, if XML forbids the character; else 0.
/// A reference without digits is one to the zero character.
std::size_t forbiddenReference(std::string_view xml) noexcept {
    if (xml.substr(0, 2) != "&#") {
        return 0;
    }
    const bool isHex = xml.size() > 2 && xml[2] == 'x';
    std::uint32_t character = 0;
    std::size_t at = isHex ? 3 : 2;
    for (; at < xml.size() && hexDigitValue(xml[at]) >= 0 && (isHex || xml[at] <= '9'); ++at) {
        character =
            std::min(character * (isHex ? 16 : 10) + static_cast<std::uint32_t>(hexDigitValue(xml[at])),
                     utf8::kInvalid >> 5U);
    }
    return at < xml.size() && xml[at] == ';' && !utf8::isXmlCharacter(character) ? at + 1 : 0;
}

/// The length of what XML forbids at the begin of `xml`; 0 if that is permitted, or no UTF-8.
std::size_t forbiddenLength(std::string_view xml, bool isCdata) noexcept {
    const utf8::Step step = utf8::next(xml, 0);
    if (step.character != utf8::kInvalid && !utf8::isXmlCharacter(step.character)) {
        return step.length;
    }
    return isCdata ? 0 : forbiddenReference(xml);
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

/// The text without the comments, processing instructions and blanks at its end.
std::string_view withoutMarkupAtEnd(std::string_view xml) noexcept {
    for (std::string_view before; before.size() != xml.size();) {
        before = xml;
        xml = trimmed(xml);
        const std::string_view begin = xml.ends_with("-->") ? "<!--" : xml.ends_with("?>") ? "<?" : "";
        if (!begin.empty()) {
            xml = xml.substr(0, xml.rfind(begin));
        }
    }
    return xml;
}

}  // namespace

int hexDigitValue(char c) noexcept {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const int lower = c | 0x20;
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

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
    return utf8::isXmlText(bytes);
}

std::string utf8FromLatin1(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 8);
    for (const char c : bytes) {
        const unsigned value = static_cast<unsigned char>(c);
        if (value < 0x80) {
            text.push_back(c);
        } else {
            utf8::append(text, value < 0xA0 ? kWindows1252[value - 0x80] : value);
        }
    }
    return text;
}

std::optional<std::string> withoutForbiddenCharacters(std::string_view xml) {
    if (isXmlUtf8(xml) && xml.find("&#") == std::string_view::npos) {
        return std::nullopt;
    }
    constexpr std::string_view kCdata = "<![CDATA[";
    constexpr std::string_view kCdataEnd = "]]>";
    std::string text;
    bool isReplaced = false;
    bool isCdata = false;
    text.reserve(xml.size());
    while (!xml.empty()) {
        isCdata =
            isCdata ? xml.substr(0, kCdataEnd.size()) != kCdataEnd : xml.substr(0, kCdata.size()) == kCdata;
        const std::size_t forbidden = forbiddenLength(xml, isCdata);
        text.push_back(forbidden > 0 ? ' ' : xml.front());
        isReplaced = isReplaced || forbidden > 0;
        xml.remove_prefix(std::max<std::size_t>(forbidden, 1));
    }
    return isReplaced ? std::optional(std::move(text)) : std::nullopt;
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
    if (root.size() < 2 || end.ends_with("-->") || end.ends_with("?>")) {
        return {};
    }
    const std::string_view name = root.substr(1, root.find_first_of(" \t\r\n/>", 1) - 1);
    const std::size_t tagEnd = root.find('>');
    const bool selfClosed = tagEnd != std::string_view::npos && root[tagEnd - 1] == '/' &&
                            root.data() + tagEnd + 1 == end.data() + end.size();
    std::string closing = "</" + std::string(name);
    const std::size_t lastTag = end.rfind('<');
    const bool closed =
        end.ends_with('>') && trimmed(end.substr(lastTag, end.size() - lastTag - 1)) == closing;
    return selfClosed || closed ? std::string() : closing;
}

bool hasClosedRoot(std::string_view xml) {
    const std::string_view elements = withoutMarkupAtEnd(xml);
    return rootTag(elements).size() >= 2 && missingClosingTag(elements).empty();
}

}  // namespace host
