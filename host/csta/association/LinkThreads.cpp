#include "host/csta/association/LinkThreads.h"

#include <utility>

#include "host/framework/EventLoop.h"

namespace host {

LinkThreads::LinkThreads(asio::io_context& loop, std::function<void()> repair)
    : m_loop(loop), m_repair(std::move(repair)), m_first([this] { run(); }), m_second([this] { run(); }) {}

bool LinkThreads::isReader() const {
    const std::lock_guard lock(m_mutex);
    return m_reader == std::this_thread::get_id();
}

bool LinkThreads::leaveFor(std::function<void()> work) {
    if (m_work) {
        return false;
    }
    {
        const std::lock_guard lock(m_mutex);
        if (m_followers == 0) {
            return false;
        }
    }
    m_work = std::move(work);
    return true;
}

void LinkThreads::join() {
    m_first.join();
    m_second.join();
}

void LinkThreads::run() {
    while (true) {
        {
            std::unique_lock lock(m_mutex);
            ++m_followers;
            m_free.wait(lock, [this] { return m_reader == std::thread::id() || m_ended; });
            --m_followers;
            if (m_ended) {
                return;
            }
            m_reader = std::this_thread::get_id();
        }
        lead();
        const std::function<void()> work = std::exchange(m_work, nullptr);
        {
            const std::lock_guard lock(m_mutex);
            m_reader = std::thread::id();
            m_ended = work == nullptr;
        }
        m_free.notify_all();
        if (work) {
            static_cast<void>(runHandler(work));
        }
    }
}

/// Returns when the loop has no more work, or when there is work to leave for.
void LinkThreads::lead() {
    bool more = true;
    while (more && !m_work) {
        if (!runHandler([&] { more = m_loop.run_one() > 0; })) {
            static_cast<void>(runHandler(m_repair));
        }
    }
}

}  // namespace host
