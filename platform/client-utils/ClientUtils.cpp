#include "platform/client-utils/ClientUtils.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/client-utils/Utf8.h"

namespace {

// 256 private-use characters that stand for one byte each.
constexpr std::uint32_t kFirstByteCharacter = 0xee00U;

bool standsForByte(std::uint32_t character) noexcept {
    return character >= kFirstByteCharacter && character <= kFirstByteCharacter + 0xffU;
}

void appendAsByteCharacters(std::string& out, std::string_view bytes) {
    for (const char byte : bytes) {
        utf8::append(out, kFirstByteCharacter + static_cast<unsigned char>(byte));
    }
}

/// True for the characters of ASCII that are written as they are.
constexpr bool isPlain(char character) noexcept {
    return character >= ' ' && character < '\x7f' && character != '&' && character != '<' &&
           character != '>' && character != '"' && character != '\'';
}

const char* referenceFor(std::uint32_t character) noexcept {
    switch (character) {
        case '&': return "&amp;";
        case '<': return "&lt;";
        case '>': return "&gt;";
        case '"': return "&quot;";
        case '\'': return "&apos;";
        case '\r': return "&#13;";
        default: return nullptr;
    }
}

}  // namespace

std::string ClientUtils::escapeXMLString(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    appendEscapedXml(out, text);
    return out;
}

void ClientUtils::appendEscapedXml(std::string& out, std::string_view text) {
    std::size_t at = 0;
    while (at < text.size()) {
        const auto plain = static_cast<std::size_t>(
            std::find_if_not(text.begin() + static_cast<std::ptrdiff_t>(at), text.end(), isPlain) -
            text.begin());
        out += text.substr(at, plain - at);
        at = plain;
        if (at == text.size()) {
            return;
        }
        const utf8::Step step = utf8::next(text, at);
        const std::string_view bytes = text.substr(at, step.length);
        if (const char* const reference = referenceFor(step.character)) {
            out += reference;
        } else if (!utf8::isXmlCharacter(step.character) || standsForByte(step.character)) {
            appendAsByteCharacters(out, bytes);
        } else {
            out += bytes;
        }
        at += step.length;
    }
}

std::string ClientUtils::unescapeText(const std::string& text) {
    // All of them begin with the same byte; most texts hold none.
    if (text.find('\xee') == std::string::npos) {
        return text;
    }
    std::string out;
    out.reserve(text.size());
    std::size_t at = 0;
    while (at < text.size()) {
        const utf8::Step step = utf8::next(text, at);
        if (standsForByte(step.character)) {
            out += static_cast<char>(step.character - kFirstByteCharacter);
        } else {
            out.append(text, at, step.length);
        }
        at += step.length;
    }
    return out;
}

std::string ClientUtils::itos(unsigned value) {
    return std::to_string(value);
}

std::string ClientUtils::itos(int value) {
    return std::to_string(value);
}

bool ClientUtils::isStringBool(const std::string& text) {
    return text == "true" || text == "false" || text == "1" || text == "0";
}

bool ClientUtils::stob(const std::string& text) {
    return text == "true" || text == "1";
}
