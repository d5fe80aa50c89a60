#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>

#include "host/framework/Strand.h"
#include "host/framework/TimerSource.h"

namespace host {

class Database;

/// Repeats every second what the database has kept, puts its file back (`Database::maintain`), and moves its
/// log into the file (`Database::checkpoint`), on a strand of its own. One owner calls.
class DatabaseMaintenance {
public:
    static constexpr std::chrono::seconds kTimeAtEnd{5};

    /// All are borrowed and outlive the object.
    DatabaseMaintenance(Database& database, WorkerPool& pool, TimerSource& timers)
        : m_database(database), m_timers(timers), m_strand(pool) {}
    ~DatabaseMaintenance() { stop(); }
    DatabaseMaintenance(const DatabaseMaintenance&) = delete;
    DatabaseMaintenance& operator=(const DatabaseMaintenance&) = delete;

    void start();
    /// Waits for the running work. Idempotent.
    void stop();
    /// Tries to store what is kept, for at most `time`. Returns the number of changes that are still kept.
    /// Call it after `stop`, when no change can follow.
    [[nodiscard]] std::size_t storeRest(std::chrono::milliseconds time = kTimeAtEnd);

private:
    void maintain();

    Database& m_database;
    TimerSource& m_timers;

    std::atomic<bool> m_checkpointIsDue{false};

    // Strand only.
    std::unique_ptr<ScheduledExpiry> m_next;

    Strand m_strand;
};

}  // namespace host
