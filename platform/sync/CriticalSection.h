#pragma once

/// Holds a semaphore for a scope. The semaphore is borrowed and outlives the section.
template <typename SemaphoreType>
class CriticalSection {
public:
    explicit CriticalSection(SemaphoreType& semaphore) : m_semaphore(semaphore) { m_semaphore.wait(); }
    ~CriticalSection() { m_semaphore.signal(); }
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

private:
    SemaphoreType& m_semaphore;
};
