#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

#include "host/database/DatabaseSession.h"

namespace host {

class Database;

/// The thread that writes the noted live calls of all lines, in batches without a flush of the disk: the
/// first change after a quiet time at once, every other within 200 ms. What it has written survives the end
/// of the process, but not a power cut.
///
/// Thread-safe. A batch that fails is logged once and repeated.
class LiveCallWriter {
public:
    using Clock = std::chrono::steady_clock;

    /// The live calls of one line. The thread calls each function without a lock of its own.
    class Source {
    public:
        Source() = default;
        Source(const Source&) = delete;
        Source& operator=(const Source&) = delete;

        /// Writes what has changed, in a transaction. It may run again before one succeeds.
        virtual void write(DatabaseSession& session) = 0;
        /// Called after the transaction of the last `write`. If it was not stored, the source adds itself
        /// again.
        virtual void written(bool isStored) = 0;
        /// Called at the time that was passed to `callAt`.
        virtual void timeHasCome(Clock::time_point now) = 0;

    protected:
        ~Source() = default;
    };

    /// `database` is borrowed and outlives the object.
    explicit LiveCallWriter(Database& database);
    /// Requires: every source has left.
    ~LiveCallWriter();
    LiveCallWriter(const LiveCallWriter&) = delete;
    LiveCallWriter& operator=(const LiveCallWriter&) = delete;

    /// The source has something to write. It is borrowed until
    /// `leave`. Does not wait; a lock of the source may be held.
    void add(Source& source);
    /// The same with a call of `timeHasCome` at that time.
    void callAt(Source& source, Clock::time_point time);
    /// Writes what the source has, if the database takes it, and waits for that. Afterwards the source is
    /// called no more. Requires: no other thread adds it again.
    void leave(Source& source);

private:
    static constexpr std::chrono::milliseconds kBatchTime{100};
    /// More would delay other transactions too much.
    static constexpr std::size_t kMostSources = 500;

    void run();
    [[nodiscard]] bool isBusyWith(const Source& source) const;
    void callDue(std::unique_lock<std::mutex>& lock);
    void writeBatch(std::unique_lock<std::mutex>& lock);
    void write(const std::vector<Source*>& sources);

    Database& m_database;
    /// The thread only: the last batch failed.
    bool m_failed = false;

    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_done;
    // Guarded by m_mutex.
    std::deque<Source*> m_waiting;
    std::multimap<Clock::time_point, Source*> m_calls;
    /// Those that the thread calls just now.
    std::vector<Source*> m_current;
    Clock::time_point m_nextBatch{};
    std::size_t m_leaving = 0;
    /// The number of batches so far.
    unsigned long m_batches = 0;
    bool m_stopping = false;
    bool m_waitsForWork = false;

    std::thread m_thread;
};

}  // namespace host
