#include "host/framework/WorkerPool.h"

#include <algorithm>
#include <asio/thread_pool.hpp>
#include <system_error>
#include <thread>

#include "host/framework/WorkerPoolThreads.h"
#include "platform/logging/Logging.h"

namespace host {

WorkerPool::WorkerPool() : WorkerPool(std::max(2U, std::thread::hardware_concurrency())) {}

WorkerPool::WorkerPool(unsigned threads) : WorkerPool(threads, threads) {}

WorkerPool::WorkerPool(unsigned threads, unsigned most)
    : m_threads(std::make_unique<Threads>(threads, most)) {}

WorkerPool::~WorkerPool() = default;

WorkerPool::Threads::~Threads() {
    {
        const std::lock_guard lock(m_mutex);
        m_most = 0;
    }
    pool.stop();
    for (std::thread& thread : m_added) {
        thread.join();
    }
}

void WorkerPool::Threads::begin() {
    const std::lock_guard lock(m_mutex);
    if (++m_busy < m_count || m_count >= m_most) {
        return;
    }
    try {
        m_added.emplace_back([this] { pool.attach(); });
        ++m_count;
    } catch (const std::system_error& error) {
        logAppUni("Framework", __FILE_NAME__, 3, __LINE__, "no further thread to be had: %s", error.what());
    }
}

void WorkerPool::Threads::end() {
    const std::lock_guard lock(m_mutex);
    --m_busy;
}

}  // namespace host
