#include "host/directory/KnownNumbers.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace host {

std::optional<KnownNumbers::ContactPtr> KnownNumbers::find(const std::string& number) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_isLoaded) {
        return std::nullopt;
    }
    if (!std::binary_search(m_hashes.begin(), m_hashes.end(), hashOf(number))) {
        return ContactPtr();
    }
    const auto found = m_contacts.find(number);
    return found == m_contacts.end() ? std::nullopt : std::optional(found->second);
}

std::uint64_t KnownNumbers::version() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_version;
}

bool KnownNumbers::isLoaded() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_isLoaded;
}

void KnownNumbers::load(std::uint64_t version, const std::vector<std::string>& numbers) {
    std::vector<std::uint64_t> hashes;
    hashes.reserve(numbers.size());
    std::transform(numbers.begin(), numbers.end(), std::back_inserter(hashes), hashOf);
    std::sort(hashes.begin(), hashes.end());
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (version == m_version) {
        m_hashes = std::move(hashes);
        m_isLoaded = true;
    }
}

void KnownNumbers::store(std::uint64_t version, const std::string& number, ContactPtr contact) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (version == m_version) {
        if (m_contacts.size() >= kMaxContacts) {
            m_contacts.clear();
        }
        m_contacts[number] = std::move(contact);
    }
}

void KnownNumbers::change(const std::vector<std::string>& added) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    forgetContacts();
    for (const std::string& number : added) {
        const std::uint64_t hash = hashOf(number);
        const auto at = std::lower_bound(m_hashes.begin(), m_hashes.end(), hash);
        if (m_isLoaded && (at == m_hashes.end() || *at != hash)) {
            m_hashes.insert(at, hash);
        }
    }
}

void KnownNumbers::clear() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    forgetContacts();
    m_isLoaded = false;
    m_hashes = {};
}

void KnownNumbers::forgetContacts() {
    ++m_version;
    m_contacts.clear();
}

}  // namespace host
