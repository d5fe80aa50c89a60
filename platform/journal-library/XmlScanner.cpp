#include "platform/journal-library/XmlScanner.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <system_error>

#include "platform/client-utils/Utf8.h"
#include "platform/journal-library/XmlLimits.h"

namespace journalxml {
namespace {

constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";

bool isSpace(char character) noexcept {
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

bool isNumericReference(std::string_view digits) noexcept {
    int base = 10;
    if (!digits.empty() && digits.front() == 'x') {
        base = 16;
        digits.remove_prefix(1);
    }
    std::uint32_t character = 0;
    const char* const end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, character, base);
    return result.ec == std::errc{} && result.ptr == end && utf8::isXmlCharacter(character);
}

bool isReference(std::string_view name) noexcept {
    if (!name.empty() && name.front() == '#') {
        return isNumericReference(name.substr(1));
    }
    return name == "lt" || name == "gt" || name == "amp" || name == "quot" || name == "apos";
}

}  // namespace

XmlScanner::Markup XmlScanner::next() noexcept {
    if (!passText()) {
        return Markup::eError;
    }
    const std::string_view rest = m_text.substr(m_at);
    if (rest.empty()) {
        return Markup::eEnd;
    }
    if (rest.substr(0, 4) == "<!--") {
        return passUntil("-->", m_at + 4, Markup::eAside);
    }
    if (rest.substr(0, 9) == "<![CDATA[") {
        return passUntil("]]>", m_at + 9, Markup::eCharacterData);
    }
    if (rest.substr(0, 2) == "<!") {
        return Markup::eError;
    }
    if (rest.substr(0, 2) == "<?") {
        return passUntil("?>", m_at + 2, Markup::eAside);
    }
    if (rest.substr(0, 2) == "</") {
        return passUntil(">", m_at + 2, Markup::eEndTag);
    }
    return passTag();
}

bool XmlScanner::passText() noexcept {
    m_passedText = false;
    while (m_at < m_text.size() && m_text[m_at] != '<') {
        if (m_text[m_at] == '&') {
            if (!passReference()) {
                return false;
            }
            m_passedText = true;
            continue;
        }
        m_passedText = m_passedText || !isSpace(m_text[m_at]);
        ++m_at;
    }
    return true;
}

bool XmlScanner::passReference() noexcept {
    // Allows any usual number of leading zeros; bounds the cost of a lone ampersand.
    constexpr std::size_t kLongest = 32;
    const std::size_t length = m_text.substr(m_at, kLongest).find(';');
    if (length == std::string_view::npos || !isReference(m_text.substr(m_at + 1, length - 1))) {
        return false;
    }
    m_at += length + 1;
    return true;
}

XmlScanner::Markup XmlScanner::passUntil(std::string_view end, std::size_t from, Markup found) noexcept {
    const std::size_t at = m_text.find(end, from);
    if (at == std::string_view::npos) {
        return Markup::eError;
    }
    m_at = at + end.size();
    return found;
}

XmlScanner::Markup XmlScanner::passTag() noexcept {
    char quote = '\0';
    ++m_at;
    while (m_at < m_text.size()) {
        const char character = m_text[m_at];
        if (character == '<') {
            return Markup::eError;
        }
        if (character == '&') {
            if (quote == '\0' || !passReference()) {
                return Markup::eError;
            }
            continue;
        }
        ++m_at;
        if (quote != '\0') {
            quote = character == quote ? '\0' : quote;
        } else if (character == '"' || character == '\'') {
            quote = character;
        } else if (character == '>') {
            return m_text[m_at - 2] == '/' ? Markup::eEmptyTag : Markup::eStartTag;
        }
    }
    return Markup::eError;
}

bool isSafeXml(std::string_view text, std::size_t maxBytes) noexcept {
    if (text.size() > maxBytes || !utf8::isXmlText(text)) {
        return false;
    }
    const bool marked = text.substr(0, kByteOrderMark.size()) == kByteOrderMark;
    XmlScanner scanner(text, marked ? kByteOrderMark.size() : 0);
    std::size_t depth = 0;
    std::size_t roots = 0;
    for (std::size_t markups = 0; markups <= kMaxMarkups; ++markups) {
        const XmlScanner::Markup markup = scanner.next();
        const bool outside = depth == 0;
        if (outside && (scanner.passedText() || markup == XmlScanner::Markup::eCharacterData)) {
            return false;
        }
        switch (markup) {
            case XmlScanner::Markup::eStartTag: ++depth; [[fallthrough]];
            case XmlScanner::Markup::eEmptyTag:
                roots += outside ? 1 : 0;
                if (roots > 1 || depth > kMaxDepth) {
                    return false;
                }
                break;
            case XmlScanner::Markup::eEndTag:
                if (outside) {
                    return false;
                }
                --depth;
                break;
            case XmlScanner::Markup::eAside:
            case XmlScanner::Markup::eCharacterData: break;
            case XmlScanner::Markup::eEnd: return outside && roots == 1;
            case XmlScanner::Markup::eError: return false;
        }
    }
    return false;
}

std::size_t elementEnd(std::string_view text, std::size_t begin) noexcept {
    XmlScanner scanner(text, begin);
    std::size_t depth = 0;
    while (true) {
        switch (scanner.next()) {
            case XmlScanner::Markup::eStartTag: ++depth; break;
            case XmlScanner::Markup::eEndTag: depth -= depth > 0 ? 1 : 0; break;
            case XmlScanner::Markup::eEnd:
            case XmlScanner::Markup::eError: return text.size();
            default: break;
        }
        if (depth == 0) {
            return scanner.position();
        }
    }
}

}  // namespace journalxml
