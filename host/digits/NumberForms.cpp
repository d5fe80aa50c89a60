#include "host/digits/NumberForms.h"

namespace host {

std::optional<std::string> NumberForms::find(std::string_view dialled) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_index.find(dialled);
    if (found == m_index.end()) {
        return std::nullopt;
    }
    m_entries.splice(m_entries.begin(), m_entries, found->second);
    return found->second->second;
}

void NumberForms::store(const std::string& dialled, const std::string& form) {
    if (dialled.size() > kMaxLength || form.size() > kMaxLength) {
        return;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_index.contains(dialled)) {  // by another thread meanwhile
        return;
    }
    if (m_entries.size() == kMaxNumbers) {
        m_index.erase(m_entries.back().first);
        m_entries.pop_back();
    }
    m_entries.emplace_front(dialled, form);
    m_index.emplace(m_entries.front().first, m_entries.begin());
}

}  // namespace host
