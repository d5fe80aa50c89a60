#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <pugixml.hpp>

namespace host {

/// What a message is for, as its root element tells.
enum class MessageKind {
    eEvent,     ///< ...Event, never answered
    eResponse,  ///< ...Response
    eError,     ///< CSTAErrorCode, the other answer
    eNotice,    ///< ApplicationSessionTerminated: no event of a monitor, and not answered
    eForeign,   ///< shares the link but is not CSTA (keep-alives, presence); ignored
    eRequest,   ///< everything else; wants an answer
};

[[nodiscard]] MessageKind messageKindOf(std::string_view rootName) noexcept;

/// One parsed message. Elements are found by their local names, in any order, unknown ones between them: peers
/// differ in prefixes, name spaces and order. Movable; used by one thread at a time.
///
/// `parse` refuses what could hurt later: a size beyond a frame, text that XML cannot carry, references to the zero
/// character, nesting deeper than `kMaxDepth`, encodings that it does not know. Bytes that are not UTF-8 although they
/// should be are read as ISO 8859-1, as is what declares itself so.
class WireDocument {
public:
    static constexpr std::size_t kMaxDepth = 64;

    /// Nothing when the text is refused; `fault` then says why.
    [[nodiscard]] static std::optional<WireDocument> parse(std::string_view xml, std::string& fault);

    [[nodiscard]] pugi::xml_node root() const { return m_document->document_element(); }
    /// The root's local name.
    [[nodiscard]] std::string_view name() const;
    [[nodiscard]] MessageKind kind() const { return messageKindOf(name()); }

private:
    std::unique_ptr<pugi::xml_document> m_document;
};

/// The first child element of that local name; a null node when there is none. A null node has no children.
[[nodiscard]] pugi::xml_node childNamed(pugi::xml_node parent, std::string_view name);
[[nodiscard]] std::string_view localName(pugi::xml_node node);
/// The trimmed text of a child element; empty when it is missing.
[[nodiscard]] std::string childText(pugi::xml_node parent, std::string_view name);
/// The trimmed text of the node itself or of the first descendant that has one.
[[nodiscard]] std::string firstText(pugi::xml_node node);
/// "true" and "1" are true.
[[nodiscard]] bool isTrue(std::string_view text) noexcept;

}  // namespace host
