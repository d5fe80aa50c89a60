#pragma once

#include <mutex>

/// A binary semaphore that the thread holding it may take again; it is free after one `signal` for each
/// `wait`. Unlike `Semaphore`, only the thread that holds it may signal.
class NestableSemaphore {
public:
    NestableSemaphore() = default;
    NestableSemaphore(const NestableSemaphore&) = delete;
    NestableSemaphore& operator=(const NestableSemaphore&) = delete;
    ~NestableSemaphore() = default;

    void wait() { m_mutex.lock(); }
    void signal() { m_mutex.unlock(); }

private:
    std::recursive_mutex m_mutex;
};
