#include "host/database/LogCheckpoint.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <algorithm>
#include <utility>

namespace host {

LogCheckpoint::LogCheckpoint(std::filesystem::path file) : m_file(std::move(file)) {}

LogCheckpoint::~LogCheckpoint() = default;

int LogCheckpoint::run(unsigned generation) {
    if (!m_connection || generation != m_generation) {
        m_connection = std::make_unique<SQLite::Database>(m_file.string(), SQLite::OPEN_READWRITE);
        m_generation = generation;
    }
    int pages = 0;
    const int result = sqlite3_wal_checkpoint_v2(m_connection->getHandle(), nullptr,
                                                 SQLITE_CHECKPOINT_PASSIVE, &pages, nullptr);
    if (result != SQLITE_OK && result != SQLITE_BUSY) {
        throw SQLite::Exception(m_connection->getHandle(), result);
    }
    return std::max(pages, 0);
}

}  // namespace host
