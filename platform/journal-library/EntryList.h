#pragma once

#include <cstddef>
#include <string>

namespace journalxml {

/// A text of `ENTRY` elements between an opening and a closing part. It stops growing at the limits of its
/// readers. One thread at a time.
class EntryList {
public:
    /// `maxBytes` bounds the finished text. Requires: the opening and closing parts fit.
    EntryList(std::string opening, std::string closing, std::size_t maxBytes);

    /// Adds an entry with that content. Returns false, with the text unchanged, if it would exceed a limit.
    /// The list is then full for good: a later, smaller entry would be out of order.
    [[nodiscard]] bool add(const std::string& body);

    [[nodiscard]] std::size_t size() const noexcept { return m_size; }
    /// The whole text so far.
    [[nodiscard]] std::string text() const { return m_text + m_closing; }

private:
    std::string m_text;
    std::string m_closing;
    std::size_t m_maxBytes;
    std::size_t m_markups;
    std::size_t m_size = 0;
    bool m_full = false;
};

}  // namespace journalxml
