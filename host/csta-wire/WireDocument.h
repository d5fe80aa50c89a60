#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <pugixml.hpp>

namespace host {

/// The kind of a message, derived from its root element.
enum class MessageKind {
    eEvent,     ///< ...Event, has no response
    eResponse,  ///< ...Response
    eError,     ///< CSTAErrorCode, a negative response
    eNotice,    ///< ApplicationSessionTerminated: neither an event of a monitor nor a request
    eForeign,   ///< not CSTA (keep-alives, presence); ignored
    eRequest,   ///< any other message; requires a response
};

[[nodiscard]] MessageKind messageKindOf(std::string_view rootName) noexcept;

/// One parsed message. Elements are found by local name, in any order, because peers differ in prefixes, name
/// spaces and order; unknown elements are ignored. Movable. Not thread-safe.
///
/// `parse` refuses a text that is longer than a frame, is no XML, is nested deeper than `kMaxDepth`, or has
/// an unknown encoding. Invalid UTF-8 and text that is declared as ISO 8859-1 or Windows-1252 are converted
/// from Windows-1252. Characters that XML forbids, and references to them, become spaces: a control
/// character in a name must not lose the call.
class WireDocument {
public:
    static constexpr std::size_t kMaxDepth = 64;

    /// Returns `std::nullopt` and sets `fault` to the reason if the text is refused.
    [[nodiscard]] static std::optional<WireDocument> parse(std::string_view xml, std::string& fault);

    [[nodiscard]] pugi::xml_node root() const { return m_document->document_element(); }
    /// The root's local name.
    [[nodiscard]] std::string_view name() const;
    [[nodiscard]] MessageKind kind() const { return messageKindOf(name()); }
    /// True if characters that XML forbids have been replaced.
    [[nodiscard]] bool hasReplacements() const noexcept { return m_hasReplacements; }

private:
    std::unique_ptr<pugi::xml_document> m_document;
    bool m_hasReplacements = false;
};

/// The first child element with that local name; a null node if there is none. A null node has no children.
[[nodiscard]] pugi::xml_node childNamed(pugi::xml_node parent, std::string_view name);
[[nodiscard]] std::string_view localName(pugi::xml_node node);
/// The trimmed text of a child element, at most `limits::kNameBytes` of it; empty if it is missing.
[[nodiscard]] std::string childText(pugi::xml_node parent, std::string_view name);
/// The trimmed text of the node itself or of the first descendant that has one, of any length.
[[nodiscard]] std::string firstText(pugi::xml_node node);
/// True for "true" and "1".
[[nodiscard]] bool isTrue(std::string_view text) noexcept;

}  // namespace host
