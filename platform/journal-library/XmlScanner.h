#pragma once

#include <cstddef>
#include <string_view>

namespace journalxml {

/// Scans the markup of an XML text from front to back without building nodes: the checks that a text must
/// pass before it is parsed. One thread at a time; the text is borrowed.
class XmlScanner {
public:
    enum class Markup {
        eStartTag,
        eEmptyTag,
        eEndTag,
        /// Comment, processing instruction, XML declaration.
        eAside,
        eCharacterData,
        /// No markup is left.
        eEnd,
        /// Not well-formed, or a document type declaration, which is never allowed.
        eError
    };

    explicit XmlScanner(std::string_view text, std::size_t at = 0) noexcept : m_text(text), m_at(at) {}

    /// Finds the next markup and moves after it.
    [[nodiscard]] Markup next() noexcept;
    /// The position after the markup that was found last.
    [[nodiscard]] std::size_t position() const noexcept { return m_at; }
    /// True if text other than white space stood between the last two markups (or after the last one).
    [[nodiscard]] bool passedText() const noexcept { return m_passedText; }

private:
    bool passText() noexcept;
    bool passReference() noexcept;
    Markup passUntil(std::string_view end, std::size_t from, Markup found) noexcept;
    Markup passTag() noexcept;

    std::string_view m_text;
    std::size_t m_at;
    bool m_passedText = false;
};

/// True if `text` may be given to the parser: not longer than `maxBytes`, valid UTF-8 of XML characters, one
/// outermost element, references only to characters that XML allows, and within the limits of XmlLimits.h.
/// The parser itself checks that the names of start and end tags agree.
[[nodiscard]] bool isSafeXml(std::string_view text, std::size_t maxBytes) noexcept;

/// The end (one past the last character) of the element that begins at `begin`. Requires: `isSafeXml`
/// accepted the text.
[[nodiscard]] std::size_t elementEnd(std::string_view text, std::size_t begin) noexcept;

}  // namespace journalxml
