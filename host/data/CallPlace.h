#pragma once

#include <cstdint>
#include <string>

#include "host/database/Database.h"
#include "journal-items/CallInfo.h"
#include "journal-items/ListTraits.h"

namespace host {

/// Where an occurrence of an entry belongs among the calls of the history.
struct CallPlace {
    /// The row of the occurrence, if no entry lists it; 0 if there is none.
    std::int64_t id = 0;
    /// The number that distinguishes a new call from others with the same call id and start.
    std::int64_t part = 0;
};

/// Makes the evictions that wait if the result depends on them. `item` is the row of the entry. Throws what
/// SQLite throws.
[[nodiscard]] CallPlace callPlace(Database::Session& session, const std::string& line, const CallInfo& info,
                                  ListName list, std::int64_t item, std::int64_t start);

}  // namespace host
