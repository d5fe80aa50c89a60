#include "host/framework/WorkerThreads.h"

#include <system_error>

#include "platform/logging/Logging.h"

namespace host {

WorkerThreads::~WorkerThreads() {
    {
        const std::lock_guard lock(m_mutex);
        m_most = 0;
    }
    m_pool.stop();
    for (std::thread& thread : m_added) {
        thread.join();
    }
}

void WorkerThreads::begin() {
    const std::lock_guard lock(m_mutex);
    if (++m_busy < m_count || m_count >= m_most) {
        return;
    }
    try {
        m_added.emplace_back([this] { m_pool.attach(); });
        ++m_count;
    } catch (const std::system_error& error) {
        logAppUni("Framework", __FILE_NAME__, 3, __LINE__, "cannot start another thread: %s", error.what());
    }
}

void WorkerThreads::end() {
    const std::lock_guard lock(m_mutex);
    --m_busy;
}

}  // namespace host
