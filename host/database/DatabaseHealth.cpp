#include "host/database/DatabaseHealth.h"

#include <sqlite3.h>

#include <new>

namespace host {

void DatabaseHealth::succeeded(const std::string& kind, bool isWrite) {
    m_readFailed = false;
    if (isWrite) {
        m_writeFailed = false;
    }
    if (m_damaged) {
        const std::lock_guard lock(m_mutex);
        m_damagedKinds.erase(kind);
        m_damaged = !m_damagedKinds.empty();
    }
}

void DatabaseHealth::failed(const std::string& kind, bool isWrite, int code) noexcept {
    (isWrite ? m_writeFailed : m_readFailed) = true;
    if (code == SQLITE_CORRUPT || code == SQLITE_NOTADB) {
        const std::lock_guard lock(m_mutex);
        m_damaged = true;
        try {
            m_damagedKinds.insert(kind);
        } catch (const std::bad_alloc&) {
            return;  // it stays damaged
        }
    }
}

}  // namespace host
