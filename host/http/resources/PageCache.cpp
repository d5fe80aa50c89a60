#include "host/http/resources/PageCache.h"

#include <algorithm>

namespace host {

bool PageCache::find(const std::string& page, const DatabaseState& state, std::string& text) {
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& each) {
        return each.state == state && each.page == page;
    });
    if (found == m_entries.end()) {
        return false;
    }
    m_entries.splice(m_entries.begin(), m_entries, found);
    text = found->text;
    return true;
}

void PageCache::store(const std::string& page, const DatabaseState& state, const std::string& text) {
    const std::size_t bytes = page.size() + text.size();
    if (bytes > kMaxBytes) {
        return;
    }
    const std::lock_guard lock(m_mutex);
    m_entries.remove_if([&](const Entry& each) { return each.page == page || !(each.state == state); });
    m_entries.push_front({page, state, text});
    std::size_t all = 0;
    std::size_t kept = 0;
    for (const Entry& each : m_entries) {
        all += each.page.size() + each.text.size();
        if (all > kMaxBytes) {
            break;
        }
        ++kept;
    }
    m_entries.resize(kept);
}

}  // namespace host
