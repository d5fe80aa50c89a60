#include "host/database/LogCheckpoint.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <utility>

#include "host/database/DatabaseFile.h"

namespace host {

LogCheckpoint::LogCheckpoint(std::filesystem::path file, const DatabaseFile& place)
    : m_file(std::move(file)), m_place(place) {}

LogCheckpoint::~LogCheckpoint() = default;

void LogCheckpoint::open(unsigned generation) {
    m_connection.reset();
    m_place.requireInPlace();
    auto connection = std::make_unique<SQLite::Database>(m_file.string(), SQLite::OPEN_READWRITE);
    // Opens the log too.
    static_cast<void>(connection->execAndGet("SELECT count(*) FROM sqlite_schema"));
    m_place.requireInPlace();
    m_connection = std::move(connection);
    m_generation = generation;
}

int LogCheckpoint::run(unsigned generation) {
    if (!m_connection || generation != m_generation) {
        open(generation);
    }
    int moved = 0;
    const int result = sqlite3_wal_checkpoint_v2(m_connection->getHandle(), nullptr,
                                                 SQLITE_CHECKPOINT_PASSIVE, nullptr, &moved);
    if (result != SQLITE_OK && result != SQLITE_BUSY) {
        throw SQLite::Exception(m_connection->getHandle(), result);
    }
    return moved;
}

}  // namespace host
