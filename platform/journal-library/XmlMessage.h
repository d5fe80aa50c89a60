#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <pugixml.hpp>

#include "platform/journal-library/XmlLimits.h"

namespace journalxml {

/// A parsed message or document. The only class that calls the parser, always after `isSafeXml`.
///
/// Names are compared without their prefix. One thread at a time. The nodes that it returns live as long as
/// it does. Internal to this library, since its interface shows the parser.
class XmlMessage {
public:
    XmlMessage() = default;

    /// Returns false, with the message empty, for a text that is refused.
    [[nodiscard]] bool parse(std::string_view text, std::size_t maxBytes = kMaxDocumentBytes);

    /// The outermost element; a null node if no text was parsed.
    [[nodiscard]] pugi::xml_node root() const { return m_document.document_element(); }

private:
    pugi::xml_document m_document;
};

/// The name without its prefix.
[[nodiscard]] std::string_view localName(const char* name) noexcept;
[[nodiscard]] bool isNamed(const pugi::xml_node& node, std::string_view name) noexcept;

/// The first child element of that name; a null node if there is none.
[[nodiscard]] pugi::xml_node childNamed(const pugi::xml_node& parent, std::string_view name) noexcept;
/// The next sibling element of that name after `node`.
[[nodiscard]] pugi::xml_node nextNamed(const pugi::xml_node& node, std::string_view name) noexcept;

/// The element's own text with the original bytes, without the text of inner elements; empty for a null node.
[[nodiscard]] std::string textOf(const pugi::xml_node& element);
/// The text of the first child of that name; empty if there is none.
[[nodiscard]] std::string textOfChild(const pugi::xml_node& parent, std::string_view name);

/// Reads a number or a boolean. Returns false, with `value` unchanged, if the text is none or does not fit.
template <typename Number>
[[nodiscard]] bool readNumber(const std::string& text, Number& value) noexcept;
[[nodiscard]] bool readBool(const std::string& text, bool& value);

}  // namespace journalxml
