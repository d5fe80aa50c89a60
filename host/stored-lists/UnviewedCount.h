#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "host/database/Database.h"
#include "host/database/RowChanges.h"

namespace host {

/// The number of unviewed missed entries of a line, as they are stored. It is asked for after every missed
/// call, so the entries are counted once; afterwards only those that have changed are read.
///
/// Thread-safe.
class UnviewedCount {
public:
    /// The database is borrowed.
    UnviewedCount(Database& database, std::string line) : m_database(database), m_line(std::move(line)) {}

    /// A change by another program is counted some milliseconds later. std::nullopt if the database fails.
    [[nodiscard]] std::optional<std::size_t> now();

private:
    using Clock = std::chrono::steady_clock;

    [[nodiscard]] RowChanges& changes();
    void update(Database::Session& session, const RowChanges& changes);
    [[nodiscard]] bool isUnviewed(Database::Session& session, std::int64_t entry) const;
    void readAll(Database::Session& session);
    void readSome(Database::Session& session, const std::vector<RowChanges::Row>& rows);

    // Constant after construction.
    Database& m_database;
    const std::string m_line;

    std::mutex m_mutex;
    // Guarded by m_mutex, which is held while entries are read from the database.
    RowChanges* m_changes = nullptr;
    /// When the changes by other programs were noted last.
    Clock::time_point m_foreignNoted{};
    /// The state is known up to this number of `RowChanges`; std::nullopt if it is not known.
    std::optional<std::uint64_t> m_known;
    std::unordered_set<std::int64_t> m_entries;
};

}  // namespace host
