#pragma once

#include <asio/thread_pool.hpp>
#include <mutex>
#include <thread>
#include <vector>

namespace host {

/// The threads of a `WorkerPool`. A unit of its own, so that only sources that need Asio include its headers.
///
/// Thread-safe. The destructor ends and joins all threads.
class WorkerThreads {
public:
    /// Starts `count` threads. `most` is the upper limit of their number.
    WorkerThreads(unsigned count, unsigned most) : m_pool(count), m_count(count), m_most(most) {}
    ~WorkerThreads();
    WorkerThreads(const WorkerThreads&) = delete;
    WorkerThreads& operator=(const WorkerThreads&) = delete;

    /// Marks one thread as busy for its lifetime. Starts another thread if the last free one becomes busy and
    /// the limit allows it.
    class Busy {
    public:
        explicit Busy(WorkerThreads& threads) : m_threads(threads) { m_threads.begin(); }
        ~Busy() { m_threads.end(); }
        Busy(const Busy&) = delete;
        Busy& operator=(const Busy&) = delete;

    private:
        WorkerThreads& m_threads;
    };

    [[nodiscard]] asio::thread_pool& pool() noexcept { return m_pool; }

private:
    void begin();
    void end();

    // Has its own lock.
    asio::thread_pool m_pool;

    std::mutex m_mutex;
    // Guarded by m_mutex. The destructor joins the added threads after it has set m_most to 0, so no thread
    // is added then.
    unsigned m_busy = 0;
    unsigned m_count;
    unsigned m_most;
    std::vector<std::thread> m_added;
};

}  // namespace host
