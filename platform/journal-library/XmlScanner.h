#pragma once

#include <cstddef>
#include <string_view>

namespace journalxml {

/// Walks through the markup of an XML text, front to back, without building anything: what has to be known
/// of a text before a parser may see it. One thread at a time; the text is borrowed.
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
        /// Not well-formed, or a document type declaration, which nobody here needs.
        eError
    };

    explicit XmlScanner(std::string_view text, std::size_t at = 0) noexcept : m_text(text), m_at(at) {}

    /// Finds the next markup and passes over it.
    [[nodiscard]] Markup next() noexcept;
    /// Where the scanner stands: behind the markup that it found last.
    [[nodiscard]] std::size_t position() const noexcept { return m_at; }
    /// Whether anything but white space stood between the last two markups (or behind the last one).
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

/// Whether `text` may be given to the parser: not longer than `maxBytes`, valid UTF-8 made of XML
/// characters, one outermost element, references only to characters that XML knows, and within the limits
/// of XmlLimits.h. Whether the names of start and end tags agree is left to the parser.
[[nodiscard]] bool isSafeXml(std::string_view text, std::size_t maxBytes) noexcept;

/// The outermost element's name without its prefix; empty when no element can be found. Looks no further than
/// that element's start tag, so it says nothing about the rest.
[[nodiscard]] std::string_view rootNameOf(std::string_view text) noexcept;

/// Where the element that begins at `begin` ends (one past its last character), in a text that `isSafeXml`
/// has accepted.
[[nodiscard]] std::size_t elementEnd(std::string_view text, std::size_t begin) noexcept;

}  // namespace journalxml
