#include "host/database/RowChanges.h"

#include <new>

namespace host {

void RowChanges::count() {
    ++m_last;
    if (!m_first) {
        m_first = m_last;
    }
}

void RowChanges::note(const Row& row) noexcept {
    const std::lock_guard lock(m_mutex);
    const bool isOfTransaction = m_first && m_last - *m_first < m_rows.size();
    if (isOfTransaction && m_rows.back() == row) {
        return;
    }
    count();
    try {
        if (m_isFollowed && m_rows.size() < kMostRows) {
            m_rows.push_back(row);
            return;
        }
    } catch (const std::bad_alloc&) {
        // The readers read all rows again.
    }
    m_isFollowed = false;
    m_rows.clear();
}

void RowChanges::noteAll() noexcept {
    const std::lock_guard lock(m_mutex);
    count();
    m_rows.clear();
}

void RowChanges::endTransaction() noexcept {
    const std::lock_guard lock(m_mutex);
    m_first.reset();
}

std::uint64_t RowChanges::settled() {
    const std::lock_guard lock(m_mutex);
    m_isFollowed = true;
    return m_first ? *m_first - 1 : m_last;
}

std::optional<std::vector<RowChanges::Row>> RowChanges::since(std::uint64_t number) const {
    const std::lock_guard lock(m_mutex);
    const std::uint64_t kept = m_last - m_rows.size();
    if (number < kept) {
        return std::nullopt;
    }
    return std::vector<Row>(m_rows.begin() + static_cast<std::ptrdiff_t>(number - kept), m_rows.end());
}

}  // namespace host
