#pragma once

#include <cstddef>
#include <string>

namespace journalxml {

/// A text that grows by `ENTRY` elements between an opening and a closing part, and stops where its readers
/// would refuse it. One thread at a time.
class EntryList {
public:
    /// `maxBytes` bounds the finished text. The opening and closing parts alone must fit.
    EntryList(std::string opening, std::string closing, std::size_t maxBytes);

    /// Adds an entry with that content. False, with nothing added, when a bound would be passed; the list
    /// is then full for good, so that no later, smaller entry comes in out of order.
    [[nodiscard]] bool add(const std::string& body);

    [[nodiscard]] std::size_t size() const noexcept { return m_size; }
    /// The whole text as it stands.
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
