#pragma once

#include <condition_variable>
#include <mutex>

/// The platform's counting semaphore; the journal uses it with count 1 and maximum 1 as a lock.
///
/// Any thread may wait and any thread may signal, not only the one that waited. A thread that waits again for
/// a binary semaphore that it holds deadlocks; `NestableSemaphore` allows that. Built on a mutex because an
/// uncontended one needs no system call.
class Semaphore {
public:
    /// Requires: `initialCount` is at most `maximumCount`. `waitersByPriority` is a hint for real-time
    /// platforms, which may wake the most urgent waiter first; here the kernel chooses the order.
    explicit Semaphore(unsigned initialCount = 1, unsigned maximumCount = 1,
                       bool /*waitersByPriority*/ = true)
        : m_count(initialCount), m_maximum(maximumCount) {}
    Semaphore(const Semaphore&) = delete;
    Semaphore& operator=(const Semaphore&) = delete;
    ~Semaphore() = default;

    /// Waits, without a timeout, until the count is above zero, and takes one.
    void wait() {
        std::unique_lock lock(m_mutex);
        ++m_waiters;
        m_changed.wait(lock, [this] { return m_count > 0; });
        --m_waiters;
        --m_count;
    }

    /// Gives one back. A count at its maximum stays there.
    void signal() {
        bool wake = false;
        {
            const std::lock_guard lock(m_mutex);
            if (m_count < m_maximum) {
                ++m_count;
            }
            wake = m_waiters > 0;
        }
        if (wake) {
            m_changed.notify_one();
        }
    }

private:
    // Guarded by m_mutex.
    unsigned m_count;
    unsigned m_waiters = 0;
    std::mutex m_mutex;
    std::condition_variable m_changed;

    // Constant after construction.
    const unsigned m_maximum;
};
