#include "host/database/LogCheckpoint.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <algorithm>

namespace host {

int checkpointLog(const std::filesystem::path& file) {
    const SQLite::Database database(file.string(), SQLite::OPEN_READWRITE);
    int pages = 0;
    const int result =
        sqlite3_wal_checkpoint_v2(database.getHandle(), nullptr, SQLITE_CHECKPOINT_PASSIVE, &pages, nullptr);
    if (result != SQLITE_OK && result != SQLITE_BUSY) {
        throw SQLite::Exception(database.getHandle(), result);
    }
    return std::max(pages, 0);
}

}  // namespace host
