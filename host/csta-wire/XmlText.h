#pragma once

#include <string>
#include <string_view>

namespace host {

/// Text as it goes into and comes out of CSTA XML. Pure functions; any thread.

[[nodiscard]] constexpr bool isXmlBlank(char c) noexcept {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

[[nodiscard]] std::string_view trimmed(std::string_view text) noexcept;

/// True for well-formed UTF-8 (no overlong forms, no surrogates) without the control characters that XML forbids.
[[nodiscard]] bool isXmlUtf8(std::string_view bytes) noexcept;

[[nodiscard]] std::string utf8FromLatin1(std::string_view bytes);

/// `text` with the markup characters escaped. Bytes that XML cannot carry become U+FFFD.
[[nodiscard]] std::string escapedXml(std::string_view text);

/// The local part of a possibly prefixed name.
[[nodiscard]] std::string_view localPart(std::string_view name) noexcept;

/// Looks at a text from outside, without parsing it: the beginning of the closing tag ("</DeliveredEvent") that it
/// should end with but does not. Empty when the text ends as it should, or does not begin like XML at all.
[[nodiscard]] std::string missingClosingTag(std::string_view xml);

}  // namespace host
