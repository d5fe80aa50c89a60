#pragma once

#include <atomic>
#include <memory>
#include <mutex>

#include "host/framework/Strand.h"
#include "host/framework/TimerSource.h"
#include "host/stored-lists/EntryNames.h"
#include "host/stored-lists/Retention.h"

namespace host {

/// Keeps the stored calls and entries in step with the time and the phonebook, on a strand of its own:
///  1. `start` applies the retention, and again every hour.
///  2. `phonebookChanged` renames the entries; changes while that runs are followed by one more run.
///
/// Any thread may call `phonebookChanged` and `rename`; one owner calls the rest.
class HistoryMaintenance {
public:
    /// All are borrowed and outlive the object.
    HistoryMaintenance(WorkerPool& pool, TimerSource& timers, Retention& retention, EntryNames& names)
        : m_timers(timers), m_retention(retention), m_names(names), m_strand(pool) {}
    ~HistoryMaintenance() { stop(); }
    HistoryMaintenance(const HistoryMaintenance&) = delete;
    HistoryMaintenance& operator=(const HistoryMaintenance&) = delete;

    void start();
    /// Waits for the running work. Idempotent.
    void stop();
    void phonebookChanged();
    /// Renames the entries on the calling thread.
    void rename();

private:
    void applyRetention();

    TimerSource& m_timers;
    Retention& m_retention;
    EntryNames& m_names;

    std::atomic<bool> m_isRenaming{false};
    /// Held while entries are renamed.
    std::mutex m_renameMutex;
    // Strand only.
    std::unique_ptr<ScheduledExpiry> m_nextRetention;

    Strand m_strand;
};

}  // namespace host
