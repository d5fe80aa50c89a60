#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <pugixml.hpp>

#include "platform/journal-library/XmlLimits.h"

namespace journalxml {

/// A parsed text of the vocabulary: the one place where the parser is called, always behind `isSafeXml`.
///
/// Names are compared without their prefix. One thread at a time; nodes that it hands out live as long as
/// it does. Only this library's sources include it, since it shows the parser.
class XmlMessage {
public:
    XmlMessage() = default;

    /// False for a text that is refused; the message is then empty.
    [[nodiscard]] bool parse(std::string_view text, std::size_t maxBytes = kMaxDocumentBytes);

    /// The outermost element; a null node when nothing was parsed.
    [[nodiscard]] pugi::xml_node root() const { return m_document.document_element(); }

private:
    pugi::xml_document m_document;
};

/// The name behind its prefix.
[[nodiscard]] std::string_view localName(const char* name) noexcept;
[[nodiscard]] bool isNamed(const pugi::xml_node& node, std::string_view name) noexcept;

/// The first child element of that name; a null node when there is none.
[[nodiscard]] pugi::xml_node childNamed(const pugi::xml_node& parent, std::string_view name) noexcept;
/// The next sibling element of that name behind `node`.
[[nodiscard]] pugi::xml_node nextNamed(const pugi::xml_node& node, std::string_view name) noexcept;

/// The element's own text with the original bytes; empty for a null node. Elements inside it are passed
/// over.
[[nodiscard]] std::string textOf(const pugi::xml_node& element);
/// The text of the first child of that name; empty when there is none.
[[nodiscard]] std::string textOfChild(const pugi::xml_node& parent, std::string_view name);

/// The text as a number or a boolean; `value` is unchanged, and the answer false, when it is none or does
/// not fit.
template <typename Number>
[[nodiscard]] bool readNumber(const std::string& text, Number& value) noexcept;
[[nodiscard]] bool readBool(const std::string& text, bool& value);

}  // namespace journalxml
