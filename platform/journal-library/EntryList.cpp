#include "platform/journal-library/EntryList.h"

#include <algorithm>
#include <utility>

#include "platform/journal-library/ItemWriter.h"
#include "platform/journal-library/XmlLimits.h"

namespace journalxml {
namespace {

std::size_t markupsIn(const std::string& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '<'));
}

}  // namespace

EntryList::EntryList(std::string opening, std::string closing, std::size_t maxBytes)
    : m_text(std::move(opening)),
      m_closing(std::move(closing)),
      m_maxBytes(maxBytes),
      m_markups(markupsIn(m_text) + markupsIn(m_closing)) {}

bool EntryList::add(const std::string& body) {
    const std::string element = entryElement(body);
    const std::size_t markups = markupsIn(element);
    m_full = m_full || m_text.size() + element.size() + m_closing.size() > m_maxBytes ||
             m_markups + markups > kMaxMarkups;
    if (m_full) {
        return false;
    }
    m_text += element;
    m_markups += markups;
    ++m_size;
    return true;
}

}  // namespace journalxml
