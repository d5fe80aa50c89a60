#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Text functions for reading and writing CSTA XML. Pure functions, thread-safe.

[[nodiscard]] constexpr bool isXmlBlank(char c) noexcept {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

/// The value of a hexadecimal digit; -1 for any other character.
[[nodiscard]] int hexDigitValue(char c) noexcept;

[[nodiscard]] std::string_view trimmed(std::string_view text) noexcept;

/// True for well-formed UTF-8 (no overlong forms, no surrogates) without the control characters that XML
/// forbids.
[[nodiscard]] bool isXmlUtf8(std::string_view bytes) noexcept;

/// Reads 0x80 to 0x9F, which are control characters in ISO 8859-1, as Windows-1252.
[[nodiscard]] std::string utf8FromLatin1(std::string_view bytes);

/// `xml` with a space in place of each character, and each reference to a character, that XML forbids;
/// `std::nullopt` if it has none. Bytes that are no UTF-8 stay; what looks like a reference in a CDATA
/// section is text.
[[nodiscard]] std::optional<std::string> withoutForbiddenCharacters(std::string_view xml);

/// `text` with the markup characters escaped. Bytes that XML forbids become U+FFFD.
[[nodiscard]] std::string escapedXml(std::string_view text);

/// The local part of a possibly prefixed name.
[[nodiscard]] std::string_view localPart(std::string_view name) noexcept;

/// The beginning of the root's closing tag ("</DeliveredEvent") if the text does not end with it. Empty if it
/// does, or if the text does not begin like XML. Does not parse the text.
[[nodiscard]] std::string missingClosingTag(std::string_view xml);

/// True if the text has a root element, and ends with its closing tag or with comments and processing
/// instructions after it. Does not parse the text.
[[nodiscard]] bool hasClosedRoot(std::string_view xml);

}  // namespace host
