#pragma once

#include <mutex>
#include <set>
#include <string>
#include <utility>

#include "host/database/Database.h"
#include "journal-items/CallInfo.h"

namespace host {

/// The filed calls of one line whose end is approximate, by the number and the time of their occurrence; the
/// rows of the table `approximate_end` and a copy of them. The journal's items do not have this mark.
/// Thread-safe.
class ApproximateEnds {
public:
    explicit ApproximateEnds(std::string line) : m_line(std::move(line)) {}

    /// Reads the rows, and removes those whose occurrence was deleted.
    void load(Database& database);
    /// Adds a row, inside `Database::write`. `add` must follow when the write is done.
    void write(Database::Session& session, const CallInfo& occurrence) const;
    void add(const CallInfo& occurrence);

    [[nodiscard]] bool contains(const std::string& number, const std::string& time) const;

private:
    using Ends = std::set<std::pair<std::string, std::string>>;

    // Constant after construction.
    const std::string m_line;

    mutable std::mutex m_mutex;
    // Guarded by m_mutex.
    Ends m_ends;
};

}  // namespace host
