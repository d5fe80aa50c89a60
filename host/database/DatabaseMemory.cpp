#include "host/database/DatabaseMemory.h"

#include <sqlite3.h>

namespace host {

std::int64_t databaseMemory() noexcept {
    return sqlite3_memory_used();
}

}  // namespace host
