#pragma once

#include <asio/thread_pool.hpp>
#include <mutex>
#include <thread>
#include <vector>

#include "host/framework/WorkerPool.h"

namespace host {

/// Stands apart from `WorkerPool.h` so that only the sources which need Asio read its headers.
struct WorkerPool::Threads {
    Threads(unsigned count, unsigned most) : pool(count), m_count(count), m_most(most) {}
    ~Threads();
    Threads(const Threads&) = delete;
    Threads& operator=(const Threads&) = delete;

    /// Lives while a piece of work runs on one of the threads; the last free one is joined by another if it may be.
    class AtWork {
    public:
        explicit AtWork(Threads& threads) : m_threads(threads) { m_threads.begin(); }
        ~AtWork() { m_threads.end(); }
        AtWork(const AtWork&) = delete;
        AtWork& operator=(const AtWork&) = delete;

    private:
        Threads& m_threads;
    };

    asio::thread_pool pool;

private:
    void begin();
    void end();

    std::mutex m_mutex;
    // Guarded by m_mutex; the added threads are joined when nobody adds any more.
    unsigned m_busy = 0;
    unsigned m_count;
    unsigned m_most;
    std::vector<std::thread> m_added;
};

}  // namespace host
